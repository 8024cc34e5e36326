#include "pages/network/networkdevice.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdarg>
#include <type_traits>

#include <arpa/inet.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

static_assert(std::has_virtual_destructor_v<NetworkDevice>);

namespace {

/// What a query asked of the kernel, in order: "socket", the names of the requests, "close".
QStringList kernelCalls;
bool socketsFail = false;
int querySocket = -2;

QString requestName(unsigned long request)
{
    switch (request) {
    case SIOCGIFADDR:
        return QStringLiteral("address");
    case SIOCGIFNETMASK:
        return QStringLiteral("netmask");
    case SIOCGIFFLAGS:
        return QStringLiteral("flags");
    }
    return QString::number(request, 16);
}

} // namespace

// The program's own calls come by here on their way to the kernel.
extern "C" int socket(int domain, int type, int protocol)
{
    querySocket = socketsFail ? -1 : static_cast<int>(syscall(SYS_socket, domain, type, protocol));
    if (domain == AF_INET && type == SOCK_DGRAM && protocol == 0)
        kernelCalls.append(QStringLiteral("socket"));
    return querySocket;
}

extern "C" int ioctl(int descriptor, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    void *record = va_arg(arguments, void *);
    va_end(arguments);
    if (descriptor == querySocket)
        kernelCalls.append(requestName(request));
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, record));
}

extern "C" int close(int descriptor)
{
    if (descriptor == querySocket) {
        kernelCalls.append(QStringLiteral("close"));
        querySocket = -2;
    }
    return static_cast<int>(syscall(SYS_close, descriptor));
}

namespace {

/// A directory that a device with the fitting name takes for its own below /sys/class/net.
class SysfsDirectory {
public:
    QString interfaceName() const { return QStringLiteral("../../..") + m_directory.path(); }

    void write(const char *name, const QByteArray &content)
    {
        QFile file(m_directory.filePath(QLatin1String(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", name);
    }

    void remove(const char *name) { QFile::remove(m_directory.filePath(QLatin1String(name))); }

    void makePath(const QString &path) { QDir(m_directory.path()).mkpath(path); }

    void removeFolder(const QString &name) { QDir(m_directory.path()).rmdir(name); }

    void linkDriver(const QString &target)
    {
        makePath(QStringLiteral("device"));
        QFile::link(target, m_directory.filePath(QStringLiteral("device/driver")));
    }

private:
    QTemporaryDir m_directory;
};

QStringList openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
}

} // namespace

class tst_NetworkDevice : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { socketsFail = false; }

    void nameAndPath();
    void addressText_data();
    void addressText();
    void unknownInterface_data();
    void unknownInterface();
    void noSocket();
    void requestThatTheKernelRejects();
    void oneSocketForEachQuery_data();
    void oneSocketForEachQuery();
    void descriptorsStay();

    void macAddress_data();
    void macAddress();
    void macAddressIsReadOnce();
    void macAddressIsTriedAgain();
    void macAddressThatCannotBeOpened();
    void emptyMacAddressIsRemembered();

    void driver_data();
    void driver();
    void driverIsReadOnce();
    void driverIsTriedAgain();
    void driverThatIsNoLink();
    void emptyDriverIsRemembered();
};

void tst_NetworkDevice::init()
{
    kernelCalls.clear();
}

void tst_NetworkDevice::nameAndPath()
{
    NetworkDevice device(QStringLiteral("eth0"));
    QCOMPARE(device.name(), QStringLiteral("eth0"));
    QCOMPARE(device.sysfsPath(), QStringLiteral("/sys/class/net/eth0"));
}

void tst_NetworkDevice::addressText_data()
{
    QTest::addColumn<quint32>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << 0U << "0.0.0.0";
    QTest::newRow("all ones") << 0xFFFFFFFFU << "255.255.255.255";
    QTest::newRow("network byte order") << htonl(0xC0A80114U) << "192.168.1.20";
    QTest::newRow("loopback") << htonl(0x7F000001U) << "127.0.0.1";
}

void tst_NetworkDevice::addressText()
{
    QFETCH(quint32, value);
    QTEST(NetworkDevice::addressToString(value), "text");
}

void tst_NetworkDevice::unknownInterface_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("no such interface") << "nosuch0";
    QTest::newRow("empty name") << "";
    QTest::newRow("fifteen characters") << "nosuchinterface";
    QTest::newRow("sixteen characters") << "nosuchinterface0";
    QTest::newRow("long name") << QString(300, QLatin1Char('x'));
    QTest::newRow("not ASCII") << QStringLiteral("\u00e9th0");
}

