#include "resources/qss/stylesheet.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QResource>
#include <QTest>

class tst_StyleSheet : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isRegisteredUncompressed();
    void isPlainAscii();
    void holdsTheRulesInOrder();
};

void tst_StyleSheet::isRegisteredUncompressed()
{
    applicationStyleSheet();
    const QResource resource(QStringLiteral(":/qss/default.qss"));
    QVERIFY(resource.isValid());
    QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
    QCOMPARE(resource.size(), 1241);
    // Format version 1 is the one without the time of the last change.
    QVERIFY(!resource.lastModified().isValid());
}

void tst_StyleSheet::isPlainAscii()
{
    QFile file(QStringLiteral(":/qss/default.qss"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes.size(), 1241);
    for (const char byte : bytes)
        QVERIFY(byte == '\n' || (byte >= ' ' && byte <= '~'));
    QCOMPARE(applicationStyleSheet().toLatin1(), bytes);
}

void tst_StyleSheet::holdsTheRulesInOrder()
{
    const char *const expected =
        "QTabBar::tab { background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 #E1E1E1, stop: 0.4 "
        "#DDDDDD, "
        "stop: 0.5 #D8D8D8, stop: 1.0 #D3D3D3); border: 1px solid #C4C4C3; border-bottom-color: #C2C7CB; "
        "border-top-left-radius: 4px; border-top-right-radius: 4px; min-width: 8ex; padding: 2px; } "
        "QTabBar::tab:selected, QTabBar::tab:hover { background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, "
        "stop: 0 #fafafa, stop: 0.4 #f4f4f4, stop: 0.5 #e7e7e7, stop: 1.0 #fafafa); } "
        "QTabBar::tab:selected { border-color: #9B9B9B; border-bottom-color: #fafafa; } "
        "QTabBar::tab:!selected { margin-top: 2px; } "
        "SysInfoHelper[isAdmin=\"false\"] { background: rgb(0, 51, 102); } "
        "SysInfoHelper[isAdmin=\"true\"] { background: rgb(153, 0, 0); } "
        "QTabWidget::pane { background: #fafafa; border-top: 1px solid #C2C7CB; } "
        "QScrollArea { background: #fafafa; } "
        "QWidget#tabContent { background: #fafafa; } "
        "QLabel#valueBox { border: 2px groove #707070; }";
    static const QRegularExpression comment(QStringLiteral("/\\*.*?\\*/"),
                                            QRegularExpression::DotMatchesEverythingOption);
    QCOMPARE(applicationStyleSheet().remove(comment).simplified(), QString::fromLatin1(expected));
}

QTEST_APPLESS_MAIN(tst_StyleSheet)
#include "tst_stylesheet.moc"
