// tickbench DEVICE: how long a tick of each page holds the event loop, without and with the arranging and
// painting that follow, beside a C program that does the same work. To be run with workrecorder preloaded and
// a file for it named by BENCH_WORK; DEVICE is what the rows call the machine. Prints rows of the table of
// scripts/bench. tickbench --growth PACKAGES...: for each number of packages a line with the milliseconds of
// a tick of the "Software Information" page, those of the C program, and the page's memory in KiB.

#include "pages/network/pagenetwork.h"
#include "pages/system/pagesystem.h"
#include "resources/qss/stylesheet.h"
#include "tests/bench/median.h"
#include "tests/device/softwarepage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <dlfcn.h>
#include <sched.h>

#include <cstdio>
#include <vector>

using namespace SoftwarePage;

namespace {

constexpr int runs = 40;

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString recordFile()
{
    return qEnvironmentVariable("BENCH_WORK");
}

/// Whether the work is written down from now on: in a measured tick that would weigh more than what the
/// General page does.
void recordWork(bool isWanted)
{
    const auto recorder = reinterpret_cast<void (*)(int)>(dlsym(RTLD_DEFAULT, "record_work"));
    if (!recorder)
        qFatal("workrecorder is not preloaded");
    recorder(isWanted ? 1 : 0);
}

/// The C program that does the work of one tick whenever it is asked.
class PlainProgram {
public:
    explicit PlainProgram(const QByteArray &work)
    {
        QFile file(recordFile() + QStringLiteral(".tick"));
        if (!file.open(QIODevice::WriteOnly) || file.write(work) != work.size())
            qFatal("the work can't be written down");
        file.close();
        m_process.start(QStringLiteral(BENCH_DOWORK), {file.fileName(), QStringLiteral("--rounds")});
    }
    ~PlainProgram()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY(PlainProgram)

    double milliseconds()
    {
        m_process.write("\n");
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(60000))
                qFatal("the plain program does not answer");
        }
        return m_process.readLine().trimmed().toDouble() / 1e6;
    }

private:
    QProcess m_process;
};

/// As long as it exists, this thread and the programs that it starts keep to one processor core. Those of a
/// virtual machine differ by more than a tick without commands takes beside the plain program.
class OneCore {
public:
    OneCore()
    {
        const int core = sched_getcpu();
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(static_cast<size_t>(core), &one);
        if (core < 0 || sched_getaffinity(0, sizeof m_usual, &m_usual) != 0
            || sched_setaffinity(0, sizeof one, &one) != 0)
            qFatal("no core to keep to");
    }
    ~OneCore() { sched_setaffinity(0, sizeof m_usual, &m_usual); }
    Q_DISABLE_COPY(OneCore)

private:
    cpu_set_t m_usual = {};
};

struct Milliseconds {
    double tick = 0;
    double painted = 0; ///< the tick and the arranging and painting that it leaves to the event loop
};

Milliseconds measureTick(QWidget &page)
{
    Milliseconds result;
    QElapsedTimer time;
    time.start();
    tick(page);
    result.tick = static_cast<double>(time.nsecsElapsed()) / 1e6;
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    result.painted = static_cast<double>(time.nsecsElapsed()) / 1e6;
    return result;
}

struct Result {
    double tick = 0;
    double painted = 0;
    double plain = 0;
    int commands = 0;
};

/// Measures both by turns, so that whatever else the machine does weighs on both.
Result measure(QWidget &page)
{
    page.resize(700, 600);
    page.show();
    if (!QTest::qWaitForWindowExposed(&page))
        qFatal("the page is not shown");
    for (int warming = 0; warming < 3; ++warming)
        measureTick(page);
    const auto before = contentOf(recordFile()).size();
    recordWork(true);
    tick(page);
    recordWork(false);
    const QByteArray work = contentOf(recordFile()).mid(before);
    PlainProgram program(work);
    program.milliseconds();

    std::vector<double> ticks;
    std::vector<double> painted;
    std::vector<double> plain;
    for (int run = 0; run < runs; ++run) {
        const Milliseconds time = measureTick(page);
        ticks.push_back(time.tick);
        painted.push_back(time.painted);
        plain.push_back(program.milliseconds());
    }
    return {median(ticks), median(painted), median(plain), int(work.count("shell\t") + work.count("run\t"))};
}

QString shownTime(double milliseconds)
{
    return milliseconds < 0.1 ? QStringLiteral("%1 \u00b5s").arg(milliseconds * 1000, 0, 'f', 0)
                              : QStringLiteral("%1 ms").arg(milliseconds, 0, 'f', 2);
}

void printRow(const QString &name, const Result &result)
{
    std::printf("| Tick, %s | %s, arranged and painted %s | %s: %d commands | %.2f, painted %.2f | 1.10 |\n",
                qPrintable(name), qUtf8Printable(shownTime(result.tick)),
                qUtf8Printable(shownTime(result.painted)), qUtf8Printable(shownTime(result.plain)),
                result.commands, result.tick / result.plain, result.painted / result.plain);
}

qint64 residentKibibytes()
{
    const QByteArray status = contentOf(QStringLiteral("/proc/self/status"));
    return status.mid(status.indexOf("VmRSS:") + 6).trimmed().split(' ').constFirst().toLongLong();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    recordWork(false);
    application.setStyleSheet(applicationStyleSheet());
    if (QCoreApplication::arguments().value(1) == QLatin1String("--growth")) {
        pageSoftware page(nullptr);
        const Result result = measure(page);
        std::printf("%d %.3f %.3f %lld\n", modelOf(page, mainTitle)->rowCount(), result.painted, result.plain,
                    static_cast<long long>(residentKibibytes()));
        return 0;
    }
    const QString device = QCoreApplication::arguments().value(1);
    {
        pageSystem page(nullptr);
        const OneCore oneCore;
        printRow(QStringLiteral("General, %1").arg(device), measure(page));
    }
    {
        pageNetwork page(nullptr);
        printRow(QStringLiteral("Network, %1").arg(device), measure(page));
    }
    pageSoftware page(nullptr);
    const int packages = modelOf(page, mainTitle)->rowCount();
    printRow(QStringLiteral("Software Information, %1, %2 packages").arg(device).arg(packages),
             measure(page));
}
