#include "tests/device/softwarepage.h"

#include <QFile>
#include <QProcess>
#include <QStandardItemModel>
#include <QTest>

using namespace SoftwarePage;

namespace {

/// Runs the machine's own dpkg-query, apart from the page.
QStringList dpkgQueryLines(const QStringList &arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/dpkg-query"), arguments);
    process.waitForFinished();
    return QString::fromLatin1(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class tst_PackageQueries : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { Device::clearCalls(); }
    void cleanup() { Device::restore(); }

    void asksForTheNamesInTheFile_data();
    void asksForTheNamesInTheFile();
    void asksForEverythingWithoutNames_data();
    void asksForEverythingWithoutNames();
    void asksTheFallbackProgram();
    void runsNothingWithoutAProgram();
    void leavesStandardInputOpen();
    void readsTheMainSoftware_data();
    void readsTheMainSoftware();
    void readsTheAddons_data();
    void readsTheAddons();
    void listsTheRealPackages();
    void listsTheRealPackagesThatAreNamed();
    void showsArchitectures();
};

void tst_PackageQueries::asksForTheNamesInTheFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("call");
    QTest::newRow("two names") << QByteArray("bash\nzsh") << "[-W] [bash] [zsh]";
    QTest::newRow("final newline") << QByteArray("bash\n") << "[-W] [bash] []";
    QTest::newRow("blank lines") << QByteArray("\nbash\n\nzsh") << "[-W] [] [bash] [] [zsh]";
    QTest::newRow("a newline alone") << QByteArray("\n") << "[-W] [] []";
    QTest::newRow("blanks in a name") << QByteArray(" a b ") << "[-W] [ a b ]";
    QTest::newRow("quotes and dollars") << QByteArray("\"a b\" '$HOME' \\") << "[-W] [\"a b\" '$HOME' \\]";
    QTest::newRow("an option") << QByteArray("-f=x") << "[-W] [-f=x]";
    QTest::newRow("a zero byte") << QByteArray("bash\nz\0sh\na", 11) << "[-W] [bash] [z]";
}

void tst_PackageQueries::asksForTheNamesInTheFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, call);
    Device::write(packageNames, file);
    const pageSoftware page(nullptr);
    QCOMPARE(recordedCalls().section(QLatin1Char('\n'), 1, 1), dpkgQuery + QLatin1Char(' ') + call);
}

void tst_PackageQueries::asksForEverythingWithoutNames_data()
{
    QTest::addColumn<QString>("trouble");
    for (const char *trouble : {"empty file", "no file", "unreadable file", "no cat", "cat not executable"})
        QTest::newRow(trouble) << QString::fromLatin1(trouble);
}

void tst_PackageQueries::asksForEverythingWithoutNames()
{
    QFETCH(QString, trouble);
    if (trouble == QLatin1String("empty file"))
        Device::write(packageNames, "");
    else if (trouble == QLatin1String("no file"))
        Device::remove(packageNames);
    else if (trouble == QLatin1String("unreadable file"))
        Device::makeUnreadable(packageNames);
    else if (trouble == QLatin1String("no cat"))
        Device::remove(cat);
    else if (trouble == QLatin1String("cat not executable"))
        QVERIFY(QFile::setPermissions(cat, QFile::ReadOwner));
    const pageSoftware page(nullptr);
    QFile::setPermissions(cat, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QStringList expected{dpkgQuery, QStringLiteral("-W")};
    QVERIFY2(Device::calls().contains(expected), qPrintable(recordedCalls()));
    QVERIFY(!mainRows(page).isEmpty());
}

void tst_PackageQueries::asksTheFallbackProgram()
{
    Device::remove(dpkgQuery);
    Device::write(packageNames, "bash\n");
    Device::installTool(fallbackQuery, printing("fallback 1\\n"));
    const pageSoftware page(nullptr);
    QCOMPARE(mainRows(page), QStringLiteral("fallback|1"));
    QCOMPARE(recordedCalls(),
             QStringLiteral("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]\n"
                            "/usr/share/ovpkg/.ovpkg3 [-W] [bash] []\n"
                            "/usr/bin/ovpkg [-l]"));
}

void tst_PackageQueries::runsNothingWithoutAProgram()
{
    Device::remove(dpkgQuery);
    Device::remove(fallbackQuery);
    Device::remove(ovpkg);
    pageSoftware page(nullptr);
    tick(page);
    QCOMPARE(mainRows(page), QString());
    QCOMPARE(recordedCalls(), QString());
}

void tst_PackageQueries::leavesStandardInputOpen()
{
    // A tool that reads its input to the end waits for an end that does not come. The mode that the process
    // is opened in makes no difference here, closing its write channel does.
    const QByteArray reader =
        printing("before\\n") + "\n\"$SYSINFO_REAL_BIN/cat\" >/dev/null\n" + printing("after\\n");
    Device::installTool(dpkgQuery, reader);
    Device::installTool(ovpkg, reader);
    const pageSoftware page(nullptr, shortLimits());
    QCOMPARE(mainRows(page), QStringLiteral("before"));
    QCOMPARE(addonRows(page), QStringLiteral("before"));
}

void tst_PackageQueries::readsTheMainSoftware_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("rows");
    QTest::newRow("a tab between") << QByteArray("bash\\t5.2\\nzsh\\t5.9\\n") << "bash|5.2 / zsh|5.9";
    QTest::newRow("blanks around and between") << QByteArray("  bash \\t  5.2  \\n") << "bash|5.2";
    QTest::newRow("more than two fields") << QByteArray("a 1 x y\\nb 2\\n") << "a|1|x|y / b|2";
    QTest::newRow("no version") << QByteArray("a\\t\\n") << "a";
    QTest::newRow("with architectures") << QByteArray("libc6:armhf\\t2.36\\n") << "libc6:armhf|2.36";
    QTest::newRow("Latin-1") << QByteArray("caf\\351\\t1\\n") << QString::fromLatin1("caf\xe9|1");
    QTest::newRow("a zero byte") << QByteArray("a\\t1\\nb\\t2\\000\\nc\\t3\\n") << "a|1 / b|2";
    QTest::newRow("markup") << QByteArray("<b>a</b>\\t1\\n") << "<b>a</b>|1";
    QTest::newRow("no final newline") << QByteArray("a 1\\nb 2") << "a|1 / b|2";
    QTest::newRow("nothing") << QByteArray("") << "";
}

