#include "tests/desktop/accessibility.h"
#include "tests/desktop/program.h"
#include "tests/device/device.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString title = QStringLiteral("About this thin client");

QString roleName(int role)
{
    switch (role) {
    case Accessible::CheckBox:
        return QStringLiteral("check box");
    case Accessible::ComboBox:
        return QStringLiteral("combo box");
    case Accessible::List:
        return QStringLiteral("list");
    case Accessible::PushButton:
        return QStringLiteral("button");
    case Accessible::RadioButton:
        return QStringLiteral("radio button");
    case Accessible::SpinButton:
        return QStringLiteral("spin box");
    case Accessible::Tab:
    case Accessible::TabList:
        return QStringLiteral("tab");
    case Accessible::Table:
        return QStringLiteral("table");
    case Accessible::Text:
        return QStringLiteral("text");
    case Accessible::Tree:
        return QStringLiteral("tree");
    default:
        return QStringLiteral("page");
    }
}

QString described(const Accessible &node)
{
    return node.isNull() ? QStringLiteral("nothing")
                         : roleName(node.role()) + QLatin1Char(' ') + node.caption();
}

/// Null when what has the focus has no name. The tab widget, which takes the focus of its tabs for its own,
/// needs none.
Accessible focused(const Accessible &window)
{
    const QList<Accessible> nodes = window.shownNodes();
    for (const Accessible &node : nodes) {
        if (node.has(Accessible::Focused) && !node.caption().isEmpty())
            return node;
    }
    return {};
}

QStringList cellNames(const Accessible &table, int column)
{
    QStringList names;
    for (int row = 0; row < table.rowCount(); ++row)
        names.append(table.cell(row, column).name());
    return names;
}

QStringList childNames(const Accessible &node)
{
    QStringList names;
    const QList<Accessible> children = node.children();
    for (const Accessible &child : children)
        names.append(child.name());
    return names;
}

/// Whether lists, tables and trees say if they have the focus and are shown. In Qt 5 none does.
bool itemViewsTellTheirState()
{
    return QT_VERSION_MAJOR > 5;
}

QStringList lines(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

/// The running program as a screen reader and a keyboard see it.
class tst_Accessibility : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void namesEveryValueByItsCaption_data();
    void namesEveryValueByItsCaption();
    void showsTheTabs();
    void showsTheCountersCellByCell();
    void showsThePackageListsCellByCell();
    void showsTheNameservers();
    void goesThroughTheInputsInReadingOrder_data();
    void goesThroughTheInputsInReadingOrder();
    void movesThroughTheCountersWithTheArrowKeys();
    void changesTheTabFromInside();
    void closesAnOpenListOnEscape();
    void closesADialogOnEscape_data();
    void closesADialogOnEscape();

private:
    void launch(const QString &arguments);
    void press(const char *key) const { m_desktop->pressKey(QLatin1String(key)); }
    bool goOn() const;
    bool focus(const QString &description) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<AccessibilityBus> m_bus;
    std::unique_ptr<QTemporaryDir> m_runtimeDirectory;
    std::unique_ptr<Program> m_program;
    quint32 m_windowId = 0;
    Accessible m_window;
};

void tst_Accessibility::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(!m_desktop->display().isEmpty());
    m_bus = std::make_unique<AccessibilityBus>(m_desktop->environment());
    QVERIFY(m_bus->isConnected());
}

void tst_Accessibility::cleanup()
{
    m_program.reset();
    Device::restore();
    QTRY_VERIFY(m_desktop->windows(title).isEmpty());
}

void tst_Accessibility::launch(const QString &arguments)
{
    m_runtimeDirectory = std::make_unique<QTemporaryDir>();
    m_program = std::make_unique<Program>(*m_desktop, m_runtimeDirectory->path());
    m_bus->admit(*m_program);
    m_program->launch(arguments);
    m_windowId = m_desktop->waitForWindow(title);
    QVERIFY(m_windowId != 0);
    m_window = m_bus->waitForWindow(title);
    QVERIFY(!m_window.isNull());
    QTRY_COMPARE(m_desktop->focusWindow(), m_windowId);
    QTRY_VERIFY(!focused(m_window).isNull());
}

/// Presses Tab and waits until the focus has moved; false when it stays.
bool tst_Accessibility::goOn() const
{
    const Accessible before = focused(m_window);
    press("Tab");
    for (int i = 0; i < 250; ++i) {
        if (!(focused(m_window) == before))
            return true;
        QTest::qWait(20);
    }
    return false;
}

