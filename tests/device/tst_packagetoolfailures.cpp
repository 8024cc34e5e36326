#include "tests/device/softwarepage.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

#include <csignal>

using namespace SoftwarePage;

namespace {

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

/// The file in which a stand-in leaves its process id with leavePid.
QString pidFile()
{
    return qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/pid");
}
const QByteArray leavePid = "echo $$ >\"$SYSINFO_RIG/pid\"\n";

bool runs(const QString &pid)
{
    return kill(pid.toInt(), 0) == 0;
}

} // namespace

class tst_PackageToolFailures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { Device::restore(); }

    void survivesFailingTools_data();
    void survivesFailingTools();
    void drainsFloods();
    void waitsAsLongAsTheToolsMayTake();
    void waitsForEachToolByItsOwnLimit();
    void listsWhatAHangingQueryPrinted();
    void listsWhatAHangingAddonToolPrinted();
    void forgetsWhatAKilledToolPrintedLater();
    void usesTheNamesThatAHangingReaderPrinted();
    void replacesAReaderThatDoesNotTerminate();
};

void tst_PackageToolFailures::init()
{
    QFile::remove(pidFile());
    Device::clearCalls();
}

void tst_PackageToolFailures::survivesFailingTools_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("rows");
    const QByteArray print = printing("a\\n");
    QTest::newRow("exits 1") << print + "; exit 1"
                             << "a";
    QTest::newRow("exits 1 and prints nothing") << QByteArray("exit 1") << "";
    QTest::newRow("complains") << "echo trouble >&2; " + print << "a";
    QTest::newRow("is killed") << print + "; kill -9 $$"
                               << "a";
    QTest::newRow("crashes") << print + "; kill -SEGV $$"
                             << "a";
    QTest::newRow("not executable") << QByteArray() << "";
}

