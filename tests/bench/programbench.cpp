// Measures programs from outside, as an X client of the server of $DISPLAY, and prints rows of the table of
// scripts/bench:
//   programbench start NAME BAR COMMANDS SYSINFO
//       from its start to its first painted window, beside a bare dialog with four empty tabs and a C program
//       that does the same work. COMMANDS is how many shell commands and programs it has to run, as "19+4",
//       or "any".
//   programbench memory SYSINFO
//       its memory after the start, beside that dialog
//   programbench idle MINUTES SYSINFO
//       its processor time in a minute, beside that of the work of its ticks
//   programbench window NAME COMMAND...
//       the first painted window of any other program

#include "tests/bench/median.h"
#include "tests/bench/processortime.h"
#include "tests/bench/shownprogram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr int runs = 20;

/// What a program did to learn its facts, see workrecorder.c.
struct Work {
    QByteArray lines;
    QSize window; ///< of the program that did it

    auto shellCommands() const { return lines.count("shell\t"); }
    auto programs() const { return lines.count("run\t"); }
};

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void pause(double seconds)
{
    usleep(static_cast<useconds_t>(seconds * 1e6));
}

/// What the program does until its window is painted, or what it does in its first ticks after that.
Work recordWork(const QString &program, bool ofTicks)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("work"));
    const ShownProgram recorded(
        {program}, {QStringLiteral("LD_PRELOAD=" BENCH_WORKRECORDER), QStringLiteral("BENCH_WORK=") + file});
    Work work{contentOf(file), recorded.windowSize()};
    if (ofTicks) {
        // Every three seconds from a moment before the painting: one tick of each page.
        const auto start = work.lines.size();
        pause(4.5);
        work.lines = contentOf(file).mid(start);
    }
    if (work.lines.isEmpty())
        qFatal("no work was recorded");
    return work;
}

/// The C program with a list of work.
class PlainProgram {
public:
    explicit PlainProgram(const Work &work)
        : m_list(m_folder.filePath(QStringLiteral("work")))
    {
        QFile file(m_list);
        if (!file.open(QIODevice::WriteOnly) || file.write(work.lines) != work.lines.size())
            qFatal("the work can't be written down");
    }

    /// From the program's start to its end.
    double milliseconds() const
    {
        QElapsedTimer time;
        time.start();
        QProcess process;
        start(process, {m_list});
        finish(process);
        return static_cast<double>(time.nsecsElapsed()) / 1e6;
    }

    /// The processor time of so many rounds of the work, one at the end of each of so many seconds.
    double processorMilliseconds(int rounds, double seconds) const
    {
        const double before = childrenMilliseconds();
        QProcess process;
        start(process, {m_list, QStringLiteral("--rounds")});
        for (int round = 0; round < rounds; ++round) {
            pause(seconds);
            process.write("\n");
            if (!process.waitForBytesWritten(-1))
                qFatal("the plain program does not read");
        }
        finish(process);
        return childrenMilliseconds() - before;
    }

private:
    static void start(QProcess &process, const QStringList &arguments)
    {
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(QStringLiteral(BENCH_DOWORK), arguments);
    }

    static void finish(QProcess &process)
    {
        process.closeWriteChannel();
        if (!process.waitForFinished(-1))
            qFatal("the plain program does not run");
    }

    static double childrenMilliseconds()
    {
        rusage usage = {};
        getrusage(RUSAGE_CHILDREN, &usage);
        return ::processorMilliseconds(usage);
    }

    QTemporaryDir m_folder;
    QString m_list;
};

QStringList bareDialog(QSize size)
{
    return {QStringLiteral(BENCH_BAREDIALOG), QString::number(size.width()), QString::number(size.height())};
}

