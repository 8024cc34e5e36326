#include "app/waitingwork.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <utility>

WaitingWork *WaitingWork::s_work = nullptr;
bool WaitingWork::s_isPaused = false;

WaitingWork::Pause::Pause()
{
    s_isPaused = true;
}

WaitingWork::Pause::~Pause()
{
    s_isPaused = false;
}

WaitingWork::WaitingWork()
{
    Q_ASSERT(!s_work);
    s_work = this;
}

WaitingWork::~WaitingWork()
{
    Q_ASSERT(!s_isPaused);
    doAll();
    s_work = nullptr;
}

void WaitingWork::add(Piece piece)
{
    m_pieces.push_back(std::move(piece));
}

void WaitingWork::addOrDo(Piece piece)
{
    if (s_work)
        s_work->add(std::move(piece));
    else
        piece();
}

bool WaitingWork::isLeft()
{
    return s_work && !s_isPaused && !s_work->m_pieces.empty();
}

void WaitingWork::doNext()
{
    if (!isLeft())
        return;
    const Piece piece = std::move(s_work->m_pieces.front());
    s_work->m_pieces.pop_front();
    piece();
}

void WaitingWork::doAll()
{
    while (isLeft())
        doNext();
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