/// Presses Tab until the focus is on what starts as described.
bool tst_Accessibility::focus(const QString &description) const
{
    for (int i = 0; i < 40; ++i) {
        if (described(focused(m_window)).startsWith(description))
            return true;
        if (!goOn())
            return false;
    }
    return false;
}

void tst_Accessibility::namesEveryValueByItsCaption_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QStringList>("values");

    QTest::newRow("General") << 1
                             << lines("BIOS Release Date: 03/14/2012\n"
                                      "BIOS Version: 1.09\n"
                                      "CPU Cache: 32768/16384\n"
                                      "CPU Speed: 1200 MHz MHz\n"
                                      "Flash: Free 6173.99 M\n"
                                      "Flash: Installed 8010 M\n"
                                      "Flash: Used 1836.01 M\n"
                                      "Memory: Free 800 M\n"
                                      "Memory: Installed 1018 M\n"
                                      "Memory: Used 218 M\n"
                                      "OS Build ID: TC50-2.4.1-r118\n"
                                      "OS Kernel Version: 2.6.35-tc50\n"
                                      "Platform: Vexa TC50\n"
                                      "Processor: ARM926EJ-S rev 5 (v5l)\n"
                                      "Serial Number: TC50-0042-7781\n");
    QTest::newRow("Network") << 2
                             << lines("DHCP Server Address: 192.168.1.1\n"
                                      "Default Domain: corp.example\n"
                                      "Default Gateway: 192.168.1.1\n"
                                      "Hostname: tc-arm-01\n"
                                      "IP Address: 192.168.1.20\n"
                                      "MAC Address: 00:1a:2b:3c:4d:5e\n"
                                      "Network Mask: 255.255.255.0\n"
                                      "State: Enabled\n");
}

void tst_Accessibility::namesEveryValueByItsCaption()
{
    QFETCH(int, page);
    QFETCH(QStringList, values);
    launch(QStringLiteral("--page %1").arg(page));
    QStringList found;
    const QList<Accessible> nodes = m_window.shownNodes();
    for (const Accessible &node : nodes) {
        if (node.role() == Accessible::Label && node.hasText())
            found.append(node.name() + QLatin1Char(' ') + node.text());
    }
    found.sort();
    QCOMPARE(found, values);
}

void tst_Accessibility::showsTheTabs()
{
    launch({});
    QStringList tabs;
    const QList<Accessible> nodes = m_window.shownNodes();
    for (const Accessible &node : nodes) {
        if (node.role() == Accessible::Tab)
            tabs.append(node.name());
    }
    QCOMPARE(tabs, lines("General\nNetwork\nNet Tools\nSoftware Information"));
}

void tst_Accessibility::showsTheCountersCellByCell()
{
    launch(QStringLiteral("--page 2"));
    const Accessible table = m_window.find(Accessible::Table, QStringLiteral("Interface Statistics"));
    QVERIFY(!table.isNull());
    QCOMPARE(table.rowCount(), 15);
    QCOMPARE(table.columnCount(), 2);
    QCOMPARE(table.columnHeader(0), QStringLiteral("Interface Statistics"));
    QCOMPARE(table.columnHeader(1), QStringLiteral("Value"));
    QCOMPARE(cellNames(table, 0),
             lines("Received\nPackets\nBytes\nErrors\nDropped\nOverruns\nFrame Errors\n"
                   "Transmitted\nPackets\nBytes\nErrors\nDropped\nOverruns\nCarrier Errors\nCollisions"));
    const QStringList values = cellNames(table, 1);
    static const QRegularExpression number(QStringLiteral("^[0-9]+$"));
    for (int row = 0; row < values.size(); ++row)
        QCOMPARE(number.match(values.at(row)).hasMatch(), row != 0 && row != 7);
}

void tst_Accessibility::showsThePackageListsCellByCell()
{
    launch(QStringLiteral("--page 4"));
    const Accessible packages = m_window.find(Accessible::Tree, QStringLiteral("Main software installed"));
    QVERIFY(!packages.isNull());
    QCOMPARE(packages.columnCount(), 2);
    QCOMPARE(packages.columnHeader(0), QStringLiteral("Name"));
    QCOMPARE(packages.columnHeader(1), QStringLiteral("Version"));
    QCOMPARE(cellNames(packages, 0), lines("terminal-client\nxserver-common\nkernel-image"));
    QCOMPARE(cellNames(packages, 1), lines("7.2.4-1\n1.7.7-18\n2.6.35-tc50-r118"));

    const Accessible addons = m_window.find(Accessible::Tree, QStringLiteral("Addons installed"));
    QVERIFY(!addons.isNull());
    QCOMPARE(addons.columnCount(), 1);
    QCOMPARE(addons.columnHeader(0), QStringLiteral("Orvo Package Name"));
    QCOMPARE(cellNames(addons, 0), lines("remote-desktop 6.3-12\nserial-redirection 2.1"));
}