/// By turns, so that whatever else the machine does weighs on all.
void measureStart(const QString &name, const QString &bar, const QString &commands, const QString &program)
{
    const Work work = recordWork(program, false);
    const QString run = QStringLiteral("%1+%2").arg(work.shellCommands()).arg(work.programs());
    if (commands != QLatin1String("any") && commands != run)
        qFatal("%s commands were run, not %s", qPrintable(run), qPrintable(commands));
    const PlainProgram plain(work);
    std::vector<double> ours;
    std::vector<double> dialogs;
    std::vector<double> works;
    std::vector<double> ratios;
    for (int round = 0; round < runs; ++round) {
        ours.push_back(ShownProgram({program}).milliseconds());
        dialogs.push_back(ShownProgram(bareDialog(work.window)).milliseconds());
        works.push_back(plain.milliseconds());
        ratios.push_back(ours.back() / (dialogs.back() + works.back()));
    }
    const auto [low, high] = quartiles(ratios);
    std::printf(
        "| Start to first painted window, %s | %.0f ms | %.0f ms: dialog %.0f ms, %d shell commands and "
        "%d programs %.0f ms | %.2f (%.2f to %.2f) | %s |\n",
        qPrintable(name), median(ours), median(dialogs) + median(works), median(dialogs),
        int(work.shellCommands()), int(work.programs()), median(works), median(ratios), low, high,
        qPrintable(bar));
}

void measureMemory(const QString &program)
{
    const QSize window = ShownProgram({program}).windowSize();
    std::vector<double> ours;
    std::vector<double> dialogs;
    for (int run = 0; run < runs; ++run) {
        const auto mebibytes = [](const QStringList &command) {
            const ShownProgram shown(command);
            pause(0.3);
            return static_cast<double>(shown.proportionalSetSize()) / 1024;
        };
        ours.push_back(mebibytes({program}));
        dialogs.push_back(mebibytes(bareDialog(window)));
    }
    std::printf("| Memory (Pss) after the start | %.1f MiB | %.1f MiB: dialog | +%.1f MiB | +6 MiB |\n",
                median(ours), median(dialogs), median(ours) - median(dialogs));
}

void measureIdle(const QString &program, int minutes)
{
    constexpr int ticks = 20;
    const Work work = recordWork(program, true);
    const ShownProgram shown({program});
    // Every tick is followed by a round of the plain program a second and a half later: neither finds the
    // processor's caches as it left them.
    pause(1.5);
    double ours = 0;
    double baseline = 0;
    std::vector<double> ratios;
    for (int minute = 0; minute < minutes; ++minute) {
        const double before = shown.processorMilliseconds();
        const double plain = PlainProgram(work).processorMilliseconds(ticks, 3);
        const double taken = shown.processorMilliseconds() - before;
        ours += taken;
        baseline += plain;
        ratios.push_back(taken / plain);
    }
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf(
        "| Processor time in 60 s idle, %d ticks of each page | %.0f ms | %.0f ms: %d commands each tick | "
        "%.2f (%.2f to %.2f in %d minutes) | 1.10 |\n",
        ticks, ours / minutes, baseline / minutes, int(work.shellCommands() + work.programs()),
        ours / baseline, *least, *most, minutes);
}

void measureWindow(const QString &name, const QStringList &command)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run)
        times.push_back(ShownProgram(command).milliseconds());
    std::printf("| First painted window of %s | %.0f ms | | | |\n", qPrintable(name), median(times));
}

} // namespace

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const QString mode = arguments.value(0);
    if (mode == QLatin1String("start") && argc == 6)
        measureStart(arguments.at(1), arguments.at(2), arguments.at(3), arguments.at(4));
    else if (mode == QLatin1String("memory") && argc == 3)
        measureMemory(arguments.at(1));
    else if (mode == QLatin1String("idle") && argc == 4)
        measureIdle(arguments.at(2), arguments.at(1).toInt());
    else if (mode == QLatin1String("window") && argc > 3)
        measureWindow(arguments.at(1), arguments.mid(2));
    else
        qFatal("usage: see the head of programbench.cpp");
    return 0;
}
