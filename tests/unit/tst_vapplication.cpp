#include "framework/instancelock.h"
#include "framework/vapplication.h"
#include "tests/unit/fontreading.h"

#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace FontReading;

namespace {

/// The test's own; the application takes it from the executable.
const QByteArray program = "tst_vapplication";

/// Qt allows one application object at a time, so each test makes its own.
class Application {
public:
    VApplication *operator->() { return &m_application; }

private:
    int m_count = 1;
    QByteArray m_name = program;
    std::array<char *, 2> m_arguments{m_name.data(), nullptr};
    VApplication m_application{m_count, m_arguments.data(), true, true, true};
};

/// A process that runs the program already, until this object goes.
class Holder {
public:
    Holder()
        : m_process(fork())
    {
        if (m_process == 0) {
            const InstanceLock lock(program);
            pause();
            _exit(0);
        }
    }
    ~Holder()
    {
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
    }
    Q_DISABLE_COPY(Holder)

private:
    pid_t m_process;
};

} // namespace

class tst_VApplication : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void fontsAreReadWhileItIsMade();
    void fontsAreReadBeforeItGoesOn();
    void aSecondCopyReadsNoFonts();

private:
    QTemporaryDir m_runtimeDirectory;
};

void tst_VApplication::init()
{
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtimeDirectory.path()));
    qunsetenv("DESKTOP_STARTUP_ID");
    // Another build may run its tests at the same time.
    QTRY_VERIFY_WITH_TIMEOUT(!InstanceLock::isHeld(program), 20000);
    reset();
}

void tst_VApplication::fontsAreReadWhileItIsMade()
{
    mayEnd = false;
    {
        const Application application;
        QTRY_COMPARE(begun, 1);
        QCOMPARE(ended, 0);
        QVERIFY(!hadApplication);
        mayEnd = true;
    }
    QCOMPARE(ended, 1);
}

void tst_VApplication::fontsAreReadBeforeItGoesOn()
{
    mayEnd = false;
    Application application;
    std::thread other = endSoon();
    application->exitIfRunning();
    const int endedThen = ended;
    other.join();
    QCOMPARE(endedThen, 1);
    QCOMPARE(begun, 1);
}

void tst_VApplication::aSecondCopyReadsNoFonts()
{
    const Holder holder;
    QTRY_VERIFY(InstanceLock::isHeld(program));
    {
        const Application application;
    }
    QCOMPARE(begun, 0);
}

QTEST_APPLESS_MAIN(tst_VApplication)
#include "tst_vapplication.moc"
