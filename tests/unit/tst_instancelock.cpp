#include "framework/instancelock.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Forks a process that makes the claim and keeps it; returns its id once it has it, or -1.
pid_t claimInAnotherProcess()
{
    int ready[2] = {};
    if (pipe(ready) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        const InstanceLock lock("test");
        const char held = lock.isHeldElsewhere() ? 'n' : 'y';
        if (write(ready[1], &held, 1) == 1)
            pause();
        _exit(1);
    }
    char held = 'n';
    const bool answered = read(ready[0], &held, 1) == 1;
    close(ready[0]);
    close(ready[1]);
    return answered && held == 'y' ? child : -1;
}

void killAndWait(pid_t child)
{
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

} // namespace

/// Once with a run-time directory, once without: then there is nothing to write to.
class tst_InstanceLock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isHeldByOneProcess_data() { places(); }
    void isHeldByOneProcess();
    void endsWithTheProcessThatIsKilled_data() { places(); }
    void endsWithTheProcessThatIsKilled();
    void isNotInheritedByChildren_data() { places(); }
    void isNotInheritedByChildren();
    void programsDoNotShareIt_data() { places(); }
    void programsDoNotShareIt();
    void writesOneFileInTheRuntimeDirectory();
    void leavesADirectoryAloneThatOthersCanWrite();
    void leavesALinkToAnotherPlaceAlone();

private:
    static void places();
    void useRuntimeDirectory(bool use);

    std::unique_ptr<QTemporaryDir> m_directory;
};

void tst_InstanceLock::places()
{
    QTest::addColumn<bool>("runtimeDirectory");
    QTest::newRow("with a run-time directory") << true;
    QTest::newRow("without a run-time directory") << false;
}

void tst_InstanceLock::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(
        QFile::setPermissions(m_directory->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_InstanceLock::cleanup()
{
    qunsetenv("XDG_RUNTIME_DIR");
}

void tst_InstanceLock::useRuntimeDirectory(bool use)
{
    if (!use && QDir(QStringLiteral("/run/user/%1").arg(geteuid())).exists())
        QSKIP("this user has a run-time directory at its standard place");
    if (use)
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_directory->path()));
}

void tst_InstanceLock::isHeldByOneProcess()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    const pid_t holder = claimInAnotherProcess();
    QVERIFY(holder > 0);
    QVERIFY(InstanceLock("test").isHeldElsewhere());
    QVERIFY(InstanceLock("test").isHeldElsewhere());
    killAndWait(holder);
}

void tst_InstanceLock::endsWithTheProcessThatIsKilled()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    const pid_t holder = claimInAnotherProcess();
    QVERIFY(holder > 0);
    killAndWait(holder);
    QVERIFY(!InstanceLock("test").isHeldElsewhere());
}

void tst_InstanceLock::isNotInheritedByChildren()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    pid_t tool = -1;
    {
        const InstanceLock lock("test");
        QVERIFY(!lock.isHeldElsewhere());
        tool = fork();
        if (tool == 0) {
            execl("/bin/sleep", "sleep", "60", nullptr);
            _exit(1);
        }
        // The descriptor goes when the child has become another program.
        const QString exe = QStringLiteral("/proc/%1/exe").arg(tool);
        QTRY_VERIFY(QFile::symLinkTarget(exe).endsWith(QLatin1String("sleep")));
    }
    QVERIFY(!InstanceLock("test").isHeldElsewhere());
    killAndWait(tool);
}

void tst_InstanceLock::programsDoNotShareIt()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    const InstanceLock lock("one");
    QVERIFY(!InstanceLock("another").isHeldElsewhere());
    QVERIFY(InstanceLock("one").isHeldElsewhere());
}

void tst_InstanceLock::writesOneFileInTheRuntimeDirectory()
{
    useRuntimeDirectory(true);
    const InstanceLock lock("test");
    const QFileInfoList files = QDir(m_directory->path()).entryInfoList(QDir::Files | QDir::Hidden);
    QCOMPARE(files.size(), 1);
    QCOMPARE(files.constFirst().fileName(), QStringLiteral("test.lock"));
    QCOMPARE(files.constFirst().size(), 0);
    QCOMPARE(files.constFirst().permissions() & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::ReadOwner | QFile::WriteOwner);
}

void tst_InstanceLock::leavesADirectoryAloneThatOthersCanWrite()
{
    useRuntimeDirectory(true);
    QVERIFY(QFile::setPermissions(
        m_directory->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::WriteOther));
    const InstanceLock lock("test");
    QVERIFY(!lock.isHeldElsewhere());
    QVERIFY(QDir(m_directory->path()).isEmpty());
    QVERIFY(InstanceLock("test").isHeldElsewhere());
}

void tst_InstanceLock::leavesALinkToAnotherPlaceAlone()
{
    useRuntimeDirectory(true);
    const QString elsewhere = m_directory->filePath(QStringLiteral("elsewhere"));
    QVERIFY(QFile::link(elsewhere, m_directory->filePath(QStringLiteral("test.lock"))));
    const InstanceLock lock("test");
    QVERIFY(!lock.isHeldElsewhere());
    QVERIFY(!QFile::exists(elsewhere));
}

QTEST_GUILESS_MAIN(tst_InstanceLock)
#include "tst_instancelock.moc"
