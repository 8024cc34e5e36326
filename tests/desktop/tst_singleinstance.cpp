#include "tests/desktop/account.h"
#include "tests/desktop/desktop.h"
#include "tests/desktop/program.h"
#include "tests/device/device.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

const QString title = QStringLiteral("About this thin client");

/// A process of the other user that listens at the names at which root's copies of the program meet.
class Squatter {
public:
    Squatter()
    {
        int ready[2] = {};
        if (pipe(ready) != 0)
            return;
        m_process = fork();
        if (m_process == 0) {
            const char answer =
                setgid(Account::id) == 0 && setuid(Account::id) == 0 && listenAtAll() ? 'y' : 'n';
            if (write(ready[1], &answer, 1) == 1)
                pause();
            _exit(1);
        }
        close(ready[1]);
        char answer = 'n';
        isThere = read(ready[0], &answer, 1) == 1 && answer == 'y';
        close(ready[0]);
    }
    ~Squatter()
    {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    Q_DISABLE_COPY(Squatter)

    bool isThere = false;

private:
    static bool listenAtAll()
    {
        for (const char number : {'0', '1', '2', '3', '4', '5', '6', '7'}) {
            const QByteArray name = QByteArray("\0sysinfo-0-", 11) + number;
            sockaddr_un address = {};
            address.sun_family = AF_UNIX;
            std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
            const auto length =
                static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<size_t>(name.size()));
            const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
            if (bind(listener, reinterpret_cast<const sockaddr *>(&address), length) != 0
                || listen(listener, 1) != 0)
                return false;
        }
        return true;
    }

    pid_t m_process = -1;
};

/// The names of the processes that the rig's programs have left, apart from the desktop.
QStringList processesOnTheRig()
{
    const QByteArray mark = "SYSINFO_RIG=" + qgetenv("SYSINFO_RIG");
    const QStringList desktop{QStringLiteral("Xvfb"), QStringLiteral("openbox")};
    QStringList result;
    const QStringList processes =
        QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[1-9]*")}, QDir::Dirs);
    for (const QString &process : processes) {
        QFile environment(QStringLiteral("/proc/%1/environ").arg(process));
        QFile name(QStringLiteral("/proc/%1/comm").arg(process));
        if (process.toInt() == getpid() || !environment.open(QIODevice::ReadOnly)
            || !environment.readAll().split('\0').contains(mark) || !name.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromLatin1(name.readAll()).trimmed();
        if (!desktop.contains(text))
            result.append(text);
    }
    return result;
}

} // namespace

/// One copy of the built program a user, whatever stands in XDG_RUNTIME_DIR.
class tst_SingleInstance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void fiftyAtTheSameMomentLeaveOne_data();
    void fiftyAtTheSameMomentLeaveOne();
    void theSecondEndsSilently_data();
    void theSecondEndsSilently();
    void anotherUsersInstanceIsAnotherMatter();
    void anotherUserCannotKeepItFromStarting();

private:
    QStringList filesInTheDirectory() const;
    std::unique_ptr<Program> createProgram(const QString &runtimeDirectory = {}) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<QTemporaryDir> m_directory;
};

void tst_SingleInstance::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(!m_desktop->display().isEmpty());
}

void tst_SingleInstance::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

void tst_SingleInstance::cleanup()
{
    QTRY_VERIFY(m_desktop->windows(title).isEmpty());
    QTRY_COMPARE(processesOnTheRig(), QStringList());
    Device::restore();
}