void tst_NetworkDevice::unknownInterface()
{
    QFETCH(QString, name);
    NetworkDevice device(name);
    QCOMPARE(device.rawAddress(), 0U);
    QCOMPARE(device.rawNetmask(), 0U);
    QCOMPARE(device.address(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.netmask(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.network(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.broadcast(), QStringLiteral("255.255.255.255"));
    QVERIFY(!device.isUp());
    QVERIFY(device.macAddress().isEmpty());
    QVERIFY(device.driver().isNull());
}

void tst_NetworkDevice::noSocket()
{
    socketsFail = true;
    NetworkDevice device(QStringLiteral("lo"));
    QCOMPARE(device.address(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.netmask(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.network(), QStringLiteral("0.0.0.0"));
    QCOMPARE(device.broadcast(), QStringLiteral("255.255.255.255"));
    QVERIFY(!device.isUp());
    QCOMPARE(device.macAddress(), QStringLiteral("00:00:00:00:00:00"));
}

void tst_NetworkDevice::requestThatTheKernelRejects()
{
    NetworkDevice device(QStringLiteral("lo"));
    ifreq req{};
    QVERIFY(!device.queryInterface(~0UL, req));
    QCOMPARE(req.ifr_name, "lo");
    QVERIFY(device.queryInterface(SIOCGIFINDEX, req));
    QCOMPARE(req.ifr_ifindex, 1);
}

void tst_NetworkDevice::oneSocketForEachQuery_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("requests");

    QTest::newRow("address") << "address"
                             << "address";
    QTest::newRow("netmask") << "netmask"
                             << "netmask";
    QTest::newRow("network") << "network"
                             << "address netmask";
    QTest::newRow("broadcast") << "broadcast"
                               << "address netmask";
    QTest::newRow("flags") << "flags"
                           << "flags";
}

void tst_NetworkDevice::oneSocketForEachQuery()
{
    QFETCH(QString, query);
    QFETCH(QString, requests);
    QStringList expected;
    const QStringList words = requests.split(QLatin1Char(' '));
    for (const QString &request : words)
        expected << QStringLiteral("socket") << request << QStringLiteral("close");

    for (const QString &name : {QStringLiteral("lo"), QStringLiteral("nosuch0")}) {
        kernelCalls.clear();
        const NetworkDevice device(name);
        if (query == QLatin1String("address"))
            device.address();
        else if (query == QLatin1String("netmask"))
            device.netmask();
        else if (query == QLatin1String("network"))
            device.network();
        else if (query == QLatin1String("broadcast"))
            device.broadcast();
        else
            device.isUp();
        QCOMPARE(kernelCalls, expected);
    }
}

void tst_NetworkDevice::descriptorsStay()
{
    const QStringList before = openDescriptors();
    for (const QString &name : {QStringLiteral("lo"), QStringLiteral("nosuch0")}) {
        for (int i = 0; i < 100; ++i) {
            NetworkDevice device(name);
            device.network();
            device.broadcast();
            device.isUp();
            device.macAddress();
            device.driver();
        }
    }
    QCOMPARE(openDescriptors(), before);
}

void tst_NetworkDevice::macAddress_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("address");

    QTest::newRow("as the kernel writes it") << QByteArray("00:1a:2b:3c:4d:5e\n") << "00:1a:2b:3c:4d:5e";
    QTest::newRow("upper case kept") << QByteArray("00-1A-2B-3C-4D-5E\n") << "00-1A-2B-3C-4D-5E";
    QTest::newRow("first line only") << QByteArray("00:1a\n2b:3c\n") << "00:1a";
    QTest::newRow("no newline") << QByteArray("00:1a") << "00:1a";
    QTest::newRow("white space folded") << QByteArray(" \t00 \t 1a \n") << "00 1a";
    QTest::newRow("up to the zero byte") << QByteArray("00:1a\0:2b\n", 10) << "00:1a";
    QTest::newRow("Latin-1") << QByteArray("\xe9\n") << QStringLiteral("\u00e9");
    QTest::newRow("longer than a piece") << QByteArray(3000, 'a') << QString(3000, QLatin1Char('a'));
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("empty line") << QByteArray("\n00:1a\n") << "";
}

void tst_NetworkDevice::macAddress()
{
    QFETCH(QByteArray, file);
    SysfsDirectory directory;
    directory.write("address", file);
    NetworkDevice device(directory.interfaceName());
    QTEST(device.macAddress(), "address");
}

void tst_NetworkDevice::macAddressIsReadOnce()
{
    SysfsDirectory directory;
    directory.write("address", "00:1a:2b:3c:4d:5e\n");
    NetworkDevice device(directory.interfaceName());
    QCOMPARE(device.macAddress(), QStringLiteral("00:1a:2b:3c:4d:5e"));
    directory.write("address", "00:00:00:00:00:01\n");
    QCOMPARE(device.macAddress(), QStringLiteral("00:1a:2b:3c:4d:5e"));
    QCOMPARE(NetworkDevice(directory.interfaceName()).macAddress(), QStringLiteral("00:00:00:00:00:01"));
}

void tst_NetworkDevice::macAddressIsTriedAgain()
{
    SysfsDirectory directory;
    NetworkDevice device(directory.interfaceName());
    QVERIFY(device.macAddress().isEmpty());
    directory.write("address", "00:1a:2b:3c:4d:5e\n");
    QCOMPARE(device.macAddress(), QStringLiteral("00:1a:2b:3c:4d:5e"));
}

void tst_NetworkDevice::macAddressThatCannotBeOpened()
{
    SysfsDirectory directory;
    directory.makePath(QStringLiteral("address"));
    NetworkDevice device(directory.interfaceName());
    QVERIFY(device.macAddress().isEmpty());
    directory.removeFolder(QStringLiteral("address"));
    directory.write("address", "00:1a:2b:3c:4d:5e\n");
    QCOMPARE(device.macAddress(), QStringLiteral("00:1a:2b:3c:4d:5e"));
}

void tst_NetworkDevice::emptyMacAddressIsRemembered()
{
    SysfsDirectory directory;
    directory.write("address", "");
    NetworkDevice device(directory.interfaceName());
    QVERIFY(device.macAddress().isEmpty());
    QVERIFY(!device.macAddress().isNull());
    directory.write("address", "00:1a:2b:3c:4d:5e\n");
    QVERIFY(device.macAddress().isEmpty());
}

void tst_NetworkDevice::driver_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("driver");

    QTest::newRow("absolute") << "/sys/bus/pci/drivers/e1000"
                              << "e1000";
    QTest::newRow("relative, as the kernel links it") << "../../../bus/pci/drivers/r8169"
                                                      << "r8169";
    QTest::newRow("upper case kept") << "/drivers/RTL"
                                     << "RTL";
    QTest::newRow("not there") << "/no/such/driver"
                               << "driver";
}

void tst_NetworkDevice::driver()
{
    QFETCH(QString, target);
    SysfsDirectory directory;
    directory.linkDriver(target);
    NetworkDevice device(directory.interfaceName());
    QTEST(device.driver(), "driver");
}

void tst_NetworkDevice::driverIsReadOnce()
{
    SysfsDirectory directory;
    directory.linkDriver(QStringLiteral("/drivers/one"));
    NetworkDevice device(directory.interfaceName());
    QCOMPARE(device.driver(), QStringLiteral("one"));
    directory.remove("device/driver");
    QCOMPARE(device.driver(), QStringLiteral("one"));
}

void tst_NetworkDevice::driverIsTriedAgain()
{
    SysfsDirectory directory;
    NetworkDevice device(directory.interfaceName());
    QVERIFY(device.driver().isNull());
    directory.linkDriver(QStringLiteral("/drivers/one"));
    QCOMPARE(device.driver(), QStringLiteral("one"));
}

void tst_NetworkDevice::driverThatIsNoLink()
{
    SysfsDirectory directory;
    directory.makePath(QStringLiteral("device/driver"));
    NetworkDevice device(directory.interfaceName());
    QVERIFY(device.driver().isNull());
}

void tst_NetworkDevice::emptyDriverIsRemembered()
{
    SysfsDirectory directory;
    directory.linkDriver(QStringLiteral("/"));
    NetworkDevice device(directory.interfaceName());
    QCOMPARE(device.driver(), QString());
    QVERIFY(!device.driver().isNull());
    directory.remove("device/driver");
    directory.linkDriver(QStringLiteral("/drivers/one"));
    QCOMPARE(device.driver(), QString());
}

QTEST_APPLESS_MAIN(tst_NetworkDevice)
#include "tst_networkdevice.moc"
