#include "pages/network/networksettings.h"
#include "procnetdev.h"

#include <QBuffer>
#include <QTest>

class tst_NetworkSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void candidatesInOrder();
    void interfacePresent_data();
    void interfacePresent();
    void presentCandidatesKeepTheirOrder();
    void parseHostName_data();
    void parseHostName();
    void parseSearchDomain_data();
    void parseSearchDomain();
    void parseDhcpServer_data();
    void parseDhcpServer();
    void dhcpServerAbsent_data();
    void dhcpServerAbsent();
    void mentionsDhcp_data();
    void mentionsDhcp();
};

namespace {

const QByteArray counters = " 1234 10 0 0 0 0 0 0 5678 20 0 0 0 0 0 0\n";
const QByteArray key = "dhcp_server_identifier=";

/// A text of the given length in which the words stand at its end.
QByteArray endingIn(const QByteArray &words, int length)
{
    return words.rightJustified(length, '.');
}

} // namespace

void tst_NetworkSettings::candidatesInOrder()
{
    QCOMPARE(candidateInterfaces().join(QLatin1Char(' ')),
             QStringLiteral("eth0 eth1 wlan0 wlan1 via0 athath_pci0"));
    QCOMPARE(candidateInterfaces().size(), 6);
}

void tst_NetworkSettings::interfacePresent_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("present");

    QTest::newRow("listed") << "eth0"
                            << "    lo:" + counters + "  eth0:" + counters << true;
    QTest::newRow("not listed") << "eth1"
                                << "    lo:" + counters + "  eth0:" + counters << false;
    QTest::newRow("no interfaces") << "eth0" << QByteArray() << false;
    QTest::newRow("a longer name that begins with it") << "eth1"
                                                       << " eth10:" + counters << true;
    QTest::newRow("a longer name that ends with it") << "eth0"
                                                     << " veth0:" + counters << true;
    QTest::newRow("a shorter name") << "eth10"
                                    << "  eth1:" + counters << false;
    QTest::newRow("nothing after the colon") << "eth0" << QByteArray("  eth0:\n") << false;
    QTest::newRow("no colon") << "eth0" << QByteArray("  eth0\n") << false;
    QTest::newRow("counter written against the colon")
        << "eth0" << QByteArray("  eth0:1234 10 0 0\n") << true;
    QTest::newRow("the two names of a wireless driver")
        << "athath_pci0"
        << "  ath0:" + counters + "  ath_pci0:" + counters << false;
    QTest::newRow("that name as one") << "athath_pci0"
                                      << "athath_pci0:" + counters << true;
}

void tst_NetworkSettings::interfacePresent()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, lines);
    ProcNetDev dev;
    dev.setInterfaces(lines);
    QTEST(isInterfacePresent(name), "present");
}

void tst_NetworkSettings::presentCandidatesKeepTheirOrder()
{
    ProcNetDev dev;
    dev.setInterfaces(" wlan0:" + counters + "    lo:" + counters + "  eth0:" + counters);
    QStringList present;
    const QStringList candidates = candidateInterfaces();
    for (const QString &name : candidates) {
        if (isInterfacePresent(name))
            present.append(name);
    }
    QCOMPARE(present, QStringList({QStringLiteral("eth0"), QStringLiteral("wlan0")}));
}

void tst_NetworkSettings::parseHostName_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("name");

    QTest::newRow("one line") << QByteArray("thin1\n") << "thin1";
    QTest::newRow("no newline") << QByteArray("thin1") << "thin1";
    QTest::newRow("carriage return") << QByteArray("thin1\r\n") << "thin1";
    QTest::newRow("second line") << QByteArray("thin1\nthin2\n") << "thin1";
    QTest::newRow("blanks kept") << QByteArray(" \tthin1 \n") << " \tthin1 ";
    QTest::newRow("empty file") << QByteArray() << "";
    QTest::newRow("empty first line") << QByteArray("\nthin1\n") << "";
    QTest::newRow("comment") << QByteArray("# name\nthin1\n") << "# name";
    QTest::newRow("beyond ASCII") << QByteArray("caf\xc3\xa9\n") << QStringLiteral("caf\u00e9");
    QTest::newRow("beyond Latin-1") << QByteArray("\xd1\x82\xd0\xba\n") << QStringLiteral("\u0442\u043a");
    QTest::newRow("invalid byte") << QByteArray("thin\xff"
                                                "1\n")
                                  << QStringLiteral("thin\ufffd1");
    QTest::newRow("character without its end")
        << QByteArray("thin\xc3-1\nthin2\n") << QStringLiteral("thin\ufffd-1");
    QTest::newRow("character without its end before the newline")
        << QByteArray("thin\xc3\nthin2\n") << QStringLiteral("thin\ufffd");
    QTest::newRow("longer than a buffer") << QByteArray(20000, 'x') << QString(20000, QLatin1Char('x'));
}

