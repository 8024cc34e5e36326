// logbench STEPTOOL [ROUNDS]: how long the Net Tools page takes to show 100,000 lines (10 MB) of a tool, and
// how long a bare QTextEdit takes to show the same reads of the same tool. Both are shown and run by the
// event loop, in turns; the medians and their ratio are printed. No test, because times differ from machine
// to machine.

#include "app/asciitext.h"
#include "tests/unit/nettoolsuser.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QLineEdit>
#include <QProcess>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

const QString steps = QStringLiteral("flood:100000:100");
constexpr int lines = 100000;
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

double pageSeconds(const QString &tool, qint64 *pause, int *reads)
{
    pageNetTools page(nullptr);
    SearchPath path;
    path.link("ping", tool);
    const NetToolsUser user(page);
    page.resize(700, 500);
    page.show();
    QCoreApplication::processEvents();
    QObject::connect(user.log()->document(), &QTextDocument::contentsChange, &page, [reads] { ++*reads; });
    user.lineEdit("Target Host:")->setText(steps);
    const LongestPause longest;
    QElapsedTimer timer;
    timer.start();
    user.pressProcessButton();
    while (user.processButton()->text() != QLatin1String("Start Process"))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    *pause = std::max(*pause, longest.milliseconds());
    checkLines(*user.log(), lines + noticeLines);
    return seconds;
}

double bareSeconds(const QString &program, int *reads)
{
    QTextEdit log;
    log.setReadOnly(true);
    log.setUndoRedoEnabled(false);
    log.setLineWrapMode(QTextEdit::NoWrap);
    log.resize(680, 260);
    log.show();
    QCoreApplication::processEvents();
    QProcess tool;
    QObject::connect(&tool, &QProcess::readyReadStandardOutput, &log, [&] {
        log.insertPlainText(asciiText(tool.readAllStandardOutput()));
        log.ensureCursorVisible();
        ++*reads;
    });
    const LongestPause longest;
    QElapsedTimer timer;
    timer.start();
    tool.start(program, {steps});
    do
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    while (tool.state() != QProcess::NotRunning);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    checkLines(log, lines + 1);
    return seconds;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        qFatal("usage: logbench STEPTOOL [ROUNDS]");
    const QString tool = QFileInfo(arguments.at(1)).absoluteFilePath();
    const int rounds = arguments.size() > 2 ? arguments.at(2).toInt() : 5;

    std::vector<double> page;
    std::vector<double> bare;
    qint64 pause = 0;
    int pageReads = 0;
    int bareReads = 0;
    for (int round = 0; round < rounds; ++round) {
        page.push_back(pageSeconds(tool, &pause, &pageReads));
        bare.push_back(bareSeconds(tool, &bareReads));
        std::printf("page %.3f s, bare %.3f s\n", page.back(), bare.back());
    }
    // The two notices of each round are no reads.
    std::printf("medians of %d rounds: page %.3f s, bare %.3f s, ratio %.2f\n", rounds, median(page),
                median(bare), median(page) / median(bare));
    std::printf("reads a round: page %d, bare %d; longest pause of the page's event loop %lld ms\n",
                pageReads / rounds - 2, bareReads / rounds, static_cast<long long>(pause));
    return 0;
}
