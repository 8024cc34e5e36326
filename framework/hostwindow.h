#pragma once

#include <QObject>
#include <QSize>

#include <memory>

class QSocketNotifier;
class QWidget;
struct xcb_connection_t;

/// A window of another program that a widget of this one is shown in. The host need not know of it: this
/// object watches the host over a connection of its own to the X server.
class HostWindow : public QObject {
    Q_OBJECT

public:
    HostWindow(quint32 id, QWidget *guest);
    ~HostWindow() override;
    Q_DISABLE_COPY(HostWindow)

    /// Whether there is such a window on the X server of this program.
    bool exists() const { return m_size.isValid(); }

    /// Makes the guest a child of the window, as large as it, from now on until the window goes.
    void takeIn();

protected:
    bool eventFilter(QObject *guestWindow, QEvent *event) override;

private Q_SLOTS:
    void handleEvents();

private:
    bool hasFocus() const;
    void focusGuest();

    quint32 m_id;
    QWidget *m_guest;
    xcb_connection_t *m_connection;
    std::unique_ptr<QSocketNotifier> m_events;
    QSize m_size;
};
