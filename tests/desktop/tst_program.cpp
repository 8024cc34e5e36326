#include "tests/desktop/account.h"
#include "tests/desktop/desktop.h"
#include "tests/desktop/program.h"
#include "tests/device/device.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <unistd.h>

namespace {

const QString title = QStringLiteral("About this thin client");

} // namespace

/// The program as it is built, under a real X server, observed from outside.
class tst_Program : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void opensOnTheTab_data();
    void opensOnTheTab();
    void endsWithZeroWhenItsWindowIsClosed();
    void endsWhileAToolRuns();
    void endsWhileADialogIsOpen_data();
    void endsWhileADialogIsOpen();
    void staysOpenOnEscape();
    void staysOpenOnEscapeInEveryWidget();
    void escapeClosesADialogOnly();
    void coloursTheStripByTheUser_data();
    void coloursTheStripByTheUser();
    void aSecondLaunchEndsSilentlyBeforeGathering();
    void aKilledInstanceDoesNotBlockTheNext();

private:
    static QString selectedTab(const QImage &window);
    std::unique_ptr<Program> createProgram() const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<QTemporaryDir> m_runtimeDirectory;
};

void tst_Program::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(!m_desktop->display().isEmpty());
}

void tst_Program::init()
{
    m_runtimeDirectory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_runtimeDirectory->isValid());
}

void tst_Program::cleanup()
{
    QTRY_VERIFY(m_desktop->windows(title).isEmpty());
    Device::restore();
}

std::unique_ptr<Program> tst_Program::createProgram() const
{
    return std::make_unique<Program>(*m_desktop, m_runtimeDirectory->path());
}

/// The selected tab is the bright one. The tabs are looked at a little above the upper border of their pane,
/// below their texts, where they are lighter than their borders and the background.
QString tst_Program::selectedTab(const QImage &window)
{
    const QColor paneBorder(0xc2, 0xc7, 0xcb);
    int y = 0;
    while (y < window.height() && window.pixelColor(window.width() - 2, y) != paneBorder)
        ++y;
    QList<bool> tabs;
    for (int x = 0, width = 0; y >= 3 && y < window.height() && x < window.width(); ++x) {
        const int lightness = window.pixelColor(x, y - 3).lightness();
        width = lightness > 0xc8 ? width + 1 : 0;
        if (width == 10)
            tabs.append(lightness > 0xf0);
    }
    const QStringList names{QStringLiteral("General"), QStringLiteral("Network"), QStringLiteral("Net Tools"),
                            QStringLiteral("Software Information")};
    if (tabs.size() != names.size() || tabs.count(true) != 1)
        return QStringLiteral("%1 tabs, %2 of them selected").arg(tabs.size()).arg(tabs.count(true));
    return names.at(static_cast<int>(tabs.indexOf(true)));
}

void tst_Program::opensOnTheTab_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("tab");

    QTest::newRow("no arguments") << ""
                                  << "General";
    QTest::newRow("--page 4") << "--page 4"
                              << "Software Information";
    QTest::newRow("--page 2") << "--page 2"
                              << "Network";
    QTest::newRow("--page 0") << "--page 0"
                              << "General";
    QTest::newRow("--page 9") << "--page 9"
                              << "General";
    QTest::newRow("--page -1") << "--page -1"
                               << "General";
    QTest::newRow("--page abc") << "--page abc"
                                << "General";
    QTest::newRow("--page last") << "--page"
                                 << "General";
    QTest::newRow("twice") << "--page 3 --page 2"
                           << "Network";
    QTest::newRow("-page 3") << "-page 3"
                             << "General";
    QTest::newRow("--PAGE 3") << "--PAGE 3"
                              << "General";
    QTest::newRow("other arguments around it") << "file --other --page 3 more"
                                               << "Net Tools";
    QTest::newRow("an option of the toolkit as well") << "-style Fusion --page 3"
                                                      << "Net Tools";
}

void tst_Program::opensOnTheTab()
{
    QFETCH(QString, arguments);
    QFETCH(QString, tab);
    const std::unique_ptr<Program> program = createProgram();
    program->launch(arguments);
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(selectedTab(m_desktop->picture(window)), tab);
}

void tst_Program::endsWithZeroWhenItsWindowIsClosed()
{
    const std::unique_ptr<Program> program = createProgram();
    program->launch();
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    m_desktop->closeByWindowManager(window);
    QVERIFY(program->waitForFinished(10000));
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
    QCOMPARE(program->readAllStandardOutput(), QByteArray());
}

