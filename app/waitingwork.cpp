#include "app/waitingwork.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <utility>

WaitingWork *WaitingWork::s_work = nullptr;

WaitingWork::WaitingWork()
{
    Q_ASSERT(!s_work);
    s_work = this;
}

WaitingWork::~WaitingWork()
{
    finish();
    s_work = nullptr;
}

void WaitingWork::add(Piece piece)
{
    m_pieces.push_back(std::move(piece));
}

void WaitingWork::finish()
{
    while (doNext()) { }
}

bool WaitingWork::doNext()
{
    if (!s_work || s_work->m_pieces.empty())
        return false;
    const Piece piece = std::move(s_work->m_pieces.front());
    s_work->m_pieces.pop_front();
    piece();
    return true;
}

bool waitForFinished(QProcess &process, int limit)
{
    const QDeadlineTimer deadline(limit);
    while (!process.waitForFinished(0)) {
        if (process.state() == QProcess::NotRunning || !WaitingWork::doNext())
            return process.waitForFinished(static_cast<int>(deadline.remainingTime()));
    }
    return true;
}
