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
    while (isLeft())
        doNext();
    s_work = nullptr;
}

void WaitingWork::add(Piece piece)
{
    m_pieces.push_back(std::move(piece));
}

bool WaitingWork::isLeft()
{
    return s_work && !s_work->m_pieces.empty();
}

void WaitingWork::doNext()
{
    if (!isLeft())
        return;
    const Piece piece = std::move(s_work->m_pieces.front());
    s_work->m_pieces.pop_front();
    piece();
}

bool waitForFinished(QProcess &process, int limit)
{
    const QDeadlineTimer deadline(limit);
    while (WaitingWork::isLeft() && process.state() != QProcess::NotRunning) {
        if (process.waitForFinished(0))
            return true;
        WaitingWork::doNext();
    }
    return process.waitForFinished(static_cast<int>(deadline.remainingTime()));
}
