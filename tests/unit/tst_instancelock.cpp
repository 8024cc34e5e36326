#include "framework/instancelock.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <future>
#include <memory>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// Two builds may run their tests at the same time.
const QByteArray program = "tst-instancelock-" + QByteArray::number(getpid());

constexpr uid_t otherUser = 4712;

enum class Claim { Held, HeldElsewhere, Failed };

/// Another process that makes a claim and keeps what it got until this object goes.
class Claimant {
public:
    explicit Claimant(uid_t user = geteuid(), const std::function<bool()> &claim = {})
    {
        int ready[2] = {};
        if (pipe2(ready, O_CLOEXEC) != 0)
            return;
        m_process = fork();
        if (m_process == 0) {
            char answer = 'f';
            if (user == geteuid() || (setgid(user) == 0 && setuid(user) == 0)) {
                if (claim) {
                    answer = claim() ? 'y' : 'f';
                } else {
                    auto *lock = new InstanceLock(program);
                    answer = lock->isHeldElsewhere() ? 'n' : 'y';
                }
            }
            if (write(ready[1], &answer, 1) == 1)
                pause();
            _exit(1);
        }
        close(ready[1]);
        char answer = 'f';
        if (read(ready[0], &answer, 1) == 1)
            result = answer == 'y' ? Claim::Held : answer == 'n' ? Claim::HeldElsewhere : Claim::Failed;
        close(ready[0]);
    }
    ~Claimant() { end(); }
    Q_DISABLE_COPY(Claimant)

    void end()
    {
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
        m_process = -1;
    }

    Claim result = Claim::Failed;

private:
    pid_t m_process = -1;
};

/// Listens at the abstract name and keeps the descriptor open.
bool listenAt(const QByteArray &name)
{
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray text = '\0' + name;
    std::memcpy(address.sun_path, text.constData(), static_cast<size_t>(text.size()));
    const auto length =
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<size_t>(text.size()));
    return bind(listener, reinterpret_cast<const sockaddr *>(&address), length) == 0
        && listen(listener, 1) == 0;
}

} // namespace

/// Most of it once with a run-time directory and once without, where only the sockets are left. The standard
/// place /run/user/UID is used as well where it exists; nothing here depends on it.
class tst_InstanceLock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isHeldByOneProcess_data() { places(); }
    void isHeldByOneProcess();
    void endsWithTheProcessThatIsKilled_data() { places(); }
    void endsWithTheProcessThatIsKilled();
    void isSeenFromWithoutARuntimeDirectory();
    void fiftyAtTheSameMomentLeaveOne_data() { places(); }
    void fiftyAtTheSameMomentLeaveOne();
    void anotherUsersInstanceIsAnotherMatter();
    void anotherUserCannotOccupyIt_data();
    void anotherUserCannotOccupyIt();
    void manyCallersDoNotFillIt();
    void anotherUsersDirectoryIsLeftAlone();
    void aFileThatOthersCanOpenIsLeftAlone();
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
    useRuntimeDirectory(false);
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
    // A file has no files in it.
    qputenv("XDG_RUNTIME_DIR", use ? QFile::encodeName(m_directory->path()) : QByteArray("/dev/null"));
}

void tst_InstanceLock::isHeldByOneProcess()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    const Claimant holder;
    QVERIFY(holder.result == Claim::Held);
    QVERIFY(InstanceLock::isHeld(program));
    QVERIFY(InstanceLock(program).isHeldElsewhere());
    QVERIFY(InstanceLock(program).isHeldElsewhere());
    QVERIFY(Claimant().result == Claim::HeldElsewhere);
}

void tst_InstanceLock::endsWithTheProcessThatIsKilled()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    Claimant holder;
    QVERIFY(holder.result == Claim::Held);
    holder.end();
    // To ask makes no claim.
    QVERIFY(!InstanceLock::isHeld(program));
    QVERIFY(!InstanceLock::isHeld(program));
    QVERIFY(!InstanceLock(program).isHeldElsewhere());
}

void tst_InstanceLock::isSeenFromWithoutARuntimeDirectory()
{
    useRuntimeDirectory(true);
    const Claimant holder;
    QVERIFY(holder.result == Claim::Held);
    useRuntimeDirectory(false);
    QVERIFY(InstanceLock(program).isHeldElsewhere());
}

void tst_InstanceLock::fiftyAtTheSameMomentLeaveOne()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    std::vector<std::future<std::unique_ptr<Claimant>>> launches;
    for (int i = 0; i < 50; ++i)
        launches.push_back(std::async(std::launch::async, [] { return std::make_unique<Claimant>(); }));
    std::vector<std::unique_ptr<Claimant>> claimants;
    for (auto &launch : launches)
        claimants.push_back(launch.get());
    const auto count = [&claimants](Claim result) {
        return std::count_if(claimants.begin(), claimants.end(),
                             [=](const auto &c) { return c->result == result; });
    };
    QCOMPARE(count(Claim::Held), 1);
    QCOMPARE(count(Claim::HeldElsewhere), 49);
}

