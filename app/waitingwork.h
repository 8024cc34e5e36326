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

    /// Leaves all pieces for later as long as it exists: for commands that end sooner than any piece would.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause &) = delete;
        Pause &operator=(const Pause &) = delete;
    };

    WaitingWork();
    ~WaitingWork();
    WaitingWork(const WaitingWork &) = delete;
    WaitingWork &operator=(const WaitingWork &) = delete;

    /// What the piece uses has to be there until the work is done.
    void add(Piece piece);

    /// Adds the piece to the work that there is; without a WaitingWork it is done before this returns.
    static void addOrDo(Piece piece);

    /// Whether there is a piece that may be done.
    static bool isLeft();
    /// Does the next piece, if there is one that may be done.
    static void doNext();
    /// Does all pieces that may be done.
    static void doAll();

private:
    std::deque<Piece> m_pieces;
    static WaitingWork *s_work;
    static bool s_isPaused;
};

/// QProcess::waitForFinished(), with waiting work done as long as there is any. A piece that has been begun
/// is brought to its end, whatever the limit in milliseconds.
bool waitForFinished(QProcess &process, int limit);
