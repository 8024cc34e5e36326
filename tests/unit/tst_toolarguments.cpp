#include "pages/nettools/toolarguments.h"

#include <QTest>

#include <functional>
#include <vector>

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

/// What setting an option adds to a command line, in the order of the command line. No value is the one that
/// a panel starts with, and no two are the same.
template <typename Options>
struct Setting {
    const char *words;
    std::function<void(Options &)> set;
};

const std::vector<Setting<PingOptions>> pingSettings = {
    {"-U", [](PingOptions &options) { options.userToUserLatency = true; }},
    {"-n", [](PingOptions &options) { options.numericAddresses = true; }},
    {"-v", [](PingOptions &options) { options.verbose = true; }},
    {"-A", [](PingOptions &options) { options.adaptive = true; }},
    {"-c 7", [](PingOptions &options) { options.count = 7; }},
    {"-i 3", [](PingOptions &options) { options.intervalSeconds = 3; }},
    {"-s 1999", [](PingOptions &options) { options.packetDataSize = 1999; }},
    {"-t 0", [](PingOptions &options) { options.timeToLive = 0; }},
    {"10.0.0.1", [](PingOptions &options) { options.target = QStringLiteral("10.0.0.1"); }},
};
constexpr unsigned alwaysInPing = 1U << 8;

const std::vector<Setting<TraceRouteOptions>> traceRouteSettings = {
    {"-n", [](TraceRouteOptions &options) { options.numericAddresses = true; }},
    {"-m 12", [](TraceRouteOptions &options) { options.maxHops = 12; }},
    {"-q 4", [](TraceRouteOptions &options) { options.queriesPerHop = 4; }},
    {"-s 192.0.2.1", [](TraceRouteOptions &options) { options.sourceAddress = QStringLiteral("192.0.2.1"); }},
    {"-w 9", [](TraceRouteOptions &options) { options.responseWaitSeconds = 9; }},
    {"-p 53", [](TraceRouteOptions &options) { options.udpPort = QStringLiteral("53"); }},
    {"gw", [](TraceRouteOptions &options) { options.target = QStringLiteral("gw"); }},
    {"1500", [](TraceRouteOptions &options) { options.datagramSize = 1500; }},
};
constexpr unsigned alwaysInTraceRoute = 1U << 6;

/// Calls the check with every set of settings that holds the given one and the command line of each set.
template <typename Options>
int checkAllSets(const std::vector<Setting<Options>> &settings, unsigned always,
                 const std::function<bool(const Options &, const QStringList &)> &check)
{
    int passed = 0;
    for (unsigned set = 0; set < 1U << settings.size(); ++set) {
        if (!(set & always))
            continue;
        Options options;
        QStringList expected;
        for (size_t i = 0; i < settings.size(); ++i) {
            if (set & 1U << i) {
                settings[i].set(options);
                expected += words(settings[i].words);
            }
        }
        if (check(options, expected))
            ++passed;
        else
            qWarning("failed: %s", qPrintable(expected.join(QLatin1Char(' '))));
    }
    return passed;
}

} // namespace

class tst_ToolArguments : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pingWithEverySetOfOptions();
    void traceRouteWithEverySetOfOptions();

    void pingWithoutOptionsIsTheTargetAlone();
    void pingWithAllOptions();
    void pingWithAnEmptyTarget();
    void traceRouteWithoutOptionsIsTheTargetAlone();
    void traceRouteWithDatagramSizeAndMaxHops();
    void traceRouteWithAllOptions();
    void traceRouteWithEmptyFields();
    void traceRouteTakesTextsAsTyped();
    void dnsLookup_data();
    void dnsLookup();
    void targetsAreTakenAsTyped_data();
    void targetsAreTakenAsTyped();
};

void tst_ToolArguments::pingWithEverySetOfOptions()
{
    const int passed = checkAllSets<PingOptions>(pingSettings, alwaysInPing,
                                                 [](const PingOptions &options, const QStringList &expected) {
                                                     return pingArguments(options) == expected;
                                                 });
    QCOMPARE(passed, 256);
}

void tst_ToolArguments::traceRouteWithEverySetOfOptions()
{
    const int passed =
        checkAllSets<TraceRouteOptions>(traceRouteSettings, alwaysInTraceRoute,
                                        [](const TraceRouteOptions &options, const QStringList &expected) {
                                            return traceRouteArguments(options) == expected;
                                        });
    QCOMPARE(passed, 128);
}

void tst_ToolArguments::pingWithoutOptionsIsTheTargetAlone()
{
    PingOptions options;
    options.target = QStringLiteral("10.0.0.1");
    QCOMPARE(pingArguments(options), QStringList{QStringLiteral("10.0.0.1")});
}