void tst_Program::endsWhileAToolRuns()
{
    Device::installTool(QStringLiteral("/usr/bin/ping"),
                        "echo $$ >\"$SYSINFO_RIG/ping-pid\"; exec sleep 600");
    const std::unique_ptr<Program> program = createProgram();
    program->launch(QStringLiteral("--page 3"));
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), window);
    m_desktop->pressKey(QStringLiteral("Return"));
    QFile pid(qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/ping-pid"));
    QTRY_VERIFY(pid.size() > 0);
    QVERIFY(pid.open(QIODevice::ReadOnly));
    const QString process = QStringLiteral("/proc/") + QString::fromLatin1(pid.readAll()).trimmed();
    QVERIFY(QFile::exists(process));
    m_desktop->closeByWindowManager(window);
    QVERIFY(program->waitForFinished(10000));
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
    QTRY_VERIFY(!QFile::exists(process));
}

void tst_Program::endsWhileADialogIsOpen_data()
{
    QTest::addColumn<bool>("accept");
    QTest::addColumn<QString>("dialog");
    QTest::newRow("choice of the archive") << false << "Save the diagnostic archive";
    QTest::newRow("report on the archive") << true << "Save the diagnostic";
}

void tst_Program::endsWhileADialogIsOpen()
{
    QFETCH(bool, accept);
    QFETCH(QString, dialog);
    Device::remove(QStringLiteral("/usr/bin/generateDiagnostic.sh"));
    if (accept && QFile::exists(QStringLiteral("/tmp/Diagnostic.tgz")))
        QSKIP("the proposed archive exists, so there is another question first");
    const std::unique_ptr<Program> program = createProgram();
    program->launch(QStringLiteral("--page 3"));
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), window);
    // The button is the first thing behind the tabs and the page's scroll area.
    m_desktop->pressKey(QStringLiteral("Tab"));
    m_desktop->pressKey(QStringLiteral("Tab"));
    m_desktop->pressKey(QStringLiteral("space"));
    const quint32 choice = m_desktop->waitForWindow(QStringLiteral("Save the diagnostic archive"));
    QVERIFY(choice != 0);
    if (accept) {
        QTRY_COMPARE(m_desktop->focusWindow(), choice);
        m_desktop->pressKey(QStringLiteral("Return"));
    }
    QVERIFY(m_desktop->waitForWindow(dialog) != 0);
    m_desktop->closeByWindowManager(window);
    QVERIFY(program->waitForFinished(10000));
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
}

void tst_Program::staysOpenOnEscape()
{
    const std::unique_ptr<Program> program = createProgram();
    program->launch();
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    // A key that the dialog does take shows that keys arrive: Ctrl+Tab goes to the next tab.
    m_desktop->pressKey(QStringLiteral("ctrl+Tab"));
    QTRY_COMPARE(selectedTab(m_desktop->picture(window)), QStringLiteral("Network"));
    m_desktop->pressKey(QStringLiteral("Escape"));
    m_desktop->pressKey(QStringLiteral("ctrl+Tab"));
    QTRY_COMPARE(selectedTab(m_desktop->picture(window)), QStringLiteral("Net Tools"));
    QCOMPARE(program->state(), QProcess::Running);
}

void tst_Program::staysOpenOnEscapeInEveryWidget()
{
    const std::unique_ptr<Program> program = createProgram();
    program->launch();
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), window);
    // More than any page has widgets; the tool that is chosen changes nothing about their kinds.
    for (const char *tab : {"General", "Network", "Net Tools", "Software Information"}) {
        QTRY_COMPARE(selectedTab(m_desktop->picture(window)), QString::fromLatin1(tab));
        for (int widget = 0; widget < 20; ++widget) {
            m_desktop->pressKey(QStringLiteral("Tab"));
            m_desktop->pressKey(QStringLiteral("Escape"));
        }
        m_desktop->pressKey(QStringLiteral("ctrl+Tab"));
    }
    QTRY_COMPARE(selectedTab(m_desktop->picture(window)), QStringLiteral("General"));
    QCOMPARE(m_desktop->windows(title), QList<quint32>{window});
    QCOMPARE(program->state(), QProcess::Running);
}

