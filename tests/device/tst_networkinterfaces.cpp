#include "pages/network/netstatsview.h"
#include "pages/network/networkdevice.h"
#include "pages/network/networksettings.h"
#include "tests/device/device.h"
#include "tests/device/network.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>

#include <arpa/inet.h>
#include <sys/mount.h>

/// The kernel's, the files' and the commands' answers about real interfaces.
class tst_NetworkInterfaces : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void answersLikeIp_data();
    void answersLikeIp();
    void answersForAnyName_data();
    void answersForAnyName();
    void loopback();
    void networkAndBroadcast_data();
    void networkAndBroadcast();
    void upWithoutAddress();
    void upWithoutCarrier();
    void downKeepsItsAddress();
    void answersAreFetchedAnew();
    void virtualInterfaceHasNoDriver();
    void driver();

    void presentCandidates_data();
    void presentCandidates();
    void longerNameLendsItsCounters();

    void settingsOfTheDevice();
    void settingsBeyondAscii();
    void dhcpConfigured_data();
    void dhcpConfigured();
    void withoutFiles_data();
    void withoutFiles();
    void gateway_data();
    void gateway();
    void gatewayOfListedRoutes_data();
    void gatewayOfListedRoutes();
    void gatewayWithoutRouteCommand();
    void dhcpServerOfEachInterface();
};

namespace {

bool isArm()
{
    return Device::name() == QLatin1String("arm");
}

QString presentCandidateNames()
{
    QStringList present;
    const QStringList candidates = candidateInterfaces();
    for (const QString &name : candidates) {
        if (isInterfacePresent(name))
            present.append(name);
    }
    return present.join(QLatin1Char(' '));
}

} // namespace

void tst_NetworkInterfaces::cleanup()
{
    Device::restore();
    Network::reset();
}

void tst_NetworkInterfaces::answersLikeIp_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"lo", "eth0", "wlan0", "cable0"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_NetworkInterfaces::answersLikeIp()
{
    QFETCH(QString, name);
    const Network::InterfaceFacts facts = Network::facts(name);
    NetworkDevice device(name);
    QCOMPARE(device.address(), facts.address);
    QCOMPARE(device.netmask(), facts.netmask);
    QCOMPARE(device.isUp(), facts.state == QLatin1String("Enabled"));
    QCOMPARE(device.macAddress(), facts.macAddress);
    if (!facts.broadcast.isEmpty())
        QCOMPARE(device.broadcast(), facts.broadcast);
}

void tst_NetworkInterfaces::answersForAnyName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("one character") << "e";
    QTest::newRow("seven characters") << "abcdefg";
    QTest::newRow("eleven characters") << "athath_pci0";
    QTest::newRow("fifteen characters, the most") << "abcdefghijklmno";
    QTest::newRow("beyond ASCII") << QStringLiteral("\u00e90");
    QTest::newRow("beyond Latin-1") << QStringLiteral("\u044d0");
}

void tst_NetworkInterfaces::answersForAnyName()
{
    QFETCH(QString, name);
    Network::addInterface(name);
    Network::ip(qPrintable(QStringLiteral("address add 10.77.66.55/21 broadcast + dev ") + name));
    Network::ip(qPrintable(QStringLiteral("link set %1 up").arg(name)));
    const Network::InterfaceFacts facts = Network::facts(name);
    QCOMPARE(facts.macAddress.size(), 17);
    NetworkDevice device(name);
    QCOMPARE(device.address(), QStringLiteral("10.77.66.55"));
    QCOMPARE(device.netmask(), QStringLiteral("255.255.248.0"));
    QCOMPARE(device.broadcast(), facts.broadcast);
    QVERIFY(device.isUp());
    QCOMPARE(device.macAddress(), facts.macAddress);
}

void tst_NetworkInterfaces::loopback()
{
    NetworkDevice device(QStringLiteral("lo"));
    QCOMPARE(device.rawAddress(), htonl(0x7F000001U));
    QCOMPARE(device.rawNetmask(), htonl(0xFF000000U));
    QCOMPARE(device.rawNetwork(), htonl(0x7F000000U));
    QCOMPARE(device.rawBroadcast(), htonl(0x7FFFFFFFU));
    QCOMPARE(device.address(), QStringLiteral("127.0.0.1"));
    QCOMPARE(device.netmask(), QStringLiteral("255.0.0.0"));
    QCOMPARE(device.network(), QStringLiteral("127.0.0.0"));
    QCOMPARE(device.broadcast(), QStringLiteral("127.255.255.255"));
    QVERIFY(device.isUp());
    QCOMPARE(device.macAddress(), QStringLiteral("00:00:00:00:00:00"));
}