void tst_ToolArguments::pingWithAllOptions()
{
    PingOptions options{true, true, true, true, 10, 1, 56, 30, QStringLiteral("host.example")};
    QCOMPARE(pingArguments(options), words("-U -n -v -A -c 10 -i 1 -s 56 -t 30 host.example"));
}

void tst_ToolArguments::pingWithAnEmptyTarget()
{
    QCOMPARE(pingArguments({}), QStringList{QString()});
}

void tst_ToolArguments::traceRouteWithoutOptionsIsTheTargetAlone()
{
    TraceRouteOptions options;
    options.target = QStringLiteral("10.0.0.1");
    QCOMPARE(traceRouteArguments(options), QStringList{QStringLiteral("10.0.0.1")});
}

void tst_ToolArguments::traceRouteWithDatagramSizeAndMaxHops()
{
    TraceRouteOptions options;
    options.maxHops = 30;
    options.datagramSize = 40;
    options.target = QStringLiteral("gw");
    QCOMPARE(traceRouteArguments(options), words("-m 30 gw 40"));
}

void tst_ToolArguments::traceRouteWithAllOptions()
{
    const TraceRouteOptions options{
        true, 30, 3, QStringLiteral("0.0.0.0"), 3, QStringLiteral("33434"), QStringLiteral("gw"), 40};
    QCOMPARE(traceRouteArguments(options), words("-n -m 30 -q 3 -s 0.0.0.0 -w 3 -p 33434 gw 40"));
}

void tst_ToolArguments::traceRouteWithEmptyFields()
{
    TraceRouteOptions options;
    options.sourceAddress = QString();
    options.udpPort = QString();
    QCOMPARE(traceRouteArguments(options),
             (QStringList{QStringLiteral("-s"), QString(), QStringLiteral("-p"), QString(), QString()}));
}

void tst_ToolArguments::traceRouteTakesTextsAsTyped()
{
    TraceRouteOptions options;
    options.sourceAddress = QStringLiteral("1.2.3.4.5");
    options.udpPort = QStringLiteral("00053");
    options.target = QStringLiteral("gw");
    QCOMPARE(traceRouteArguments(options), words("-s 1.2.3.4.5 -p 00053 gw"));
}

void tst_ToolArguments::dnsLookup_data()
{
    QTest::addColumn<QString>("hostName");
    QTest::addColumn<bool>("useNameServer");
    QTest::addColumn<QString>("nameServer");
    QTest::addColumn<QStringList>("arguments");

    const QString name = QStringLiteral("www.example");
    const QString server = QStringLiteral("10.0.0.1");
    QTest::newRow("nameservers of the system") << name << false << server << QStringList{name};
    QTest::newRow("one nameserver") << name << true << server << QStringList{name, server};
    QTest::newRow("empty nameserver") << name << true << QString() << QStringList{name, QString()};
    QTest::newRow("empty name") << QString() << false << server << QStringList{QString()};
    QTest::newRow("both empty") << QString() << true << QString() << QStringList{QString(), QString()};
    QTest::newRow("blanks stay") << QStringLiteral(" a  b ") << true << QStringLiteral("c d")
                                 << QStringList{QStringLiteral(" a  b "), QStringLiteral("c d")};
}

void tst_ToolArguments::dnsLookup()
{
    QFETCH(QString, hostName);
    QFETCH(bool, useNameServer);
    QFETCH(QString, nameServer);
    DnsLookupOptions options{hostName, std::nullopt};
    if (useNameServer)
        options.nameServer = nameServer;
    QTEST(dnsLookupArguments(options), "arguments");
}

void tst_ToolArguments::targetsAreTakenAsTyped_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("blanks") << QStringLiteral(" a  b ");
    QTest::newRow("a flag") << QStringLiteral("-f");
    QTest::newRow("quotes") << QStringLiteral("\"a b\" 'c'");
    QTest::newRow("shell") << QStringLiteral("$(id); `id` | id");
    QTest::newRow("place holders") << QStringLiteral("%1 %2 %3");
    QTest::newRow("not ASCII") << QStringLiteral(u"b\u00fccher.example");
}

void tst_ToolArguments::targetsAreTakenAsTyped()
{
    QFETCH(QString, target);
    PingOptions ping;
    ping.target = target;
    QCOMPARE(pingArguments(ping), QStringList{target});
    TraceRouteOptions traceRoute;
    traceRoute.target = target;
    QCOMPARE(traceRouteArguments(traceRoute), QStringList{target});
    QCOMPARE(dnsLookupArguments({target, std::nullopt}), QStringList{target});
}

QTEST_APPLESS_MAIN(tst_ToolArguments)
#include "tst_toolarguments.moc"
