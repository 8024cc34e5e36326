#include "app/waitingwork.h"
#include "tests/device/device.h"
#include "tests/unit/nettoolsuser.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTest>
#include <QTextEdit>

#include <memory>
#include <optional>

#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <netinet/udp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// What the test looks at of an IPv4 packet that the device sent.
struct SentPacket {
    int protocol;
    int timeToLive;
    int length;
    QString source;
    int udpPort;
};

/// Sees what the device sends through an interface: the echo requests of ping and the probes of traceroute.
class Wire {
public:
    explicit Wire(const char *interface)
        : m_socket(socket(AF_PACKET, SOCK_DGRAM | SOCK_NONBLOCK, htons(ETH_P_ALL)))
    {
        sockaddr_ll address = {};
        address.sll_family = AF_PACKET;
        address.sll_protocol = htons(ETH_P_ALL);
        address.sll_ifindex = static_cast<int>(if_nametoindex(interface));
        if (bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
            qFatal("There is no looking at %s", interface);
    }
    ~Wire() { close(m_socket); }
    Q_DISABLE_COPY(Wire)

    /// What was sent since the last call.
    QList<SentPacket> sent() const
    {
        QList<SentPacket> packets;
        char bytes[4096];
        sockaddr_ll from = {};
        for (;;) {
            socklen_t size = sizeof(from);
            const ssize_t length =
                recvfrom(m_socket, bytes, sizeof(bytes), 0, reinterpret_cast<sockaddr *>(&from), &size);
            if (length < 0)
                return packets;
            if (from.sll_pkttype != PACKET_OUTGOING || from.sll_protocol != htons(ETH_P_IP))
                continue;
            if (const std::optional<SentPacket> packet = probe(bytes))
                packets << *packet;
        }
    }

private:
    static std::optional<SentPacket> probe(const char *bytes)
    {
        ip header;
        memcpy(&header, bytes, sizeof(header));
        const char *content = bytes + header.ip_hl * 4;
        SentPacket packet{header.ip_p, header.ip_ttl, ntohs(header.ip_len), {}, 0};
        packet.source = QString::fromLatin1(inet_ntoa(header.ip_src));
        if (packet.protocol == IPPROTO_ICMP && content[0] == ICMP_ECHO)
            return packet;
        if (packet.protocol != IPPROTO_UDP)
            return {};
        udphdr udp;
        memcpy(&udp, content, sizeof(udp));
        packet.udpPort = ntohs(udp.uh_dport);
        return packet.udpPort == 53 ? std::nullopt : std::optional(packet);
    }

    int m_socket;
};

} // namespace

/// Runs the real tools on a real network, behind a router.
class tst_NetTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void listsNameServers_data();
    void listsNameServers();
    void listsNameServersOnce_data();
    void listsNameServersOnce();
    void letsAnIpv6NameServerBeEdited();
    void usesTheNameServerOfTheList_data();
    void usesTheNameServerOfTheList();

    void pingGetsReplies();
    void pingOptions_data();
    void pingOptions();
    void pingInterval_data();
    void pingInterval();
    void pingShowsNamesUnlessTold();
    void pingLosesPackets();
    void pingOfUnreachableHosts_data();
    void pingOfUnreachableHosts();
    void stopsALongPing();
    void stopsEveryPingOfARow();

    void traceRouteShowsTwoHops();
    void traceRouteOptions_data();
    void traceRouteOptions();
    void traceRouteWaitsAsLongAsTold();
    void traceRouteComplains_data();
    void traceRouteComplains();

    void looksUpNames_data();
    void looksUpNames();

private:
    void set(const char *box, int number) const;
    void run(const char *tool, const QString &target);
    /// The output of the tool without the notices, and the exit code.
    QString output() const;
    int exitCode() const;
    void letFarHostAnswer(bool answers) const;

    QProcess m_network;
    QString m_far;
    std::unique_ptr<QWidget> m_page;
    std::unique_ptr<NetToolsUser> m_user;
};

void tst_NetTools::initTestCase()
{
    m_network.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_network.start(QFINDTESTDATA("routed-network"), QStringList());
    QVERIFY(m_network.waitForReadyRead(30000));
    const QStringList words = QString::fromLatin1(m_network.readLine()).simplified().split(QLatin1Char(' '));
    QCOMPARE(words.constFirst(), text("ready"));
    m_far = words.at(2);
}

void tst_NetTools::cleanupTestCase()
{
    m_network.closeWriteChannel();
    QVERIFY(m_network.waitForFinished());
}

