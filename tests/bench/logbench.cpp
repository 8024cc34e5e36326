// logbench STEPTOOL [ROUNDS]: how long the Net Tools page takes to show 100,000 lines (10 MB) of a tool, and
// how long a bare QTextEdit takes to show the same reads of the same tool. Both are shown and run by the
// event loop, in turns; a row of the table of scripts/bench is printed. Ends with 1 when the page takes more
// than 1.2 times as long or got its output in far fewer or more pieces.
// logbench STEPTOOL --growth MEGABYTES: a line with the size, the seconds of both and the memory of this
// program with the page's full log in KiB.

#include "app/asciitext.h"
#include "tests/bench/median.h"
#include "tests/unit/nettoolsuser.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QProcess>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int linesOfMegabyte = 10000;
// An empty line, the notice of the start and an empty line; the notice of the end and the line behind it.
constexpr int noticeLines = 5;

/// The longest time that the event loop did not come back while this lived.
class LongestPause : public QObject {
public:
    LongestPause()
    {
        m_since.start();
        startTimer(0);
    }
    qint64 milliseconds() const { return m_longest; }

protected:
    void timerEvent(QTimerEvent * /*event*/) override { m_longest = std::max(m_longest, m_since.restart()); }

private:
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

void checkLines(const QTextEdit &log, int expected)
{
    if (log.document()->blockCount() != expected)
        qFatal("%d lines are shown, not %d", log.document()->blockCount(), expected);
}

QString stepsOf(int lines)
{
    return QStringLiteral("flood:%1:100").arg(lines);
}

/// The memory of this program, in KiB.
qint64 residentKibibytes()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray status = file.readAll();
    return status.mid(status.indexOf("VmRSS:") + 6).trimmed().split(' ').constFirst().toLongLong();
}

struct Shown {
    double seconds = 0;
    int reads = 0;
    qint64 longestPause = 0; ///< in milliseconds
    qint64 memory = 0; ///< in KiB, with the text
};

Shown showOnPage(const QString &tool, int lines)
{
    Shown result;
    pageNetTools page(nullptr);
    SearchPath path;
    path.link("ping", tool);
    const NetToolsUser user(page);
    page.resize(700, 500);
    page.show();
    QCoreApplication::processEvents();
    QObject::connect(user.log()->document(), &QTextDocument::contentsChange, &page, [&] { ++result.reads; });
    user.lineEdit("Target Host:")->setText(stepsOf(lines));
    const LongestPause longest;
    QElapsedTimer timer;
    timer.start();
    user.pressProcessButton();
    while (user.processButton()->text() != QLatin1String("Start Process"))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    result.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    result.longestPause = longest.milliseconds();
    result.memory = residentKibibytes();
    // The two notices are no reads.
    result.reads -= 2;
    checkLines(*user.log(), lines + noticeLines);
    return result;
}

/// A log of the same looks and size, and nothing else.
Shown showInTextEdit(const QString &tool, int lines)
{
    pageNetTools page(nullptr);
    page.resize(700, 500);
    page.show();
    QCoreApplication::processEvents();
    const QTextEdit *log = NetToolsUser(page).log();
    QTextEdit bare;
    bare.setFont(log->font());
    bare.setFontWeight(QFont::Light);
    bare.setReadOnly(true);
    bare.setUndoRedoEnabled(false);
    bare.setLineWrapMode(QTextEdit::NoWrap);
    bare.resize(log->size());
    page.hide();
    bare.show();
    QCoreApplication::processEvents();

    Shown result;
    QProcess process;
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &bare, [&] {
        bare.insertPlainText(asciiText(process.readAllStandardOutput()));
        bare.ensureCursorVisible();
        ++result.reads;
    });
    QElapsedTimer timer;
    timer.start();
    process.start(tool, {stepsOf(lines)});
    do
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    while (process.state() != QProcess::NotRunning);
    result.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    checkLines(bare, lines + 1);
    return result;
}

/// By turns, so that whatever else the machine does weighs on both.
int compare(const QString &tool, int rounds)
{
    constexpr int lines = 10 * linesOfMegabyte;
    std::vector<double> page;
    std::vector<double> bare;
    std::vector<double> pageReads;
    std::vector<double> bareReads;
    qint64 longestPause = 0;
    for (int round = 0; round < rounds; ++round) {
        const Shown ours = showOnPage(tool, lines);
        const Shown theirs = showInTextEdit(tool, lines);
        page.push_back(ours.seconds);
        pageReads.push_back(ours.reads);
        bare.push_back(theirs.seconds);
        bareReads.push_back(theirs.reads);
        longestPause = std::max(longestPause, ours.longestPause);
    }
    const double ratio = median(page) / median(bare);
    std::printf(
        "| Log, 100,000 lines (10 MB) of a tool, to shown | %.2f s: %.0f reads, longest pause of the event "
        "loop %lld ms | %.2f s: QTextEdit, %.0f reads | %.2f | 1.10 |\n",
        median(page), median(pageReads), static_cast<long long>(longestPause), median(bare),
        median(bareReads), ratio);
    const double difference = median(pageReads) / median(bareReads);
    return ratio > 1.2 || difference > 2 || difference < 0.5 ? 1 : 0;
}

int grow(const QString &tool, const QString &megabytes)
{
    const int lines = megabytes.toInt() * linesOfMegabyte;
    const Shown ours = showOnPage(tool, lines);
    const Shown theirs = showInTextEdit(tool, lines);
    std::printf("%s %.3f %.3f %lld\n", qPrintable(megabytes), ours.seconds, theirs.seconds,
                static_cast<long long>(ours.memory));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        qFatal("usage: see the head of logbench.cpp");
    const QString tool = QFileInfo(arguments.at(1)).absoluteFilePath();
    if (arguments.value(2) == QLatin1String("--growth"))
        return grow(tool, arguments.value(3));
    return compare(tool, arguments.size() > 2 ? arguments.at(2).toInt() : 5);
}
