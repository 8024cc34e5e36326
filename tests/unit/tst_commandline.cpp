#include "app/commandline.h"

#include <QTest>

class tst_CommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pageNumber_data();
    void pageNumber();
};

void tst_CommandLine::pageNumber_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("page");

    QTest::newRow("no arguments") << "sysinfo" << 1;
    QTest::newRow("--page 4") << "sysinfo --page 4" << 4;
    QTest::newRow("--page 2") << "sysinfo --page 2" << 2;
    QTest::newRow("zero") << "sysinfo --page 0" << 0;
    QTest::newRow("too large") << "sysinfo --page 9" << 9;
    QTest::newRow("negative") << "sysinfo --page -1" << -1;
    QTest::newRow("no number") << "sysinfo --page abc" << 0;
    QTest::newRow("hexadecimal") << "sysinfo --page 0x2" << 0;
    QTest::newRow("larger than an int") << "sysinfo --page 4294967298" << 0;
    QTest::newRow("last argument") << "sysinfo --page" << 1;
    QTest::newRow("last argument after a complete one") << "sysinfo --page 3 --page" << 3;
    QTest::newRow("last complete one wins") << "sysinfo --page 3 --page 2" << 2;
    QTest::newRow("one dash") << "sysinfo -page 3" << 1;
    QTest::newRow("upper case") << "sysinfo --PAGE 3" << 1;
    QTest::newRow("with an equals sign") << "sysinfo --page=3" << 1;
    QTest::newRow("the value is skipped") << "sysinfo --page --page 3" << 0;
    QTest::newRow("after another argument") << "sysinfo other --page 3 more" << 3;
    QTest::newRow("the program's own name") << "--page 3" << 1;
}

void tst_CommandLine::pageNumber()
{
    QFETCH(QString, arguments);
    QTEST(::pageNumber(arguments.split(QLatin1Char(' '))), "page");
}

QTEST_APPLESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