void tst_NetTools::init()
{
    Device::write(text("/etc/resolv.conf"), "nameserver 192.0.2.1\n");
    m_page = std::make_unique<pageNetTools>(nullptr);
    m_user = std::make_unique<NetToolsUser>(*m_page);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void tst_NetTools::cleanup()
{
    m_user.reset();
    m_page.reset();
    letFarHostAnswer(true);
    Device::restore();
    QCOMPARE(childProcesses(), QList<qint64>{m_network.processId()});
}

void tst_NetTools::set(const char *box, int number) const
{
    m_user->checkBox(box)->click();
    m_user->number(box)->setValue(number);
}

void tst_NetTools::run(const char *tool, const QString &target)
{
    m_user->click(tool);
    m_user->type(qstrcmp(tool, "DNS Lookup") == 0 ? "Hostname:" : "Target Host:", target);
    m_user->pressProcessButton();
    QVERIFY2(m_user->waitUntilFinished(30000), qPrintable(m_user->logText()));
}

QString tst_NetTools::output() const
{
    const QString log = m_user->logText();
    return log.mid(log.indexOf(text("\"\n\n")) + 3).section(text("> Finished."), 0, 0);
}

int tst_NetTools::exitCode() const
{
    const QRegularExpression notice(text("> Finished\\. \\( Exit Code = (\\d+) \\)\n$"));
    const QRegularExpressionMatch match = notice.match(m_user->logText());
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

void tst_NetTools::letFarHostAnswer(bool answers) const
{
    const QString command =
        QStringLiteral("echo %1 >/proc/sys/net/ipv4/icmp_echo_ignore_all").arg(answers ? 0 : 1);
    QCOMPARE(QProcess::execute(
                 text("nsenter"),
                 {text("--target"), m_far, text("--net"), text("--"), text("dash"), text("-c"), command}),
             0);
}

void tst_NetTools::listsNameServers_data()
{
    QTest::addColumn<QByteArray>("resolvConf");
    QTest::addColumn<QStringList>("listed");
    QTest::newRow("two") << QByteArray("nameserver 10.0.0.1\nnameserver 10.0.0.2\n")
                         << QStringList{text("10.0.0.1"), text("10.0.0.2")};
    QTest::newRow("none: an empty item") << QByteArray("search example.test\n") << QStringList{QString()};
    QTest::newRow("no file: an empty item") << QByteArray() << QStringList{QString()};
    QTest::newRow("one without an address: a part that is empty")
        << QByteArray("nameserver 10.0.0.1\nnameserver\nnameserver 10.0.0.2\n")
        << QStringList{text("10.0.0.1"), QString(), text("10.0.0.2")};
    QTest::newRow("a comment and an IPv6 address") << QByteArray("#nameserver 10.0.0.1\nnameserver fe80::1\n")
                                                   << QStringList{text("10.0.0.1"), text("fe80::1")};
    QTest::newRow("markup") << QByteArray("nameserver <b>1</b>\n") << QStringList{text("<b>1</b>")};
}

void tst_NetTools::listsNameServers()
{
    QFETCH(QByteArray, resolvConf);
    QFETCH(QStringList, listed);
    if (resolvConf.isEmpty())
        Device::remove(text("/etc/resolv.conf"));
    else
        Device::write(text("/etc/resolv.conf"), resolvConf);
    pageNetTools page(nullptr);
    const NetToolsUser user(page);
    user.click("DNS Lookup");
    const QComboBox *box = user.comboBox("Use this nameserver:");
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items << box->itemText(i);
    QCOMPARE(items, listed);
    QCOMPARE(box->currentText(), listed.constFirst());
}

void tst_NetTools::listsNameServersOnce_data()
{
    QTest::addColumn<bool>("isWorkLeft");
    QTest::newRow("page made at once") << false;
    QTest::newRow("page made while the next one waits") << true;
}

void tst_NetTools::listsNameServersOnce()
{
    QFETCH(bool, isWorkLeft);
    Device::clearCalls();
    auto work = isWorkLeft ? std::make_unique<WaitingWork>() : nullptr;
    pageNetTools page(nullptr);
    const QStringList commands = Device::shellCommands();
    Device::write(text("/etc/resolv.conf"), "nameserver 10.0.0.9\n");
    work.reset();
    QCOMPARE(commands, QStringList{text("awk '/nameserver/ { printf \"%s \", $2 }' /etc/resolv.conf")});
    const NetToolsUser user(page);
    for (const char *tool : {"DNS Lookup", "Ping", "DNS Lookup"})
        user.click(tool);
    QCOMPARE(user.comboBox("Use this nameserver:")->currentText(), text("192.0.2.1"));
    QCOMPARE(Device::shellCommands().size(), 1);
}

void tst_NetTools::letsAnIpv6NameServerBeEdited()
{
    // Its letters can't be typed. An input that begins with a valid text would undo each edit that leaves it
    // invalid; this one begins with an invalid text.
    Device::write(text("/etc/resolv.conf"), "nameserver fe80::1\n");
    pageNetTools page(nullptr);
    const NetToolsUser user(page);
    user.click("DNS Lookup");
    const QComboBox *box = user.comboBox("Use this nameserver:");
    QTest::keyClick(box->lineEdit(), Qt::Key_Backspace);
    QCOMPARE(box->currentText(), text("fe80::"));
}

void tst_NetTools::usesTheNameServerOfTheList_data()
{
    QTest::addColumn<bool>("boxIsChecked");
    QTest::addColumn<int>("picked");
    QTest::addColumn<QString>("command");
    QTest::newRow("not asked to") << false << 1 << "host www.example.test";
    QTest::newRow("untouched: the first") << true << 0 << "host www.example.test 192.0.2.1";
    QTest::newRow("picked: the second") << true << 1 << "host www.example.test 198.51.100.20";
}

void tst_NetTools::usesTheNameServerOfTheList()
{
    QFETCH(bool, boxIsChecked);
    QFETCH(int, picked);
    QFETCH(QString, command);
    Device::write(text("/etc/resolv.conf"), "nameserver 192.0.2.1\nnameserver 198.51.100.20\n");
    pageNetTools page(nullptr);
    page.show();
    const NetToolsUser user(page);
    user.click("DNS Lookup");
    user.type("Hostname:", text("www.example.test"));
    if (boxIsChecked)
        user.checkBox("Use this nameserver:")->click();
    for (int i = 0; i < picked; ++i)
        QTest::keyClick(user.comboBox("Use this nameserver:"), Qt::Key_Down);
    user.pressProcessButton();
    QCOMPARE(user.logText(), text("\n> Executing: \"") + command + text("\"\n\n"));
    QVERIFY(user.waitUntilFinished());
}

void tst_NetTools::pingGetsReplies()
{
    set("Number of pings", 2);
    Device::clearCalls();
    run("Ping", text("198.51.100.20"));
    QCOMPARE(Device::calls(),
             (QList<QStringList>{
                 QStringList{text("/usr/bin/ping"), text("-c"), text("2"), text("198.51.100.20")}}));
    QVERIFY(m_user->logText().startsWith(
        text("\n> Executing: \"ping -c 2 198.51.100.20\"\n\nPING 198.51.100.20 ")));
    // One hop less than the 64 that Linux starts with.
    QVERIFY2(output().contains(text("64 bytes from 198.51.100.20: icmp_seq=2 ttl=63 time=")),
             qPrintable(output()));
    QVERIFY2(output().contains(text("2 packets transmitted, 2 received, 0% packet loss")),
             qPrintable(output()));
    QCOMPARE(exitCode(), 0);
}

void tst_NetTools::pingOptions_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("requests");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("timeToLive");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("printed");

    // A packet is 20 bytes of IP header, 8 of ICMP header and the data, 56 unless told otherwise.
    QTest::newRow("Number of pings") << 3 << 3 << 84 << 64 << "ping -c 3 198.51.100.20"
                                     << "3 packets transmitted";
    QTest::newRow("Packet data size") << 100 << 1 << 128 << 64 << "ping -c 1 -s 100 198.51.100.20"
                                      << " 100(128) bytes of data";
    QTest::newRow("Time-to-live") << 9 << 1 << 84 << 9 << "ping -c 1 -t 9 198.51.100.20"
                                  << " 0% packet loss";
    QTest::newRow("Verbose output") << 0 << 1 << 84 << 64 << "ping -v -c 1 198.51.100.20"
                                    << "sock4.fd:";
    QTest::newRow("Display user-to-user latency") << 0 << 1 << 84 << 64 << "ping -U -c 1 198.51.100.20"
                                                  << " 0% packet loss";
}

void tst_NetTools::pingOptions()
{
    QFETCH(int, value);
    QFETCH(int, requests);
    QFETCH(int, length);
    QFETCH(int, timeToLive);
    QFETCH(QString, command);
    QFETCH(QString, printed);
    if (value > 0)
        set(QTest::currentDataTag(), value);
    else
        m_user->checkBox(QTest::currentDataTag())->click();
    if (!m_user->checkBox("Number of pings")->isChecked())
        set("Number of pings", 1);
    const Wire wire("lan0");
    run("Ping", text("198.51.100.20"));
    const QList<SentPacket> packets = wire.sent();
    QCOMPARE(packets.size(), requests);
    for (const SentPacket &packet : packets) {
        QCOMPARE(packet.protocol, static_cast<int>(IPPROTO_ICMP));
        QCOMPARE(packet.length, length);
        QCOMPARE(packet.timeToLive, timeToLive);
    }
    QVERIFY2(m_user->logText().startsWith(text("\n> Executing: \"") + command + text("\"\n")),
             qPrintable(m_user->logText()));
    QVERIFY2(output().contains(printed), qPrintable(output()));
    QCOMPARE(exitCode(), 0);
}

void tst_NetTools::pingInterval_data()
{
    QTest::addColumn<int>("pings");
    QTest::addColumn<int>("interval");
    QTest::addColumn<bool>("adaptive");
    QTest::addColumn<int>("shortest");
    QTest::addColumn<int>("longest");
    // A second between two pings, unless told otherwise.
    QTest::newRow("neither") << 3 << 0 << false << 1950 << 3900;
    QTest::newRow("interval") << 2 << 4 << false << 3950 << 8000;
    QTest::newRow("adaptive") << 5 << 0 << true << 0 << 3000;
}

void tst_NetTools::pingInterval()
{
    QFETCH(int, pings);
    QFETCH(int, interval);
    QFETCH(bool, adaptive);
    QFETCH(int, shortest);
    QFETCH(int, longest);
    set("Number of pings", pings);
    if (interval > 0)
        set("Interval ( sec )", interval);
    if (adaptive)
        m_user->click("Adaptive ping");
    QElapsedTimer timer;
    timer.start();
    run("Ping", text("198.51.100.20"));
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(elapsed >= shortest && elapsed < longest, qPrintable(QString::number(elapsed)));
    QVERIFY(output().contains(QStringLiteral("%1 received, 0% packet loss").arg(pings)));
}

void tst_NetTools::pingShowsNamesUnlessTold()
{
    set("Number of pings", 1);
    run("Ping", text("far.example.test"));
    QVERIFY2(output().contains(text("64 bytes from far.example.test (198.51.100.20): ")),
             qPrintable(output()));
    m_user->click("Clear Log");
    m_user->click("Display address numerically");
    run("Ping", text("far.example.test"));
    QVERIFY2(output().contains(text("64 bytes from 198.51.100.20: ")), qPrintable(output()));
}

void tst_NetTools::pingLosesPackets()
{
    set("Number of pings", 4);
    m_user->type("Target Host:", text("198.51.100.20"));
    const Wire wire("lan0");
    m_user->pressProcessButton();
    QVERIFY(QTest::qWaitFor([&] { return output().contains(text("icmp_seq=1 ")); }));
    letFarHostAnswer(false);
    int lost = 0;
    wire.sent();
    QVERIFY(QTest::qWaitFor([&] { return (lost += static_cast<int>(wire.sent().size())) == 2; }));
    letFarHostAnswer(true);
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY2(output().contains(text("4 packets transmitted, 2 received, 50% packet loss")),
             qPrintable(output()));
    QVERIFY(output().contains(text("icmp_seq=4 ")));
    QVERIFY(!output().contains(text("icmp_seq=2 ")));
    QCOMPARE(exitCode(), 0);
}

void tst_NetTools::pingOfUnreachableHosts_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("printed");
    // ping(8): 1 when it got no reply at all, 2 on other errors.
    QTest::newRow("refused by the router")
        << "203.0.113.1" << 1 << "From 192.0.2.1 icmp_seq=1 Destination Host Unreachable";
    QTest::newRow("swallowed by the router")
        << "203.0.113.200" << 1 << "1 packets transmitted, 0 received, 100% packet loss";
    QTest::newRow("unknown name") << "nothing.example.test" << 2
                                  << "nothing.example.test: Name or service not known";
    QTest::newRow("empty target") << "" << 2 << "ping: ";
    QTest::newRow("no address and no name") << "1.2.3.4.5" << 2 << "1.2.3.4.5: ";
}

