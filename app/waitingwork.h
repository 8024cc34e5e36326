#pragma once

#include <deque>
#include <functional>

class QProcess;

/// Work of the user interface that is left for the time in which the GUI thread would only wait for a
/// program. Its pieces are done in the order in which they were added, the last ones when the object goes. A
/// piece runs no command, as the commands keep their order, and no event loop. There is one such object at a
/// time.
class WaitingWork {
public:
    using Piece = std::function<void()>;

    WaitingWork();
    ~WaitingWork();
    WaitingWork(const WaitingWork &) = delete;
    WaitingWork &operator=(const WaitingWork &) = delete;

    void add(Piece piece);

    static bool isLeft();
    /// Does the next piece, if there is one.
    static void doNext();

private:
    std::deque<Piece> m_pieces;
    static WaitingWork *s_work;
};

/// QProcess::waitForFinished(), with waiting work done as long as there is any. A piece that has been begun
/// is brought to its end, whatever the limit in milliseconds.
bool waitForFinished(QProcess &process, int limit);
