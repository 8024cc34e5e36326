#include "framework/hostwindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QWidget>
#include <QWindow>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

} // namespace

HostWindow::HostWindow(quint32 id, QWidget *guest)
    : QObject(guest)
    , m_id(id)
    , m_guest(guest)
    , m_connection(xcb_connect(nullptr, nullptr))
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    // Watched before it is measured, so that no change of its size goes unseen.
    const quint32 watched =
        XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_change_window_attributes(m_connection, m_id, XCB_CW_EVENT_MASK, &watched);
    const auto geometry =
        owned(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, m_id), nullptr));
    const auto attributes = owned(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, m_id), nullptr));
    // A pixmap has a geometry, too.
    if (geometry && attributes)
        m_size = QSize(geometry->width, geometry->height);
}

HostWindow::~HostWindow()
{
    xcb_disconnect(m_connection);
}

void HostWindow::takeIn()
{
    m_events =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read);
    // By name, because Qt 5 and Qt 6 declare this signal differently.
    connect(m_events.get(), SIGNAL(activated(int)), this, SLOT(handleEvents()));

    m_guest->winId();
    m_guest->windowHandle()->setParent(QWindow::fromWinId(m_id));
    m_guest->windowHandle()->installEventFilter(this);
    m_guest->setGeometry(QRect(QPoint(), m_size));
    // The events that came with a reply don't wake the notifier.
    QMetaObject::invokeMethod(this, &HostWindow::handleEvents, Qt::QueuedConnection);
}

/// The host does not know that the guest wants its keyboard, so the guest takes it when it is clicked.
bool HostWindow::eventFilter(QObject *guestWindow, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress)
        focusGuest();
    return QObject::eventFilter(guestWindow, event);
}

void HostWindow::handleEvents()
{
    while (const auto event = owned(xcb_poll_for_event(m_connection))) {
        switch (event->response_type & 0x7f) {
        case XCB_CONFIGURE_NOTIFY: {
            const auto *change = reinterpret_cast<const xcb_configure_notify_event_t *>(event.get());
            if (change->window == m_id)
                m_guest->setGeometry(0, 0, change->width, change->height);
            break;
        }
        case XCB_MAP_NOTIFY:
            if (hasFocus())
                focusGuest();
            break;
        case XCB_FOCUS_IN: {
            const auto *focus = reinterpret_cast<const xcb_focus_in_event_t *>(event.get());
            if (focus->detail == XCB_NOTIFY_DETAIL_ANCESTOR || focus->detail == XCB_NOTIFY_DETAIL_INFERIOR
                || focus->detail == XCB_NOTIFY_DETAIL_NONLINEAR)
                focusGuest();
            break;
        }
        case XCB_DESTROY_NOTIFY:
            if (reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get())->window == m_id)
                QCoreApplication::exit();
            break;
        default:
            break;
        }
    }
}

/// Whether the keyboard is with the host or with a window around it.
bool HostWindow::hasFocus() const
{
    const auto focus =
        owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    quint32 window = m_id;
    while (focus && window != XCB_WINDOW_NONE) {
        if (focus->focus == window)
            return true;
        const auto tree =
            owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
        window = tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE);
    }
    return false;
}

void HostWindow::focusGuest()
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, static_cast<xcb_window_t>(m_guest->winId()),
                        XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}