void tst_NetTools::pingOfUnreachableHosts()
{
    QFETCH(QString, target);
    set("Number of pings", 1);
    run("Ping", target);
    QFETCH(QString, printed);
    QVERIFY2(output().contains(printed), qPrintable(output()));
    QTEST(exitCode(), "code");
}

void tst_NetTools::stopsALongPing()
{
    m_user->type("Target Host:", text("198.51.100.20"));
    m_user->pressProcessButton();
    QVERIFY(QTest::qWaitFor([&] { return output().contains(text("icmp_seq=2 ")); }));
    m_user->clickIntoLog(0);
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    // ping catches SIGINT and SIGQUIT but not SIGTERM, so it has no last word and the code is the signal's.
    QVERIFY2(m_user->logText().endsWith(text("> Terminating...\n> Finished. ( Exit Code = 15 )\n")),
             qPrintable(m_user->logText()));
}

void tst_NetTools::stopsEveryPingOfARow()
{
    m_user->type("Target Host:", text("198.51.100.20"));
    for (int i = 0; i < 5; ++i) {
        m_user->click("Clear Log");
        m_user->pressProcessButton();
        QVERIFY(QTest::qWaitFor([&] { return output().contains(text("icmp_seq=1 ")); }));
        m_user->pressProcessButton();
        QVERIFY(m_user->waitUntilFinished());
    }
}

