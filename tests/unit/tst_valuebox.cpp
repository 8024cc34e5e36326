#include "app/factlabel.h"
#include "app/valuebox.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

class tst_ValueBox : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesAValueLabel();
    void framesAWidgetAloneWithoutItsAlignmentAndHeight();
    void showsFactsAsPlainText();
    void readsFactsByTheirCaption();
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

void tst_ValueBox::readsFactsByTheirCaption()
{
    QWidget page;
    QLabel caption(QStringLiteral("Serial Number:"), &page);
    QLabel *fact = createFactLabel(&page);
    caption.setBuddy(fact);
    fact->setText(QStringLiteral("TC <b>50</b>"));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(fact);
    QCOMPARE(accessible->role(), QAccessible::StaticText);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Serial Number:"));
    const QAccessibleTextInterface *text = accessible->textInterface();
    QVERIFY(text);
    QCOMPARE(text->characterCount(), 12);
    QCOMPARE(text->text(0, 12), QStringLiteral("TC <b>50</b>"));
    QCOMPARE(text->text(3, 6), QStringLiteral("<b>"));
    fact->setAccessibleName(QStringLiteral("Flash: Free"));
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Flash: Free"));
}

QTEST_MAIN(tst_ValueBox)
#include "tst_valuebox.moc"
