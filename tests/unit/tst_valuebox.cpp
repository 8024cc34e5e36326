#include "app/factlabel.h"
#include "app/valuebox.h"

#include <QLabel>
#include <QTest>

class tst_ValueBox : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesAValueLabel();
    void framesAWidgetAloneWithoutItsAlignmentAndHeight();
    void showsFactsAsPlainText();
};

void tst_ValueBox::framesAValueLabel()
{
    QLabel label(QStringLiteral("kept"));
    setupValueLabel(&label, Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(label.alignment(), Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(label.objectName(), QStringLiteral("valueBox"));
    QCOMPARE(label.minimumHeight(), 25);
    QCOMPARE(label.lineWidth(), 1);
    QCOMPARE(label.midLineWidth(), 1);
    QCOMPARE(label.frameShape(), QFrame::Box);
    QCOMPARE(label.frameShadow(), QFrame::Raised);
    QCOMPARE(label.frameStyle(), 0x21);
    QCOMPARE(label.text(), QStringLiteral("kept"));
}

void tst_ValueBox::framesAWidgetAloneWithoutItsAlignmentAndHeight()
{
    QLabel label;
    const Qt::Alignment alignment = label.alignment();
    applyValueBoxStyle(&label);
    QCOMPARE(label.objectName(), QStringLiteral("valueBox"));
    QCOMPARE(label.frameStyle(), 0x21);
    QCOMPARE(label.lineWidth(), 1);
    QCOMPARE(label.midLineWidth(), 1);
    QCOMPARE(label.alignment(), alignment);
    QCOMPARE(label.minimumHeight(), 0);
}

void tst_ValueBox::showsFactsAsPlainText()
{
    QWidget page;
    const QLabel *label = createFactLabel(&page);
    QCOMPARE(label->parent(), &page);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY(label->text().isEmpty());
}

QTEST_MAIN(tst_ValueBox)
#include "tst_valuebox.moc"