void tst_PackageQueries::readsTheMainSoftware()
{
    QFETCH(QByteArray, format);
    Device::installTool(dpkgQuery, printing(format));
    const pageSoftware page(nullptr);
    QTEST(mainRows(page), "rows");
}

void tst_PackageQueries::readsTheAddons_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("rows");
    QTest::newRow("heading, package, empty line")
        << QByteArray("The Orvo packages are:\\n  a  1.0 \\n\\n") << "a  1.0";
    QTest::newRow("no heading") << QByteArray("a\\nb\\n") << "a / b";
    QTest::newRow("another heading") << QByteArray("Orvo packages:\\n") << "Orvo packages:";
    QTest::newRow("Latin-1") << QByteArray("caf\\351\\n") << QString::fromLatin1("caf\xe9");
    QTest::newRow("a zero byte") << QByteArray("a\\nb\\000c\\nd\\n") << "a / b";
    QTest::newRow("nothing") << QByteArray("") << "";
}

void tst_PackageQueries::readsTheAddons()
{
    QFETCH(QByteArray, format);
    Device::installTool(ovpkg, printing(format));
    const pageSoftware page(nullptr);
    QTEST(addonRows(page), "rows");
}

#define REQUIRE_REAL_DPKG_QUERY()                                                                            \
    if (!QFile::exists(qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/dpkg-query")))            \
        QSKIP("this machine has no dpkg-query");                                                             \
    Device::installTool(dpkgQuery, "exec \"$SYSINFO_REAL_BIN/dpkg-query\" \"$@\"")

void tst_PackageQueries::listsTheRealPackages()
{
    REQUIRE_REAL_DPKG_QUERY();
    Device::remove(packageNames);
    const QStringList expected =
        dpkgQueryLines({QStringLiteral("-W"), QStringLiteral("-f=${binary:Package}|${Version}\\n")});
    QVERIFY(expected.size() > 50);
    const pageSoftware page(nullptr);
    QStringList shown;
    const QStandardItemModel *model = modelOf(page, mainTitle);
    for (int row = 0; row < model->rowCount(); ++row)
        shown.append(model->index(row, 0).data().toString() + QLatin1Char('|')
                     + model->index(row, 1).data().toString());
    QCOMPARE(shown, expected);
}

void tst_PackageQueries::listsTheRealPackagesThatAreNamed()
{
    REQUIRE_REAL_DPKG_QUERY();
    Device::write(packageNames, "coreutils\nthere-is-no-such-package\nbash\n");
    const QStringList expected =
        dpkgQueryLines({QStringLiteral("-W"), QStringLiteral("-f=${binary:Package}|${Version}\\n"),
                        QStringLiteral("coreutils"), QStringLiteral("bash")});
    QCOMPARE(expected.size(), 2);
    const pageSoftware page(nullptr);
    QCOMPARE(mainRows(page), expected.join(QStringLiteral(" / ")));
}

void tst_PackageQueries::showsArchitectures()
{
    REQUIRE_REAL_DPKG_QUERY();
    Device::write(packageNames, "libc6");
    const QStringList architecture = dpkgQueryLines(
        {QStringLiteral("-W"), QStringLiteral("-f=${Architecture}\\n"), QStringLiteral("libc6")});
    QVERIFY(!architecture.isEmpty());
    const pageSoftware page(nullptr);
    QVERIFY2(
        mainRows(page).startsWith(QStringLiteral("libc6:") + architecture.constFirst() + QLatin1Char('|')),
        qPrintable(mainRows(page)));
}

QTEST_MAIN(tst_PackageQueries)
#include "tst_packagequeries.moc"