void tst_NetworkInterfaces::networkAndBroadcast_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("netmask");
    QTest::addColumn<QString>("network");
    QTest::addColumn<QString>("broadcast");

    QTest::newRow("/24") << "192.168.1.20/24"
                         << "255.255.255.0"
                         << "192.168.1.0"
                         << "192.168.1.255";
    QTest::newRow("/16") << "172.16.200.1/16"
                         << "255.255.0.0"
                         << "172.16.0.0"
                         << "172.16.255.255";
    QTest::newRow("/27") << "10.0.0.77/27"
                         << "255.255.255.224"
                         << "10.0.0.64"
                         << "10.0.0.95";
    QTest::newRow("/32") << "10.0.0.1/32"
                         << "255.255.255.255"
                         << "10.0.0.1"
                         << "10.0.0.1";
    QTest::newRow("/1") << "201.2.3.4/1"
                        << "128.0.0.0"
                        << "128.0.0.0"
                        << "255.255.255.255";
}

void tst_NetworkInterfaces::networkAndBroadcast()
{
    QFETCH(QString, address);
    Network::ip("address flush dev eth0");
    Network::ip(qPrintable(QStringLiteral("address add %1 dev eth0").arg(address)));
    const NetworkDevice device(QStringLiteral("eth0"));
    QCOMPARE(device.address(), address.section(QLatin1Char('/'), 0, 0));
    QTEST(device.netmask(), "netmask");
    QTEST(device.network(), "network");
    QTEST(device.broadcast(), "broadcast");
}