void tst_NetworkSettings::parseHostName()
{
    QFETCH(QByteArray, file);
    QBuffer buffer(&file);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QTEST(::parseHostName(buffer), "name");
}

void tst_NetworkSettings::parseSearchDomain_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("domain");

    QTest::newRow("one domain") << QByteArray("search corp.example\n") << "corp.example";
    QTest::newRow("after a domain line")
        << QByteArray("domain example\nsearch corp.example lab.example\n") << "corp.example";
    QTest::newRow("domain line only") << QByteArray("domain example\n") << "";
    QTest::newRow("first search line") << QByteArray("search a.example\nsearch b.example\n") << "a.example";
    QTest::newRow("no newline at the end")
        << QByteArray("nameserver 10.0.0.1\nsearch a.example") << "a.example";
    QTest::newRow("tabs and blanks") << QByteArray("search \t \ta.example\tb.example\n") << "a.example";
    QTest::newRow("carriage return") << QByteArray("search a.example\r\n") << "a.example";
    QTest::newRow("vertical tab and form feed") << QByteArray("search\v\fa.example\n") << "a.example";
    QTest::newRow("no-break space") << QByteArray("search\xc2\xa0"
                                                  "a.example\n")
                                    << "a.example";
    QTest::newRow("indented by a blank") << QByteArray(" search a.example\n") << "";
    QTest::newRow("indented by a tab") << QByteArray("\tsearch a.example\n") << "";
    QTest::newRow("indented, then not") << QByteArray(" search a.example\nsearch b.example\n") << "b.example";
    QTest::newRow("followed by blanks only") << QByteArray("search  \nsearch b.example\n") << "";
    QTest::newRow("the word alone") << QByteArray("search\nsearch b.example\n") << "b.example";
    QTest::newRow("upper case") << QByteArray("Search a.example\n") << "";
    QTest::newRow("longer word") << QByteArray("searching a.example\n") << "";
    QTest::newRow("commented out") << QByteArray("#search a.example\n# search b.example\n") << "";
    QTest::newRow("empty lines") << QByteArray("\n\nsearch a.example\n") << "a.example";
    QTest::newRow("empty file") << QByteArray() << "";
    QTest::newRow("beyond ASCII") << QByteArray("search caf\xc3\xa9.example\n")
                                  << QStringLiteral("caf\u00e9.example");
    QTest::newRow("beyond Latin-1") << QByteArray("search \xd1\x82\xd0\xba.example\n")
                                    << QStringLiteral("\u0442\u043a.example");
    QTest::newRow("invalid byte") << QByteArray("search caf\xe9.example\n")
                                  << QStringLiteral("caf\ufffd.example");
    QTest::newRow("invalid byte in an earlier line")
        << QByteArray("# caf\xe9\nsearch a.example\n") << "a.example";
    QTest::newRow("after a long line") << "# " + QByteArray(20000, 'x') + "\nsearch a.example\n"
                                       << "a.example";
}

void tst_NetworkSettings::parseSearchDomain()
{
    QFETCH(QByteArray, file);
    QBuffer buffer(&file);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QTEST(::parseSearchDomain(buffer), "domain");
}