void tst_InstanceLock::anotherUsersInstanceIsAnotherMatter()
{
    if (geteuid() != 0)
        QSKIP("only root can become another user");
    // Both without a run-time directory, so that they meet at the sockets.
    const Claimant other(otherUser);
    QVERIFY(other.result == Claim::Held);
    const Claimant own;
    QVERIFY(own.result == Claim::Held);
    QVERIFY(Claimant(otherUser).result == Claim::HeldElsewhere);
    QVERIFY(Claimant().result == Claim::HeldElsewhere);
}

void tst_InstanceLock::anotherUserCannotOccupyIt_data()
{
    QTest::addColumn<int>("names");
    QTest::newRow("first name") << 1;
    QTest::newRow("three names") << 3;
    QTest::newRow("all names") << 8;
}

void tst_InstanceLock::anotherUserCannotOccupyIt()
{
    QFETCH(int, names);
    if (geteuid() != 0)
        QSKIP("only root can become another user");
    std::vector<std::unique_ptr<Claimant>> squatters;
    for (int i = 0; i < names; ++i) {
        const QByteArray name = program + "-0-" + QByteArray::number(i);
        squatters.push_back(std::make_unique<Claimant>(otherUser, [name] { return listenAt(name); }));
        QVERIFY(squatters.back()->result == Claim::Held);
    }
    const Claimant own;
    QVERIFY(own.result == Claim::Held);
    // With every name taken there is nothing left to claim, which must not keep the program from starting.
    QVERIFY(Claimant().result == (names == 8 ? Claim::Held : Claim::HeldElsewhere));
    squatters.clear();
    // The name that came free is not taken for a free place.
    if (names < 8)
        QVERIFY(Claimant().result == Claim::HeldElsewhere);
}

void tst_InstanceLock::manyCallersDoNotFillIt()
{
    const InstanceLock lock(program);
    for (int i = 0; i < 5000; ++i) {
        QVERIFY(InstanceLock(program).isHeldElsewhere());
        QCoreApplication::processEvents();
    }
}

void tst_InstanceLock::anotherUsersDirectoryIsLeftAlone()
{
    if (geteuid() != 0)
        QSKIP("only root can make a directory another user's");
    useRuntimeDirectory(true);
    QCOMPARE(chown(QFile::encodeName(m_directory->path()).constData(), otherUser, otherUser), 0);
    const InstanceLock lock(program);
    QVERIFY(!lock.isHeldElsewhere());
    QVERIFY(QDir(m_directory->path()).isEmpty());
}

void tst_InstanceLock::aFileThatOthersCanOpenIsLeftAlone()
{
    useRuntimeDirectory(true);
    QFile file(m_directory->filePath(QString::fromLatin1(program) + QStringLiteral(".lock")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    QCOMPARE(flock(file.handle(), LOCK_EX | LOCK_NB), 0);
    QVERIFY(!InstanceLock(program).isHeldElsewhere());
}

void tst_InstanceLock::isNotInheritedByChildren()
{
    QFETCH(bool, runtimeDirectory);
    useRuntimeDirectory(runtimeDirectory);
    pid_t tool = -1;
    {
        const InstanceLock lock(program);
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
    QVERIFY(!InstanceLock(program).isHeldElsewhere());
    kill(tool, SIGKILL);
    waitpid(tool, nullptr, 0);
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
    const InstanceLock lock(program);
    const QFileInfoList files = QDir(m_directory->path()).entryInfoList(QDir::Files | QDir::Hidden);
    QCOMPARE(files.size(), 1);
    QCOMPARE(files.constFirst().fileName(), QString::fromLatin1(program) + QStringLiteral(".lock"));
    QCOMPARE(files.constFirst().size(), 0);
    QCOMPARE(files.constFirst().permissions() & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::ReadOwner | QFile::WriteOwner);
}

void tst_InstanceLock::leavesADirectoryAloneThatOthersCanWrite()
{
    useRuntimeDirectory(true);
    QVERIFY(QFile::setPermissions(
        m_directory->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::WriteOther));
    const InstanceLock lock(program);
    QVERIFY(!lock.isHeldElsewhere());
    QVERIFY(QDir(m_directory->path()).isEmpty());
    QVERIFY(InstanceLock(program).isHeldElsewhere());
}

void tst_InstanceLock::leavesALinkToAnotherPlaceAlone()
{
    useRuntimeDirectory(true);
    const QString elsewhere = m_directory->filePath(QStringLiteral("elsewhere"));
    QVERIFY(QFile::link(elsewhere,
                        m_directory->filePath(QString::fromLatin1(program) + QStringLiteral(".lock"))));
    const InstanceLock lock(program);
    QVERIFY(!lock.isHeldElsewhere());
    QVERIFY(!QFile::exists(elsewhere));
}

QTEST_GUILESS_MAIN(tst_InstanceLock)
#include "tst_instancelock.moc"