void tst_NetworkInterfaces::upWithoutAddress()
{
    Network::ip("address flush dev eth0");
    const NetworkDevice device(QStringLiteral("eth0"));
    QVERIFY(device.isUp());
    QCOMPARE(device.address(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.netmask(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.network(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.broadcast(), QStringLiteral("255.255.255.255"));
}

void tst_NetworkInterfaces::upWithoutCarrier()
{
    Network::ip("link set cable0 down");
    QFile carrier(QStringLiteral("/sys/class/net/eth0/carrier"));
    QVERIFY(carrier.open(QIODevice::ReadOnly));
    QCOMPARE(carrier.readAll(), QByteArray("0\n"));
    QVERIFY(NetworkDevice(QStringLiteral("eth0")).isUp());
}

void tst_NetworkInterfaces::downKeepsItsAddress()
{
    const QString address = Network::facts(QStringLiteral("eth0")).address;
    Network::ip("link set eth0 down");
    const NetworkDevice device(QStringLiteral("eth0"));
    QVERIFY(!device.isUp());
    QCOMPARE(device.address(), address);
}

void tst_NetworkInterfaces::answersAreFetchedAnew()
{
    NetworkDevice device(QStringLiteral("eth0"));
    const QString macAddress = device.macAddress();
    Network::ip("link set eth0 down");
    Network::ip("link set eth0 address 02:00:00:00:00:99");
    Network::ip("address flush dev eth0");
    Network::ip("address add 10.9.8.7/8 dev eth0");
    QCOMPARE(device.address(), QStringLiteral("10.9.8.7"));
    QCOMPARE(device.netmask(), QStringLiteral("255.0.0.0"));
    QVERIFY(!device.isUp());
    QCOMPARE(device.macAddress(), macAddress);
    QCOMPARE(NetworkDevice(QStringLiteral("eth0")).macAddress(), QStringLiteral("02:00:00:00:00:99"));
}

void tst_NetworkInterfaces::virtualInterfaceHasNoDriver()
{
    QVERIFY(NetworkDevice(QStringLiteral("eth0")).driver().isNull());
}

void tst_NetworkInterfaces::driver()
{
    // A folder as a network card has it, in the place of the virtual interface's own.
    const QString folder = QStringLiteral("/sys/class/net/eth0");
    QCOMPARE(mount("card", qPrintable(folder), "tmpfs", 0, nullptr), 0);
    const auto uncover = qScopeGuard([&folder] { umount2(qPrintable(folder), MNT_DETACH); });
    QVERIFY(QDir(folder).mkdir(QStringLiteral("device")));
    QVERIFY(QFile::link(QStringLiteral("../../../../bus/pci/drivers/e1000"),
                        folder + QStringLiteral("/device/driver")));
    QCOMPARE(NetworkDevice(QStringLiteral("eth0")).driver(), QStringLiteral("e1000"));
    QVERIFY(NetworkDevice(QStringLiteral("wlan0")).driver().isNull());
}

void tst_NetworkInterfaces::presentCandidates_data()
{
    QTest::addColumn<QString>("interfaces");
    QTest::addColumn<QString>("present");

    QTest::newRow("those of the device") << "eth0 wlan0"
                                         << "eth0 wlan0";
    QTest::newRow("the other way round") << "wlan0 eth0"
                                         << "eth0 wlan0";
    QTest::newRow("none") << ""
                          << "";
    QTest::newRow("none of the candidates") << "usb0 br0 wlan2"
                                            << "";
    QTest::newRow("all") << "athath_pci0 via0 wlan1 wlan0 eth1 eth0"
                         << "eth0 eth1 wlan0 wlan1 via0 athath_pci0";
    QTest::newRow("eth10 makes eth1") << "eth10"
                                      << "eth1";
    QTest::newRow("veth0 makes eth0") << "veth0"
                                      << "eth0";
    QTest::newRow("two wireless names make no third") << "ath0 ath_pci0"
                                                      << "";
}

void tst_NetworkInterfaces::presentCandidates()
{
    QFETCH(QString, interfaces);
    Network::ip("link delete eth0");
    Network::ip("link delete wlan0");
    const QStringList names = interfaces.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &name : names)
        Network::addInterface(name);
    QTEST(presentCandidateNames(), "present");
}

void tst_NetworkInterfaces::longerNameLendsItsCounters()
{
    Network::ip("link add eth10 type veth peer name cable10");
    Network::ip("link set cable10 up");
    Network::ip("link set eth10 up");
    Network::sendFrames("cable10", 3, 100);
    QVERIFY(isInterfacePresent(QStringLiteral("eth1")));
    QTRY_VERIFY(readInterfaceCounters(QStringLiteral("eth1")).section(QLatin1Char(' '), 0, 0).toInt() >= 300);
    QCOMPARE(NetworkDevice(QStringLiteral("eth1")).macAddress(), QString());
}

void tst_NetworkInterfaces::settingsOfTheDevice()
{
    QCOMPARE(readHostName(), isArm() ? QStringLiteral("tc-arm-01") : QStringLiteral("tc-x86-02"));
    QCOMPARE(readSearchDomain(), isArm() ? QStringLiteral("corp.example") : QStringLiteral("branch.example"));
    QCOMPARE(readDefaultGateway(), isArm() ? QStringLiteral("192.168.1.1") : QStringLiteral("10.1.1.1"));
}

void tst_NetworkInterfaces::settingsBeyondAscii()
{
    Device::write(QStringLiteral("/etc/hostname"), "caf\xc3\xa9\n");
    Device::write(QStringLiteral("/etc/resolv.conf"), "search \xd1\x82\xd0\xba.example\n");
    QCOMPARE(readHostName(), QStringLiteral("caf\u00e9"));
    QCOMPARE(readSearchDomain(), QStringLiteral("\u0442\u043a.example"));
}

void tst_NetworkInterfaces::dhcpConfigured_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("configured");

    QTest::newRow("eth0") << "eth0" << isArm();
    QTest::newRow("wlan0") << "wlan0" << false;
    QTest::newRow("part of the name") << "th0" << isArm();
}

void tst_NetworkInterfaces::dhcpConfigured()
{
    QFETCH(QString, name);
    QTEST(isDhcpConfigured(name), "configured");
}

void tst_NetworkInterfaces::withoutFiles_data()
{
    QTest::addColumn<bool>("unreadable");
    QTest::newRow("missing") << false;
    QTest::newRow("unreadable") << true;
}

void tst_NetworkInterfaces::withoutFiles()
{
    QFETCH(bool, unreadable);
    const QString device = isArm() ? QStringLiteral("eth0") : QStringLiteral("wlan0");
    for (const QString &path :
         {QStringLiteral("/etc/hostname"), QStringLiteral("/etc/resolv.conf"),
          QStringLiteral("/etc/network/interfaces"),
          QStringLiteral("/var/lib/dhcp3/vars/%1/dhcp_server_identifier").arg(device)}) {
        if (unreadable)
            Device::makeUnreadable(path);
        else
            Device::remove(path);
    }
    QCOMPARE(readHostName(), QString());
    QCOMPARE(readSearchDomain(), QString());
    QCOMPARE(readDhcpServer(device), QStringLiteral("none"));
    QVERIFY(!isDhcpConfigured(QStringLiteral("eth0")));
}

void tst_NetworkInterfaces::gateway_data()
{
    QTest::addColumn<QString>("routes");
    QTest::addColumn<QString>("gateway");

    QTest::newRow("none") << ""
                          << "";
    QTest::newRow("no default route") << "10.5.0.0/16 via 192.0.2.9"
                                      << "";
    QTest::newRow("one") << "default via 192.0.2.9"
                         << "192.0.2.9";
    QTest::newRow("several") << "default via 192.0.2.8 metric 200|default via 192.0.2.9 metric 100"
                             << "192.0.2.9";
    QTest::newRow("without a gateway") << "default dev eth0"
                                       << "0.0.0.0";
}

void tst_NetworkInterfaces::gateway()
{
    QFETCH(QString, routes);
    Network::ip("address flush dev eth0");
    Network::ip("address add 192.0.2.1/24 dev eth0");
    const QStringList lines = routes.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &route : lines)
        Network::ip(qPrintable(QStringLiteral("route add ") + route));
    QTEST(readDefaultGateway(), "gateway");
}

