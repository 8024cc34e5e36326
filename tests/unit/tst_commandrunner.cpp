#include "app/commandrunner.h"
#include "app/waitingwork.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

int openDescriptors()
{
    return static_cast<int>(
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::Files).size());
}

/// Lets no further descriptor be opened while it lives.
class NoMoreDescriptors {
public:
    NoMoreDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &m_limit);
        const int lowestFree = open("/dev/null", O_RDONLY | O_CLOEXEC);
        close(lowestFree);
        rlimit reached = m_limit;
        reached.rlim_cur = static_cast<rlim_t>(lowestFree);
        setrlimit(RLIMIT_NOFILE, &reached);
    }
    ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &m_limit); }
    Q_DISABLE_COPY(NoMoreDescriptors)

private:
    rlimit m_limit = {};
};

} // namespace

class tst_CommandRunner : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void returnsTheFirstLineTrimmed_data();
    void returnsTheFirstLineTrimmed();
    void returnsALineOfAnyLength();
    void waitsForTheCommand();
    void returnsNothingWhenNoPipeCanBeOpened();
    void letsANullPipeBe();
    void triesAnInterruptedReadAgain();
    void leavesNoDescriptorOpen();
    void doesAPieceOfWaitingWorkWhileTheCommandWorks();
    void leavesWaitingWorkWhenTheCommandWasStartedAhead();
    void takesTheAnswerOfACommandStartedAhead();
    void startsACommandAheadAtOnce();
    void runsAnotherCommandThanTheOneAhead();
    void waitsForACommandAheadThatNobodyAskedFor();
    void runsACommandThatCouldNotBeStartedAhead();
};

void tst_CommandRunner::returnsTheFirstLineTrimmed_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("result");

    QTest::newRow("first of two lines") << R"(printf '  a b  \nsecond\n')"
                                        << "a b";
    QTest::newRow("prints nothing") << "true"
                                    << "";
    QTest::newRow("no such command") << "/no/such/command 2>/dev/null"
                                     << "";
    QTest::newRow("only a newline") << "echo"
                                    << "";
    QTest::newRow("blank first line hides the second") << R"(printf '\nvalue\n')"
                                                       << "";
    QTest::newRow("no final newline") << "printf value"
                                      << "value";
    QTest::newRow("fails after printing") << "echo value; exit 3"
                                          << "value";
    QTest::newRow("standard error is not read") << "echo value 2>/dev/null >&2"
                                                << "";
    QTest::newRow("pipes and quotes") << R"(printf 'a:b c\n' | cut -d : -f 2)"
                                      << "b c";
    QTest::newRow("tabs and carriage returns are white space") << R"(printf '\t a\r\n')"
                                                               << "a";
    QTest::newRow("zero byte ends the text") << R"(printf 'ab\000cd\n')"
                                             << "ab";
    QTest::newRow("Latin-1 bytes") << R"(printf 'K\366ln\n')" << QString::fromUtf8("K\u00f6ln");
    QTest::newRow("Latin-1 command") << QString::fromUtf8("printf \u00f6") << QString::fromUtf8("\u00f6");
    QTest::newRow("no Latin-1 command") << QString::fromUtf8("printf \u0416") << "?";
    QTest::newRow("empty command") << ""
                                   << "";
}

void tst_CommandRunner::returnsTheFirstLineTrimmed()
{
    QFETCH(QString, command);
    QTEST(runCommand(command), "result");
}

void tst_CommandRunner::returnsALineOfAnyLength()
{
    QCOMPARE(runCommand(QStringLiteral("head -c 100000 /dev/zero | tr '\\0' x; echo; echo y")),
             QString(100000, QLatin1Char('x')));
}

void tst_CommandRunner::waitsForTheCommand()
{
    QElapsedTimer time;
    time.start();
    QCOMPARE(runCommand(QStringLiteral("echo first; sleep 0.3")), QStringLiteral("first"));
    QVERIFY(time.elapsed() >= 300);
}

void tst_CommandRunner::returnsNothingWhenNoPipeCanBeOpened()
{
    {
        const NoMoreDescriptors limit;
        QCOMPARE(popen("echo value", "r"), nullptr);
        QCOMPARE(runCommand(QStringLiteral("echo value")), QString());
    }
    QCOMPARE(runCommand(QStringLiteral("echo value")), QStringLiteral("value"));
}

