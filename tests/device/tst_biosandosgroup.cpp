#include "pages/system/biosandos.h"
#include "tests/device/systempage.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

using namespace SystemPage;

class tst_BiosAndOsGroup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }
    void biosAndSerialNumberUnknown_data();
    void biosAndSerialNumberUnknown();
    void biosFromTheFirstMatchingLine();
    void kernelVersionWithoutUname();
    void kernelVersionOfAFailingUname();
    void kernelVersionUpToTheZeroByte();
    void kernelVersionOfAHangingUname();
    void buildIdMissing();
    void buildIdEmpty();
    void buildIdOfBlanks();
};

void tst_BiosAndOsGroup::biosAndSerialNumberUnknown_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("dmidecode not installed") << dmidecode << QByteArray();
    QTest::newRow("sudo not installed") << "/usr/bin/sudo" << QByteArray();
    QTest::newRow("sudo refuses") << "/usr/bin/sudo"
                                  << QByteArray("echo 'sudo: a password is required' >&2; exit 1");
    QTest::newRow("no DMI tables") << dmidecode
                                   << QByteArray("echo '# No SMBIOS nor DMI entry point found, sorry.'");
    QTest::newRow("empty values") << dmidecode
                                  << QByteArray(
                                         "printf '\\tVersion:  \\n\\tRelease Date: \\n\\tSerial Number:\\n'");
}

void tst_BiosAndOsGroup::biosAndSerialNumberUnknown()
{
    QFETCH(QString, tool);
    QFETCH(QByteArray, script);
    if (script.isEmpty())
        Device::remove(tool);
    else
        Device::installTool(tool, script);
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "BIOS Version:"), QStringLiteral("Unknown"));
    QCOMPARE(shownValue(&page, "BIOS Release Date:"), QStringLiteral("Unknown"));
    QCOMPARE(shownValue(&page, "Serial Number:"), QStringLiteral("Unknown"));
}

void tst_BiosAndOsGroup::biosFromTheFirstMatchingLine()
{
    Device::installTool(
        dmidecode,
        "printf '\\tBIOS Version: a:b\\n\\tVersion: second\\n\\tRelease Date: d\\n\\tRelease Date: e\\n'");
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "BIOS Version:"), QStringLiteral("a"));
    QCOMPARE(shownValue(&page, "BIOS Release Date:"), QStringLiteral("d"));
}

void tst_BiosAndOsGroup::kernelVersionWithoutUname()
{
    Device::write(QStringLiteral("/usr/bin/uname"), "not a program");
    QVERIFY(QFile::setPermissions(QStringLiteral("/usr/bin/uname"), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(shownByNewPage("OS Kernel Version:"), QStringLiteral("Unknown"));
    Device::remove(QStringLiteral("/usr/bin/uname"));
    QCOMPARE(shownByNewPage("OS Kernel Version:"), QStringLiteral("Unknown"));
}

void tst_BiosAndOsGroup::kernelVersionOfAFailingUname()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"),
                        "echo '  2.6.35 '; echo second; echo error >&2; exit 3");
    QCOMPARE(shownByNewPage("OS Kernel Version:"), QStringLiteral("2.6.35 \nsecond"));
    Device::installTool(QStringLiteral("/usr/bin/uname"), "echo 2.6.36; kill -KILL $$");
    QCOMPARE(shownByNewPage("OS Kernel Version:"), QStringLiteral("2.6.36"));
    Device::installTool(QStringLiteral("/usr/bin/uname"), "true");
    QCOMPARE(shownByNewPage("OS Kernel Version:"), QString());
}

void tst_BiosAndOsGroup::kernelVersionUpToTheZeroByte()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"), "printf '2.6\\000.35\\n'");
    QCOMPARE(shownByNewPage("OS Kernel Version:"), QStringLiteral("2.6"));
}

void tst_BiosAndOsGroup::kernelVersionOfAHangingUname()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"),
                        "echo 2.6.35; echo $$ >\"$SYSINFO_RIG/uname-pid\"; exec sleep 600");
    QElapsedTimer time;
    time.start();
    QVERIFY(readKernelVersion(500).isNull());
    QVERIFY(time.elapsed() >= 500);
    QFile pid(qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/uname-pid"));
    QVERIFY(pid.open(QIODevice::ReadOnly));
    QVERIFY(!QFile::exists(QStringLiteral("/proc/") + QString::fromLatin1(pid.readAll().trimmed())));
}

void tst_BiosAndOsGroup::buildIdMissing()
{
    Device::remove(QStringLiteral("/etc/imageid"));
    QCOMPARE(shownByNewPage("OS Build ID:"), QStringLiteral("Unknown"));
}

void tst_BiosAndOsGroup::buildIdEmpty()
{
    Device::write(QStringLiteral("/etc/imageid"), "");
    QCOMPARE(shownByNewPage("OS Build ID:"), QStringLiteral("Unknown"));
}

void tst_BiosAndOsGroup::buildIdOfBlanks()
{
    Device::write(QStringLiteral("/etc/imageid"), "   \nTC50\n");
    QCOMPARE(shownByNewPage("OS Build ID:"), QString());
}

QTEST_MAIN(tst_BiosAndOsGroup)
#include "tst_biosandosgroup.moc"
