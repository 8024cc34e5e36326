#include "tests/device/device.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <cstdio>
#include <cstdlib>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

} // namespace

/// The tests on devices are worth nothing unless the device is what it says it is.
class tst_Device : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }

    void holdsEveryFileAndToolOfADevice_data();
    void holdsEveryFileAndToolOfADevice();
    void recordsCallsWithTheirArguments();
    void recordsWhatGoesToTheShell();
    void restoresWhatATestChanged();
    void makesFilesUnreadableForRoot();
    void hasNoNetworkButItsOwn();
};

void tst_Device::holdsEveryFileAndToolOfADevice_data()
{
    QTest::addColumn<QString>("path");
    for (const char *path : {"/proc/cpuinfo",
                             "/proc/meminfo",
                             "/proc/partitions",
                             "/proc/net/dev",
                             "/etc/imageid",
                             "/etc/resolv.conf",
                             "/etc/hostname",
                             "/etc/network/interfaces",
                             "/etc/SysInfo/pkg_list.conf",
                             "/dev/disk/by-uuid",
                             "/sys/class/net/eth0/address",
                             "/usr/share/icewm/icons/sysinfo_32x32.xpm",
                             "/usr/bin/vexa-hwsw-id",
                             "/usr/bin/ovpkg",
                             "/usr/share/ovpkg/.ovpkg3",
                             "/usr/bin/dpkg-query",
                             "/usr/sbin/dmidecode",
                             "/usr/bin/sudo",
                             "/usr/bin/df",
                             "/usr/bin/uname",
                             "/usr/bin/cat",
                             "/usr/bin/ping",
                             "/usr/bin/host",
                             "/usr/bin/traceroute",
                             "/sbin/route",
                             "/usr/bin/generateDiagnostic.sh"})
        QTest::newRow(path) << QString::fromLatin1(path);
    QTest::newRow("DHCP record") << (Device::name() == QLatin1String("arm")
                                         ? QStringLiteral("/var/lib/dhcp3/vars/eth0/dhcp_server_identifier")
                                         : QStringLiteral(
                                             "/var/lib/dhcp3/vars/wlan0/dhcp_server_identifier"));
}

void tst_Device::holdsEveryFileAndToolOfADevice()
{
    QFETCH(QString, path);
    QVERIFY(QFile::exists(path));
}

void tst_Device::recordsCallsWithTheirArguments()
{
    Device::clearCalls();
    QProcess::execute(QStringLiteral("/usr/bin/ovpkg"),
                      {QStringLiteral("-l"), QString(), QStringLiteral("a b")});
    const QStringList expected{QStringLiteral("/usr/bin/ovpkg"), QStringLiteral("-l"), QString(),
                               QStringLiteral("a b")};
    QCOMPARE(Device::calls(), QList<QStringList>{expected});
    Device::clearCalls();
    QVERIFY(Device::calls().isEmpty());
}

void tst_Device::recordsWhatGoesToTheShell()
{
    Device::clearCalls();
    QCOMPARE(std::system("exit 3 # 'quoted'") >> 8, 3);
    QCOMPARE(Device::shellCommands(), QStringList{QStringLiteral("exit 3 # 'quoted'")});
}

void tst_Device::restoresWhatATestChanged()
{
    const QByteArray meminfo = contentOf(QStringLiteral("/proc/meminfo"));
    const QByteArray imageId = contentOf(QStringLiteral("/etc/imageid"));
    const QByteArray df = contentOf(QStringLiteral("/usr/bin/df"));
    Device::write(QStringLiteral("/proc/meminfo"), "changed");
    Device::remove(QStringLiteral("/etc/imageid"));
    Device::installTool(QStringLiteral("/usr/bin/df"), "echo changed");
    Device::write(QStringLiteral("/etc/a-new-folder/a-new-file"), "new");
    Device::link(QStringLiteral("/dev/disk/by-label/NEW"), QStringLiteral("../../sdz1"));
    QCOMPARE(contentOf(QStringLiteral("/proc/meminfo")), QByteArray("changed"));
    QVERIFY(!QFile::exists(QStringLiteral("/etc/imageid")));
    QCOMPARE(contentOf(QStringLiteral("/etc/a-new-folder/a-new-file")), QByteArray("new"));

    Device::restore();
    QCOMPARE(contentOf(QStringLiteral("/proc/meminfo")), meminfo);
    QCOMPARE(contentOf(QStringLiteral("/etc/imageid")), imageId);
    QCOMPARE(contentOf(QStringLiteral("/usr/bin/df")), df);
    QVERIFY(!QFile::exists(QStringLiteral("/etc/a-new-folder/a-new-file")));
    QVERIFY(!QFileInfo(QStringLiteral("/dev/disk/by-label/NEW")).isSymLink());
}

void tst_Device::makesFilesUnreadableForRoot()
{
    Device::makeUnreadable(QStringLiteral("/proc/cpuinfo"));
    QVERIFY(!QFile(QStringLiteral("/proc/cpuinfo")).open(QIODevice::ReadOnly));
    QCOMPARE(std::fopen("/proc/cpuinfo", "r"), nullptr);
    Device::restore();
    QVERIFY(QFile(QStringLiteral("/proc/cpuinfo")).open(QIODevice::ReadOnly));
}

void tst_Device::hasNoNetworkButItsOwn()
{
    QStringList interfaces =
        QDir(QStringLiteral("/sys/class/net")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    interfaces.sort();
    QCOMPARE(interfaces.join(QLatin1Char(' ')), QStringLiteral("cable0 cable1 eth0 lo wlan0"));
}

QTEST_GUILESS_MAIN(tst_Device)
#include "tst_device.moc"