void tst_NetTools::traceRouteShowsTwoHops()
{
    run("Trace Route", text("far.example.test"));
    const QStringList lines = output().split(QLatin1Char('\n'));
    QVERIFY2(lines.at(0).startsWith(text("traceroute to far.example.test (198.51.100.20), 30 hops max")),
             qPrintable(output()));
    QVERIFY2(lines.at(1).startsWith(text(" 1  router.example.test (192.0.2.1)  ")), qPrintable(output()));
    QVERIFY2(lines.at(2).startsWith(text(" 2  far.example.test (198.51.100.20)  ")), qPrintable(output()));
    QCOMPARE(lines.size(), 4);
    QCOMPARE(exitCode(), 0);
}

void tst_NetTools::traceRouteOptions_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("probesOfTheFirstHop");
    QTest::addColumn<int>("largestTimeToLive");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("firstPort");

    // traceroute(8): three probes a hop, 16 of them at once, 60 bytes each, the first to port 33434. The
    // five hops and a bit of the first 16 probes are enough for a route of two.
    const int atOnce = 6;
    QTest::newRow("none") << ""
                          << ""
                          << "" << 3 << atOnce << 60 << "192.0.2.10" << 33434;
    QTest::newRow("numeric") << "Display addresses numerically"
                             << ""
                             << "-n " << 3 << atOnce << 60 << "192.0.2.10" << 33434;
    QTest::newRow("max hops") << "Max hops"
                              << "1"
                              << "-m 1 " << 3 << 1 << 60 << "192.0.2.10" << 33434;
    QTest::newRow("queries") << "Queries/hop"
                             << "5"
                             << "-q 5 " << 5 << 4 << 60 << "192.0.2.10" << 33434;
    QTest::newRow("source") << "Set source IP"
                            << "192.0.2.11"
                            << "-s 192.0.2.11 " << 3 << atOnce << 60 << "192.0.2.11" << 33434;
    QTest::newRow("any source") << "Set source IP"
                                << "0.0.0.0"
                                << "-s 0.0.0.0 " << 3 << atOnce << 60 << "192.0.2.10" << 33434;
    QTest::newRow("port") << "UDP port"
                          << "40000"
                          << "-p 40000 " << 3 << atOnce << 60 << "192.0.2.10" << 40000;
    QTest::newRow("size") << "Datagram size"
                          << "1000"
                          << "" << 3 << atOnce << 1000 << "192.0.2.10" << 33434;
}