void tst_Accessibility::showsTheNameservers()
{
    launch(QStringLiteral("--page 2"));
    const Accessible list = m_window.find(Accessible::List, QStringLiteral("Nameservers:"));
    QVERIFY(!list.isNull());
    QCOMPARE(childNames(list), lines("192.168.1.1\n192.168.1.2"));
}

void tst_Accessibility::goesThroughTheInputsInReadingOrder_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QStringList>("stops");

    QTest::newRow("General") << 1 << "" << lines("page General");
    QTest::newRow("Network") << 2 << ""
                             << lines("page Network\n"
                                      "combo box Name:\n"
                                      "table Interface Statistics\n"
                                      "list Nameservers:");
    QTest::newRow("Ping") << 3 << "Ping"
                          << lines("page Net Tools\n"
                                   "button Diagnostic\n"
                                   "radio button Ping\n"
                                   "text Target Host:\n"
                                   "check box Verbose output\n"
                                   "check box Adaptive ping\n"
                                   "check box Display address numerically\n"
                                   "check box Display user-to-user latency\n"
                                   "check box Number of pings\n"
                                   "spin box Number of pings\n"
                                   "check box Packet data size\n"
                                   "spin box Packet data size\n"
                                   "check box Interval ( sec )\n"
                                   "spin box Interval ( sec )\n"
                                   "check box Time-to-live\n"
                                   "spin box Time-to-live\n"
                                   "text Log\n"
                                   "button Start Process\n"
                                   "button Clear Log");
    QTest::newRow("DNS Lookup") << 3 << "DNS Lookup"
                                << lines("page Net Tools\n"
                                         "button Diagnostic\n"
                                         "radio button DNS Lookup\n"
                                         "text Hostname:\n"
                                         "check box Use this nameserver:\n"
                                         "combo box Use this nameserver:\n"
                                         "text Log\n"
                                         "button Start Process\n"
                                         "button Clear Log");
    QTest::newRow("Trace Route") << 3 << "Trace Route"
                                 << lines("page Net Tools\n"
                                          "button Diagnostic\n"
                                          "radio button Trace Route\n"
                                          "text Target Host:\n"
                                          "check box Datagram size\n"
                                          "spin box Datagram size\n"
                                          "check box Display addresses numerically\n"
                                          "check box UDP port\n"
                                          "text UDP port\n"
                                          "check box Max hops\n"
                                          "spin box Max hops\n"
                                          "check box Response wait time ( sec )\n"
                                          "spin box Response wait time ( sec )\n"
                                          "check box Queries/hop\n"
                                          "spin box Queries/hop\n"
                                          "check box Set source IP\n"
                                          "text Set source IP\n"
                                          "text Log\n"
                                          "button Start Process\n"
                                          "button Clear Log");
    QTest::newRow("Software Information") << 4 << ""
                                          << lines("page Software Information\n"
                                                   "tree Main software installed\n"
                                                   "tree Addons installed");
}

/// From the tabs through the page to the tabs again. Escape changes nothing on the way.
void tst_Accessibility::goesThroughTheInputsInReadingOrder()
{
    QFETCH(int, page);
    QFETCH(QString, tool);
    QFETCH(QStringList, stops);
    if ((page == 2 || page == 4) && !itemViewsTellTheirState())
        QSKIP("nothing outside of the program sees where the focus is");
    launch(QStringLiteral("--page %1").arg(page));
    if (!tool.isEmpty()) {
        QVERIFY(focus(QStringLiteral("radio button Ping")));
        for (const QString &next : lines("Ping\nDNS Lookup\nTrace Route")) {
            QTRY_COMPARE(described(focused(m_window)), QStringLiteral("radio button ") + next);
            press("space");
            if (next == tool)
                break;
            press("Down");
        }
    }
    const QString tabs = QStringLiteral("tab ");
    QVERIFY(focus(tabs));
    QStringList found;
    for (int i = 0; i < 40; ++i) {
        press("Escape");
        QVERIFY2(goOn(), qPrintable(QStringLiteral("stays at ") + described(focused(m_window))));
        const QString stop = described(focused(m_window));
        if (stop.startsWith(tabs))
            break;
        found.append(stop);
    }
    QCOMPARE(found.join(QLatin1Char(0x0a)), stops.join(QLatin1Char(0x0a)));
    QCOMPARE(m_desktop->windows(title), QList<quint32>{m_windowId});
    press("shift+Tab");
    QTRY_COMPARE(described(focused(m_window)), stops.constLast());
}