void tst_Program::escapeClosesADialogOnly()
{
    const QString choice = QStringLiteral("Save the diagnostic archive");
    const std::unique_ptr<Program> program = createProgram();
    program->launch(QStringLiteral("--page 3"));
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), window);
    m_desktop->pressKey(QStringLiteral("Tab"));
    m_desktop->pressKey(QStringLiteral("Tab"));
    m_desktop->pressKey(QStringLiteral("space"));
    const quint32 dialog = m_desktop->waitForWindow(choice);
    QVERIFY(dialog != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), dialog);
    m_desktop->pressKey(QStringLiteral("Escape"));
    QTRY_COMPARE(m_desktop->windows(choice), QList<quint32>());
    QCOMPARE(m_desktop->windows(title), QList<quint32>{window});
    QTRY_COMPARE(m_desktop->focusWindow(), window);
    m_desktop->pressKey(QStringLiteral("Escape"));
    m_desktop->pressKey(QStringLiteral("ctrl+Tab"));
    QTRY_COMPARE(selectedTab(m_desktop->picture(window)), QStringLiteral("Software Information"));
}

void tst_Program::coloursTheStripByTheUser_data()
{
    QTest::addColumn<int>("user");
    QTest::addColumn<QByteArray>("groups");
    QTest::addColumn<QColor>("colour");

    const QColor blue(0, 51, 102);
    const QColor red(153, 0, 0);
    QTest::newRow("root") << 0 << QByteArray() << red;
    QTest::newRow("plain user") << 4711 << QByteArray("wheel:x:4800:somebody\n") << blue;
    QTest::newRow("member of sudo") << 4711 << QByteArray("sudo:x:4800:operator\n") << red;
    QTest::newRow("member of wheel") << 4711 << QByteArray("wheel:x:4800:operator\n") << red;
    QTest::newRow("member of admin") << 4711 << QByteArray("admin:x:4800:operator\n") << red;
}

void tst_Program::coloursTheStripByTheUser()
{
    QFETCH(int, user);
    QFETCH(QByteArray, groups);
    QFETCH(QColor, colour);
    const auto everybodyReads = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther;
    if (!Account::giveTo(user, m_runtimeDirectory->path()))
        QSKIP("only root can start a program as another user");
    Device::write(QStringLiteral("/etc/passwd"),
                  "root:x:0:0::/root:/bin/sh\noperator:x:4711:4711::/:/bin/sh\n");
    Device::write(QStringLiteral("/etc/group"), "root:x:0:\n" + groups);
    QFile::setPermissions(QStringLiteral("/etc/passwd"), everybodyReads);
    QFile::setPermissions(QStringLiteral("/etc/group"), everybodyReads);
    const QString copy = Account::programForEverybody();
    QVERIFY(!copy.isEmpty());

    const std::unique_ptr<Program> program = createProgram();
    program->start(QStringLiteral("setpriv"), Account::arguments(user, copy));
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    const auto strip = [&] {
        const QImage picture = m_desktop->picture(window);
        return picture.pixelColor(picture.width() - 3, 3);
    };
    QTRY_COMPARE(strip(), colour);
}

void tst_Program::aSecondLaunchEndsSilentlyBeforeGathering()
{
    const std::unique_ptr<Program> first = createProgram();
    first->launch(QStringLiteral("--page 2"));
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(selectedTab(m_desktop->picture(window)), QStringLiteral("Network"));

    // The first one goes on with its own commands, so it is stopped while the second is watched.
    ::kill(static_cast<pid_t>(first->processId()), SIGSTOP);
    QTest::qWait(100);
    Device::clearCalls();
    const std::unique_ptr<Program> second = createProgram();
    second->launch(QStringLiteral("--page 3"));
    const bool ended = second->waitForFinished(10000);
    const QList<QStringList> calls = Device::calls();
    ::kill(static_cast<pid_t>(first->processId()), SIGCONT);

    QVERIFY(ended);
    QCOMPARE(second->exitStatus(), QProcess::NormalExit);
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(second->readAllStandardOutput(), QByteArray());
    QCOMPARE(second->readAllStandardError(), QByteArray());
    QVERIFY(calls.isEmpty());
    QCOMPARE(m_desktop->windows(title), QList<quint32>{window});
    QCOMPARE(selectedTab(m_desktop->picture(window)), QStringLiteral("Network"));
}

void tst_Program::aKilledInstanceDoesNotBlockTheNext()
{
    const std::unique_ptr<Program> first = createProgram();
    first->launch();
    QVERIFY(m_desktop->waitForWindow(title) != 0);
    first->kill();
    QVERIFY(first->waitForFinished());
    QTRY_VERIFY(m_desktop->windows(title).isEmpty());
    const std::unique_ptr<Program> second = createProgram();
    second->launch();
    QVERIFY(m_desktop->waitForWindow(title) != 0);
}

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_program.moc"