void tst_NetTools::traceRouteOptions()
{
    QFETCH(QString, box);
    QFETCH(QString, value);
    QFETCH(QString, command);
    m_user->click("Trace Route");
    const QByteArray boxName = box.toLatin1();
    if (!box.isEmpty())
        m_user->checkBox(boxName.constData())->click();
    if (!value.isEmpty())
        m_user->type(boxName.constData(), value);
    const Wire wire("lan0");
    run("Trace Route", text("198.51.100.20"));
    const QList<SentPacket> packets = wire.sent();

    const QString size = box == text("Datagram size") ? text(" 1000") : QString();
    QVERIFY2(m_user->logText().startsWith(text("\n> Executing: \"traceroute ") + command
                                          + text("198.51.100.20") + size + text("\"\n")),
             qPrintable(m_user->logText()));
    QCOMPARE(output().contains(text("router.example.test")), command != text("-n "));
    QCOMPARE(exitCode(), 0);
    int ofTheFirstHop = 0;
    int farthest = 0;
    int firstPort = 65536;
    for (const SentPacket &packet : packets) {
        QCOMPARE(packet.protocol, static_cast<int>(IPPROTO_UDP));
        QTEST(packet.length, "length");
        QTEST(packet.source, "source");
        ofTheFirstHop += packet.timeToLive == 1 ? 1 : 0;
        farthest = qMax(farthest, packet.timeToLive);
        firstPort = qMin(firstPort, packet.udpPort);
    }
    QTEST(ofTheFirstHop, "probesOfTheFirstHop");
    // Only the limit on hops fixes how far the probes go; without one a busy machine may send another batch.
    QFETCH(int, largestTimeToLive);
    if (box == text("Max hops"))
        QCOMPARE(farthest, largestTimeToLive);
    else
        QVERIFY(farthest >= 2);
    QTEST(firstPort, "firstPort");
}