void tst_Accessibility::movesThroughTheCountersWithTheArrowKeys()
{
    if (!itemViewsTellTheirState())
        QSKIP("nothing outside of the program sees what it does");
    launch(QStringLiteral("--page 2"));
    QVERIFY(focus(QStringLiteral("table Interface Statistics")));
    const Accessible table = m_window.find(Accessible::Table, QStringLiteral("Interface Statistics"));
    press("ctrl+Home");
    QTRY_VERIFY(table.cell(0, 0).has(Accessible::Focused));
    press("Down");
    QTRY_VERIFY(table.cell(1, 0).has(Accessible::Focused));
    press("Right");
    QTRY_VERIFY(table.cell(1, 1).has(Accessible::Focused));
    press("ctrl+End");
    QTRY_VERIFY(table.cell(14, 1).has(Accessible::Focused));
}

void tst_Accessibility::changesTheTabFromInside()
{
    launch(QStringLiteral("--page 3"));
    QVERIFY(focus(QStringLiteral("text Log")));
    press("ctrl+Tab");
    QTRY_VERIFY(!m_window.find(Accessible::Tree, QStringLiteral("Main software installed")).isNull());
    press("ctrl+shift+Tab");
    QTRY_VERIFY(!m_window.find(Accessible::Text, QStringLiteral("Log")).isNull());
}

void tst_Accessibility::closesAnOpenListOnEscape()
{
    if (!itemViewsTellTheirState())
        QSKIP("nothing outside of the program sees what it does");
    launch(QStringLiteral("--page 2"));
    QVERIFY(focus(QStringLiteral("combo box Name:")));
    const Accessible box = m_window.find(Accessible::ComboBox, QStringLiteral("Name:"));
    const Accessible list = box.children().value(0);
    QCOMPARE(list.role(), int(Accessible::List));
    QVERIFY(!list.has(Accessible::Showing));
    press("alt+Down");
    QTRY_VERIFY(list.has(Accessible::Showing));
    press("Escape");
    QTRY_VERIFY(!list.has(Accessible::Showing));
    press("Escape");
    press("Tab");
    QTRY_COMPARE(described(focused(m_window)), QStringLiteral("table Interface Statistics"));
    QCOMPARE(m_desktop->windows(title), QList<quint32>{m_windowId});
}

void tst_Accessibility::closesADialogOnEscape_data()
{
    QTest::addColumn<bool>("accept");
    QTest::addColumn<QString>("dialog");
    QTest::newRow("choice of the archive") << false << "Save the diagnostic archive";
    QTest::newRow("report on the archive") << true << "Save the diagnostic";
}

void tst_Accessibility::closesADialogOnEscape()
{
    QFETCH(bool, accept);
    QFETCH(QString, dialog);
    Device::remove(QStringLiteral("/usr/bin/generateDiagnostic.sh"));
    if (accept && QFile::exists(QStringLiteral("/tmp/Diagnostic.tgz")))
        QSKIP("the proposed archive exists, so there is another question first");
    launch(QStringLiteral("--page 3"));
    QVERIFY(focus(QStringLiteral("button Diagnostic")));
    press("space");
    const quint32 choice = m_desktop->waitForWindow(QStringLiteral("Save the diagnostic archive"));
    QVERIFY(choice != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), choice);
    if (accept)
        press("Return");
    const quint32 opened = m_desktop->waitForWindow(dialog);
    QVERIFY(opened != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), opened);
    press("Escape");
    QTRY_VERIFY(m_desktop->windows(dialog).isEmpty());
    QTRY_COMPARE(m_desktop->focusWindow(), m_windowId);
    QTRY_COMPARE(described(focused(m_window)), QStringLiteral("button Diagnostic"));
}

QTEST_GUILESS_MAIN(tst_Accessibility)
#include "tst_accessibility.moc"