void tst_PackageToolFailures::survivesFailingTools()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, rows);
    Device::installTool(dpkgQuery, printing("before\\n"));
    Device::installTool(ovpkg, printing("before\\n"));
    pageSoftware page(nullptr);
    for (const QString &tool : {dpkgQuery, ovpkg}) {
        Device::installTool(tool, script);
        if (script.isEmpty())
            QVERIFY(QFile::setPermissions(tool, QFile::ReadOwner));
    }
    tick(page);
    QCOMPARE(mainRows(page), rows);
    QCOMPARE(addonRows(page), rows);

    for (const QString &tool : {dpkgQuery, ovpkg})
        Device::installTool(tool, printing("after\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("after"));
    QCOMPARE(addonRows(page), QStringLiteral("after"));
}

void tst_PackageToolFailures::drainsFloods()
{
    // Far more than a pipe holds, on both channels in turn.
    const QByteArray flood = "i=0\n"
                             "while [ $i -lt 200 ]; do\n"
                             "    printf '%05000d\\n' $i\n"
                             "    printf '%05000d\\n' $i >&2\n"
                             "    i=$((i + 1))\n"
                             "done\n";
    for (const QString &tool : {dpkgQuery, ovpkg, cat})
        Device::installTool(tool, flood);
    const pageSoftware page(nullptr);
    for (const QString &title : {mainTitle, addonTitle}) {
        const QStandardItemModel *model = modelOf(page, title);
        QCOMPARE(model->rowCount(), 200);
        const QString last = model->index(199, 0).data().toString();
        QCOMPARE(last, QString(4997, QLatin1Char('0')) + QStringLiteral("199"));
    }
    const QStringList arguments = Device::calls().at(1);
    QCOMPARE(arguments.size(), 1 + 1 + 200 + 1);
    QCOMPARE(arguments.constLast(), QString());
}

void tst_PackageToolFailures::waitsAsLongAsTheToolsMayTake()
{
    QCOMPARE(PackageToolLimits().packageNames, 3000);
    QCOMPARE(PackageToolLimits().query, 30000);
}

void tst_PackageToolFailures::waitsForEachToolByItsOwnLimit()
{
    const QByteArray slowly = "sleep 0.6; ";
    PackageToolLimits limits;
    limits.packageNames = 200;
    {
        Device::installTool(dpkgQuery, slowly + printing("a 1\\n"));
        Device::installTool(ovpkg, slowly + printing("b\\n"));
        const pageSoftware page(nullptr, limits);
        QCOMPARE(mainRows(page), QStringLiteral("a|1"));
        QCOMPARE(addonRows(page), QStringLiteral("b"));
    }
    Device::restore();
    limits.packageNames = 30000;
    limits.query = 1000;
    Device::installTool(cat, "sleep 2; " + printing("bash"));
    const pageSoftware page(nullptr, limits);
    QVERIFY2(Device::calls().contains({dpkgQuery, QStringLiteral("-W"), QStringLiteral("bash")}),
             qPrintable(recordedCalls()));
}

void tst_PackageToolFailures::listsWhatAHangingQueryPrinted()
{
    Device::installTool(dpkgQuery, leavePid + printing("a 1\\nb") + "\nexec sleep 60");
    QElapsedTimer time;
    time.start();
    pageSoftware page(nullptr, shortLimits());
    QVERIFY(time.elapsed() >= shortLimits().query);
    QVERIFY(time.elapsed() < 20000);
    QCOMPARE(mainRows(page), QStringLiteral("a|1 / b"));
    QVERIFY(!addonRows(page).isEmpty());
    const QString pid = contentOf(pidFile());
    QVERIFY(pid.toInt() > 0);
    QVERIFY(!runs(pid));

    Device::installTool(dpkgQuery, printing("c 3\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("c|3"));
}

void tst_PackageToolFailures::listsWhatAHangingAddonToolPrinted()
{
    Device::installTool(ovpkg, leavePid + printing("The Orvo packages:\\na\\nb") + "\nexec sleep 60");
    pageSoftware page(nullptr, shortLimits());
    QCOMPARE(addonRows(page), QStringLiteral("a / b"));
    const QString pid = contentOf(pidFile());
    QVERIFY(pid.toInt() > 0);
    QVERIFY(!runs(pid));

    const QString rows = mainRows(page);
    tick(page);
    QCOMPARE(mainRows(page), rows);
    QCOMPARE(addonRows(page), QStringLiteral("a / b"));
}

void tst_PackageToolFailures::forgetsWhatAKilledToolPrintedLater()
{
    Device::installTool(dpkgQuery, "seq -f 'query-%.0f 1' 5000\nexec sleep 60");
    Device::installTool(ovpkg, printing("addon\\n"));
    pageSoftware page(nullptr, shortLimits());
    QVERIFY(viewOf(page, mainTitle)->model()->rowCount() > 0);
    QCOMPARE(addonRows(page), QStringLiteral("addon"));
}

void tst_PackageToolFailures::usesTheNamesThatAHangingReaderPrinted()
{
    // A reader that is asked to end says so.
    Device::installTool(cat,
                        "trap 'echo terminated >\"$SYSINFO_RIG/pid\"; exit' TERM\n" + printing("bash\\n")
                            + "\nwhile :; do sleep 0.05; done");
    const pageSoftware page(nullptr, shortLimits());
    QVERIFY2(Device::calls().contains({dpkgQuery, QStringLiteral("-W"), QStringLiteral("bash"), QString()}),
             qPrintable(recordedCalls()));
    QTRY_COMPARE(contentOf(pidFile()), QStringLiteral("terminated\n"));
}

void tst_PackageToolFailures::replacesAReaderThatDoesNotTerminate()
{
    Device::installTool(cat, leavePid + "trap '' TERM\n" + printing("bash") + "\nexec sleep 60");
    pageSoftware page(nullptr, shortLimits());
    const QString pid = contentOf(pidFile());
    QVERIFY(pid.toInt() > 0);

    Device::installTool(cat, printing("zsh"));
    Device::clearCalls();
    tick(page);
    QVERIFY(!runs(pid));
    QVERIFY2(Device::calls().contains({dpkgQuery, QStringLiteral("-W"), QStringLiteral("zsh")}),
             qPrintable(recordedCalls()));
}

QTEST_MAIN(tst_PackageToolFailures)
#include "tst_packagetoolfailures.moc"
