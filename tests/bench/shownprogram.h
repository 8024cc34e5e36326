#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <sys/types.h>

struct xcb_connection_t;

/// A program on the X server of $DISPLAY, from its start until this object goes; then it is killed. No other
/// program may open windows meanwhile, and no copy may run of a program that ends when there is one.
class ShownProgram {
public:
    /// Starts the program and waits until its first top-level window is painted all over, as another X client
    /// sees it. Ends the process when that takes over a minute.
    ShownProgram(const QStringList &command, const QStringList &environment = {});
    ~ShownProgram();
    Q_DISABLE_COPY(ShownProgram)

    /// From the moment before the program was started to the painted window.
    double milliseconds() const { return m_milliseconds; }
    QSize windowSize() const { return m_size; }

    /// The memory that is the program's own plus its share of what it shares, in KiB.
    qint64 proportionalSetSize() const;

    /// The processor time that it and its children that ended have taken since its start, user and system,
    /// with some hundredths of a second more or less.
    double processorMilliseconds() const;

private:
    void waitForPainting(xcb_connection_t *connection);

    double m_milliseconds = 0;
    QSize m_size;
    pid_t m_process = -1;
};