QStringList tst_SingleInstance::filesInTheDirectory() const
{
    return QDir(m_directory->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

/// Without a directory the variable is not set.
std::unique_ptr<Program> tst_SingleInstance::createProgram(const QString &runtimeDirectory) const
{
    auto program = std::make_unique<Program>(*m_desktop, runtimeDirectory);
    if (runtimeDirectory.isEmpty()) {
        QProcessEnvironment environment = program->processEnvironment();
        environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        program->setProcessEnvironment(environment);
    }
    return program;
}

void tst_SingleInstance::fiftyAtTheSameMomentLeaveOne_data()
{
    QTest::addColumn<bool>("runtimeDirectory");
    QTest::newRow("with a run-time directory") << true;
    QTest::newRow("without a run-time directory") << false;
}

void tst_SingleInstance::fiftyAtTheSameMomentLeaveOne()
{
    QFETCH(bool, runtimeDirectory);
    const QString directory = runtimeDirectory ? m_directory->path() : QString();
    std::vector<std::unique_ptr<Program>> launches;
    for (int i = 0; i < 50; ++i) {
        launches.push_back(createProgram(directory));
        launches.back()->start(
            QStringLiteral("/usr/bin/dash"),
            {QStringLiteral("-c"), QStringLiteral("read go; exec \"$0\""), QStringLiteral(SYSINFO_PROGRAM)});
        QVERIFY(launches.back()->waitForStarted());
    }
    for (const auto &launch : launches) {
        launch->write("\n");
        launch->waitForBytesWritten(0);
    }
    const auto isRunning = [](const auto &launch) { return launch->state() != QProcess::NotRunning; };
    const auto running = [&] { return std::count_if(launches.begin(), launches.end(), isRunning); };
    QTRY_COMPARE_WITH_TIMEOUT(running(), 1, 60000);
    QVERIFY(m_desktop->waitForWindow(title) != 0);
    QCOMPARE(running(), 1);
    for (const auto &launch : launches) {
        if (isRunning(launch))
            continue;
        QCOMPARE(launch->exitStatus(), QProcess::NormalExit);
        QCOMPARE(launch->exitCode(), 0);
        QCOMPARE(launch->readAllStandardOutput(), QByteArray());
        QCOMPARE(launch->readAllStandardError(), QByteArray());
    }
    QCOMPARE(filesInTheDirectory(),
             runtimeDirectory ? QStringList{QStringLiteral("sysinfo.lock")} : QStringList());

    (*std::find_if(launches.begin(), launches.end(), isRunning))->kill();
    QTRY_COMPARE(running(), 0);
    QTRY_VERIFY(m_desktop->windows(title).isEmpty());
    const std::unique_ptr<Program> next = createProgram(directory);
    next->launch();
    QVERIFY(m_desktop->waitForWindow(title) != 0);
}

void tst_SingleInstance::theSecondEndsSilently_data()
{
    QTest::addColumn<QString>("runtimeDirectory");
    QTest::addColumn<int>("owner");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("used");
    const QString own = QStringLiteral("OWN");
    QTest::newRow("the user's own") << own << 0 << 0700 << true;
    QTest::newRow("not set") << QString() << 0 << 0700 << false;
    QTest::newRow("another user's") << own << Account::id << 0700 << false;
    QTest::newRow("writable by the group") << own << 0 << 0770 << false;
    QTest::newRow("writable by others") << own << 0 << 0707 << false;
    QTest::newRow("missing") << QStringLiteral("/nowhere/at/all") << 0 << 0700 << false;
    QTest::newRow("a file") << QStringLiteral("/dev/null") << 0 << 0700 << false;
}

void tst_SingleInstance::theSecondEndsSilently()
{
    QFETCH(QString, runtimeDirectory);
    QFETCH(int, owner);
    QFETCH(int, mode);
    QFETCH(bool, used);
    if (runtimeDirectory == QLatin1String("OWN"))
        runtimeDirectory = m_directory->path();
    QCOMPARE(chmod(QFile::encodeName(m_directory->path()).constData(), static_cast<mode_t>(mode)), 0);
    if (!Account::giveTo(owner, m_directory->path()))
        QSKIP("only root can give a directory to another user");

    const std::unique_ptr<Program> first = createProgram(runtimeDirectory);
    first->launch(QStringLiteral("--page 4"));
    const quint32 window = m_desktop->waitForWindow(title);
    QVERIFY(window != 0);
    QTRY_COMPARE(m_desktop->focusWindow(), window);
    // It is stopped so that all calls are the second one's.
    kill(static_cast<pid_t>(first->processId()), SIGSTOP);
    QTest::qWait(100);
    Device::clearCalls();
    const std::unique_ptr<Program> second = createProgram(runtimeDirectory);
    // fontconfig would say so if it were asked.
    QProcessEnvironment environment = second->processEnvironment();
    environment.insert(QStringLiteral("FONTCONFIG_FILE"), QStringLiteral("/nowhere/at/all"));
    second->setProcessEnvironment(environment);
    second->launch(QStringLiteral("--page 2"));
    const bool ended = second->waitForFinished(15000);
    const QList<QStringList> calls = Device::calls();
    kill(static_cast<pid_t>(first->processId()), SIGCONT);

    QVERIFY(ended);
    QCOMPARE(second->exitStatus(), QProcess::NormalExit);
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(second->readAllStandardOutput(), QByteArray());
    QCOMPARE(second->readAllStandardError(), QByteArray());
    QCOMPARE(calls, QList<QStringList>());
    QCOMPARE(m_desktop->windows(title), QList<quint32>{window});
    QCOMPARE(filesInTheDirectory(), used ? QStringList{QStringLiteral("sysinfo.lock")} : QStringList());
}

void tst_SingleInstance::anotherUsersInstanceIsAnotherMatter()
{
    if (geteuid() != 0 || !Account::giveTo(Account::id, m_directory->path()))
        QSKIP("only root can start a program as another user");
    const QString program = Account::programForEverybody();
    QVERIFY(!program.isEmpty());
    // Neither has a run-time directory, so that they meet at the sockets.
    const auto launch = [&](int user) {
        std::unique_ptr<Program> result = createProgram(QStringLiteral("/dev/null"));
        result->start(QStringLiteral("setpriv"), Account::arguments(user, program));
        return result;
    };
    const auto others = launch(Account::id);
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->windows(title).size(), 1, 15000);
    const auto own = launch(0);
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->windows(title).size(), 2, 15000);
    for (const int user : {0, Account::id}) {
        const auto again = launch(user);
        QVERIFY(again->waitForFinished(15000));
        QCOMPARE(again->exitCode(), 0);
    }
    QCOMPARE(own->state(), QProcess::Running);
    QCOMPARE(others->state(), QProcess::Running);
}

void tst_SingleInstance::anotherUserCannotKeepItFromStarting()
{
    const QTemporaryDir othersDirectory;
    if (geteuid() != 0 || !Account::giveTo(Account::id, othersDirectory.path()))
        QSKIP("only root can become another user");
    const Squatter squatter;
    QVERIFY(squatter.isThere);
    const std::unique_ptr<Program> first = createProgram(m_directory->path());
    first->launch();
    QVERIFY(m_desktop->waitForWindow(title) != 0);
    // With all the names taken the file still tells.
    const std::unique_ptr<Program> second = createProgram(m_directory->path());
    second->launch();
    QVERIFY(second->waitForFinished(15000));
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(first->state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
