#pragma once

#include <QImage>
#include <QProcess>
#include <QSize>
#include <QStringList>

#include <memory>

struct xcb_connection_t;

/// A virtual X server with a window manager, seen as another client sees it. Gone with this object.
class Desktop {
public:
    Desktop();
    ~Desktop();
    Q_DISABLE_COPY(Desktop)

    /// The server's display, ":99"; empty when the server did not start.
    QString display() const { return m_display; }

    /// The mapped top-level windows with the given title.
    QList<quint32> windows(const QString &title) const;

    /// Waits until exactly one such window is there; 0 when that takes too long.
    quint32 waitForWindow(const QString &title, int milliseconds = 15000) const;

    /// Waits until the window manager looks after the window, or no longer does. Returns whether it came to
    /// that.
    bool waitUntilManaged(quint32 window, bool isManaged, int milliseconds = 15000) const;

    /// The one child of a window; 0 when it has none or several.
    quint32 childOf(quint32 window) const;

    /// The window's size; invalid when there is no such window.
    QSize sizeOf(quint32 window) const;

    /// The window that gets the keyboard's input.
    quint32 focusWindow() const;

    /// A new pixmap, which has an id as a window has.
    quint32 createPixmap() const;

    /// The environment for a program on this desktop.
    QProcessEnvironment environment() const;

    /// What the window shows now.
    QImage picture(quint32 window) const;

    /// Asks the window manager to close the window, as its close button does.
    void closeByWindowManager(quint32 window) const;

    /// Presses and releases the key, by its X name, wherever the focus is.
    void pressKey(const QString &key) const;

private:
    void waitForWindowManager() const;
    QString windowTitle(quint32 window) const;
    QList<quint32> topLevelWindows() const;

    QProcess m_server;
    QProcess m_windowManager;
    QString m_display;
    xcb_connection_t *m_connection = nullptr;
    quint32 m_root = 0;
};