void tst_NetworkInterfaces::gatewayOfListedRoutes_data()
{
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QString>("gateway");

    const QByteArray head = "Kernel IP routing table\nDestination     Gateway         Genmask\n";
    QTest::newRow("first of two") << head + "0.0.0.0 10.0.0.1 0.0.0.0\n0.0.0.0 10.0.0.2 0.0.0.0\n"
                                  << "10.0.0.1";
    QTest::newRow("not at the line's start") << head + " 0.0.0.0 10.0.0.1 0.0.0.0\n"
                                             << "";
    QTest::newRow("any character for a dot") << head + "0:0:0:0 10.0.0.1 0.0.0.0\n"
                                             << "10.0.0.1";
    QTest::newRow("longer first column") << head + "0.0.0.0/0 10.0.0.1 0.0.0.0\n"
                                         << "10.0.0.1";
    QTest::newRow("no second column") << head + "0.0.0.0\n"
                                      << "";
    QTest::newRow("nothing") << QByteArray() << "";
}

void tst_NetworkInterfaces::gatewayOfListedRoutes()
{
    QFETCH(QByteArray, listing);
    Device::installTool(QStringLiteral("/usr/sbin/route"), "cat <<'END'\n" + listing + "END");
    QTEST(readDefaultGateway(), "gateway");
}

void tst_NetworkInterfaces::gatewayWithoutRouteCommand()
{
    Device::remove(QStringLiteral("/usr/sbin/route"));
    QCOMPARE(readDefaultGateway(), QString());
}

void tst_NetworkInterfaces::dhcpServerOfEachInterface()
{
    const QString eth0 = readDhcpServer(QStringLiteral("eth0"));
    const QString wlan0 = readDhcpServer(QStringLiteral("wlan0"));
    QCOMPARE(eth0, isArm() ? QStringLiteral("192.168.1.1") : QStringLiteral("none"));
    QCOMPARE(wlan0, isArm() ? QStringLiteral("none") : QStringLiteral("172.20.0.1"));
    Device::write(QStringLiteral("/var/lib/dhcp3/vars/eth1/dhcp_server_identifier"),
                  "dhcp_server_identifier=\n");
    QCOMPARE(readDhcpServer(QStringLiteral("eth1")), QString());
    Device::write(QStringLiteral("/var/lib/dhcp3/vars/eth1/dhcp_server_identifier"), "nothing\n");
    QCOMPARE(readDhcpServer(QStringLiteral("eth1")), QStringLiteral("none"));
}

QTEST_GUILESS_MAIN(tst_NetworkInterfaces)
#include "tst_networkinterfaces.moc"