void tst_CommandRunner::letsANullPipeBe()
{
    closeCommandPipe(nullptr);
}

void tst_CommandRunner::triesAnInterruptedReadAgain()
{
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) {};
    struct sigaction previous = {};
    sigaction(SIGALRM, &interrupting, &previous); // without SA_RESTART
    const itimerval every50ms = {{0, 50000}, {0, 50000}};
    setitimer(ITIMER_REAL, &every50ms, nullptr);
    const QString result = runCommand(QStringLiteral("sleep 0.3; echo value"));
    const itimerval off = {};
    setitimer(ITIMER_REAL, &off, nullptr);
    sigaction(SIGALRM, &previous, nullptr);
    QCOMPARE(result, QStringLiteral("value"));
}

void tst_CommandRunner::leavesNoDescriptorOpen()
{
    const int before = openDescriptors();
    for (int i = 0; i < 20; ++i)
        runCommand(QStringLiteral("echo value"));
    QCOMPARE(openDescriptors(), before);
}

void tst_CommandRunner::doesAPieceOfWaitingWorkWhileTheCommandWorks()
{
    const QTemporaryDir folder;
    const QString end = folder.filePath(QStringLiteral("end"));
    QStringList done;
    WaitingWork work;
    work.add([&] { done.append(QFile::exists(end) ? QStringLiteral("late") : QStringLiteral("first")); });
    work.add([&] { done.append(QFile::exists(end) ? QStringLiteral("late") : QStringLiteral("second")); });
    QCOMPARE(runCommand(QStringLiteral("sleep 0.3; touch %1; echo value").arg(end)), QStringLiteral("value"));
    QCOMPARE(done, QStringList({QStringLiteral("first")}));
}

void tst_CommandRunner::leavesWaitingWorkWhenTheCommandWasStartedAhead()
{
    bool isDone = false;
    WaitingWork work;
    work.add([&] { isDone = true; });
    const QString command = QStringLiteral("sleep 0.3; echo value");
    const CommandAhead ahead(command);
    QCOMPARE(runCommand(command), QStringLiteral("value"));
    QVERIFY(!isDone);
}

void tst_CommandRunner::takesTheAnswerOfACommandStartedAhead()
{
    const QTemporaryDir folder;
    const QString runs = folder.filePath(QStringLiteral("runs"));
    const QString command = QStringLiteral("echo run >>%1; wc -l <%1").arg(runs);
    const int before = openDescriptors();
    {
        const CommandAhead ahead(command);
        QCOMPARE(runCommand(command), QStringLiteral("1"));
        QCOMPARE(runCommand(command), QStringLiteral("2"));
    }
    QCOMPARE(runCommand(command), QStringLiteral("3"));
    QCOMPARE(openDescriptors(), before);
}

void tst_CommandRunner::startsACommandAheadAtOnce()
{
    const QTemporaryDir folder;
    const QString start = folder.filePath(QStringLiteral("start"));
    const CommandAhead ahead(QStringLiteral("touch %1; sleep 0.1").arg(start));
    QTRY_VERIFY(QFile::exists(start));
}

void tst_CommandRunner::runsAnotherCommandThanTheOneAhead()
{
    const QString slow = QStringLiteral("sleep 0.2; echo slow");
    const CommandAhead ahead(slow);
    QCOMPARE(runCommand(QStringLiteral("echo other")), QStringLiteral("other"));
    QCOMPARE(runCommand(slow), QStringLiteral("slow"));
}

void tst_CommandRunner::waitsForACommandAheadThatNobodyAskedFor()
{
    const QTemporaryDir folder;
    const QString end = folder.filePath(QStringLiteral("end"));
    const int before = openDescriptors();
    {
        const CommandAhead ahead(QStringLiteral("sleep 0.3; touch %1").arg(end));
    }
    QVERIFY(QFile::exists(end));
    QCOMPARE(openDescriptors(), before);
}

void tst_CommandRunner::runsACommandThatCouldNotBeStartedAhead()
{
    const QString command = QStringLiteral("echo value");
    std::unique_ptr<CommandAhead> ahead;
    {
        const NoMoreDescriptors limit;
        ahead = std::make_unique<CommandAhead>(command);
    }
    QCOMPARE(runCommand(command), QStringLiteral("value"));
}

QTEST_APPLESS_MAIN(tst_CommandRunner)
#include "tst_commandrunner.moc"
