#pragma once

#include "tests/desktop/desktop.h"

#include <QProcess>

/// A window of another program. It is there when this object is: a request to resize a window can get lost
/// while the window manager takes it.
class Host : public QProcess {
public:
    Host(const Desktop &desktop, const QString &program)
        : m_desktop(desktop)
    {
        setProcessEnvironment(desktop.environment());
        start(program, {});
        while (!canReadLine() && waitForReadyRead(10000)) { }
        window = QString::fromLatin1(readLine()).trimmed().toUInt();
        if (!m_desktop.waitUntilManaged(window, true))
            qWarning("The window manager did not take the window %u", window);
    }
    ~Host() override { end(); }
    Q_DISABLE_COPY(Host)

    void resize(int width, int height)
    {
        write(QStringLiteral("resize %1 %2\n").arg(width).arg(height).toLatin1());
    }

    /// Returns when the window manager has let go of the window: the next host's window has the same id, and
    /// a window manager that is late gives it this one's size.
    void end()
    {
        closeWriteChannel();
        waitForFinished();
        if (!m_desktop.waitUntilManaged(window, false))
            qWarning("The window manager did not let go of the window %u", window);
    }

    quint32 window = 0;

private:
    const Desktop &m_desktop;
};