void tst_NetworkSettings::parseDhcpServer_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("server");

    QTest::newRow("one line") << key + "10.1.1.1\n"
                              << "10.1.1.1";
    QTest::newRow("no newline") << key + "10.1.1.1"
                                << "10.1.1.1";
    QTest::newRow("last of two lines") << key + "10.1.1.1\n" + key + "10.1.1.2\n"
                                       << "10.1.1.2";
    QTest::newRow("blanks around") << key + " 10.1.1.1 \n"
                                   << "10.1.1.1";
    QTest::newRow("nothing after the key") << key + "\n"
                                           << "";
    QTest::newRow("nothing after the last key") << key + "10.1.1.1\n" + key + "\n"
                                                << "";
    QTest::newRow("text before the key") << "new_" + key + "10.1.1.1\n"
                                         << "new_10.1.1.1";
    QTest::newRow("key twice in a line") << key + "10.1.1.1 " + key + "10.1.1.2\n"
                                         << "10.1.1.1 10.1.1.2";
    QTest::newRow("among other lines") << "# lease\n" + key + "10.1.1.1\nend\n"
                                       << "10.1.1.1";
    QTest::newRow("up to the zero byte") << key + "10.1.1.1" + QByteArray(1, '\0') + "2\n"
                                         << "10.1.1.1";
    QTest::newRow("after a zero byte at a line's start") << QByteArray(1, '\0') + "x\n" + key + "10.1.1.1\n"
                                                         << "10.1.1.1";
    QTest::newRow("Latin-1") << key + "\xe9\n" << QStringLiteral("\u00e9");
    QTest::newRow("line of 1023 bytes") << endingIn(key + "1", 1022) + "\n"
                                        << QString(998, QLatin1Char('.')) + QLatin1Char('1');
    QTest::newRow("value cut by the end of a piece") << key + QByteArray(1000, '1') + "2\n"
                                                     << QString(1000, QLatin1Char('1'));
    QTest::newRow("key in the second piece") << QByteArray(1023, '.') + key + "10.1.1.1\n"
                                             << "10.1.1.1";
}

void tst_NetworkSettings::parseDhcpServer()
{
    QFETCH(QByteArray, file);
    QBuffer buffer(&file);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const std::optional<QString> server = ::parseDhcpServer(buffer);
    QVERIFY(server.has_value());
    QTEST(*server, "server");
}

void tst_NetworkSettings::dhcpServerAbsent_data()
{
    QTest::addColumn<QByteArray>("file");

    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("other lines") << QByteArray("ip_address=10.1.1.5\nrouters=10.1.1.1\n");
    QTest::newRow("upper case") << QByteArray("DHCP_SERVER_IDENTIFIER=10.1.1.1\n");
    QTest::newRow("blank before the equals sign") << QByteArray("dhcp_server_identifier =10.1.1.1\n");
    QTest::newRow("after the zero byte") << QByteArray(1, '\0') + key + "10.1.1.1\n";
    QTest::newRow("key cut by the end of a piece") << QByteArray(1022, '.') + key + "10.1.1.1\n";
}

void tst_NetworkSettings::dhcpServerAbsent()
{
    QFETCH(QByteArray, file);
    QBuffer buffer(&file);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(!::parseDhcpServer(buffer).has_value());
}

void tst_NetworkSettings::mentionsDhcp_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("mentioned");

    QTest::newRow("dhcp") << QByteArray("iface eth0 inet dhcp\n") << true;
    QTest::newRow("static") << QByteArray("iface eth0 inet static\n") << false;
    QTest::newRow("static afterwards")
        << QByteArray("iface eth0 inet dhcp\niface eth0 inet static\n") << true;
    QTest::newRow("another interface") << QByteArray("iface eth1 inet dhcp\n") << false;
    QTest::newRow("on two lines") << QByteArray("auto eth0\niface eth1 inet dhcp\n") << false;
    QTest::newRow("commented out") << QByteArray("#iface eth0 inet dhcp\n") << true;
    QTest::newRow("part of a longer name") << QByteArray("iface veth01 inet dhcp\n") << true;
    QTest::newRow("dhcp first") << QByteArray("dhcp for eth0\n") << true;
    QTest::newRow("upper case name") << QByteArray("iface ETH0 inet dhcp\n") << false;
    QTest::newRow("upper case keyword") << QByteArray("iface eth0 inet DHCP\n") << false;
    QTest::newRow("no newline") << QByteArray("iface eth0 inet dhcp") << true;
    QTest::newRow("last line") << QByteArray("auto lo\n\niface eth0 inet dhcp\n") << true;
    QTest::newRow("empty file") << QByteArray() << false;
    QTest::newRow("two pieces of one line") << "eth0" + QByteArray(1019, ' ') + "dhcp\n" << false;
    QTest::newRow("one piece of a long line") << QByteArray(1023, ' ') + "eth0 dhcp\n" << true;
    QTest::newRow("after the zero byte") << "eth0" + QByteArray(1, '\0') + "dhcp\n" << false;
}

void tst_NetworkSettings::mentionsDhcp()
{
    QFETCH(QByteArray, file);
    QBuffer buffer(&file);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QTEST(::mentionsDhcp(buffer, QStringLiteral("eth0")), "mentioned");
    QVERIFY(buffer.atEnd());
}

// The application object takes over the locale.
QTEST_GUILESS_MAIN(tst_NetworkSettings)
#include "tst_networksettings.moc"