void tst_NetTools::traceRouteWaitsAsLongAsTold()
{
    m_user->click("Trace Route");
    set("Queries/hop", 1);
    set("Max hops", 2);
    set("Response wait time ( sec )", 2);
    QElapsedTimer timer;
    timer.start();
    run("Trace Route", text("203.0.113.200"));
    // Not the five seconds that it waits unless told otherwise.
    QVERIFY2(timer.elapsed() >= 1950 && timer.elapsed() < 4500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(output().endsWith(text("\n 2  *\n")), qPrintable(output()));
}

void tst_NetTools::traceRouteComplains_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("printed");
    QTest::newRow("empty target") << ""
                                  << ""
                                  << "Name or service not known";
    QTest::newRow("empty source") << "198.51.100.20"
                                  << "Set source IP"
                                  << "-s";
    QTest::newRow("empty port") << "198.51.100.20"
                                << "UDP port"
                                << "-p";
}

void tst_NetTools::traceRouteComplains()
{
    QFETCH(QString, target);
    QFETCH(QString, box);
    QFETCH(QString, printed);
    m_user->click("Trace Route");
    if (!box.isEmpty()) {
        const QByteArray boxName = box.toLatin1();
        m_user->checkBox(boxName.constData())->click();
        m_user->type(boxName.constData(), QString());
    }
    run("Trace Route", target);
    QVERIFY2(output().contains(printed), qPrintable(output()));
    QVERIFY(exitCode() > 0);
}

void tst_NetTools::looksUpNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("server");
    QTest::addColumn<QString>("printed");
    QTest::addColumn<int>("code");

    const QString header =
        text("Using domain server:\nName: 198.51.100.20\nAddress: 198.51.100.20#53\nAliases: \n\n");
    QTest::newRow("by resolv.conf") << "www.example.test" << QString()
                                    << "www.example.test has address 203.0.113.77\n"
                                    << 0;
    QTest::newRow("by the nameserver that was typed")
        << "www.example.test"
        << "198.51.100.20" << header + text("www.example.test has address 198.51.100.20\n") << 0;
    QTest::newRow("address") << "192.0.2.1" << QString()
                             << "1.2.0.192.in-addr.arpa domain name pointer router.example.test.\n"
                             << 0;
    QTest::newRow("unknown name") << "nothing.example.test" << QString()
                                  << "Host nothing.example.test not found: 3(NXDOMAIN)\n"
                                  << 1;
    QTest::newRow("empty name") << "" << QString() << "'' is not a legal name" << 1;
    QTest::newRow("empty nameserver") << "www.example.test"
                                      << ""
                                      << "couldn't get address for ''" << 1;
}

void tst_NetTools::looksUpNames()
{
    QFETCH(QString, name);
    QFETCH(QString, server);
    QFETCH(QString, printed);
    m_user->click("DNS Lookup");
    if (!server.isNull()) {
        m_user->checkBox("Use this nameserver:")->click();
        m_user->type("Use this nameserver:", server);
    }
    run("DNS Lookup", name);
    QVERIFY2(output().contains(printed), qPrintable(output()));
    QTEST(exitCode(), "code");
}

QTEST_MAIN(tst_NetTools)
#include "tst_nettools.moc"
