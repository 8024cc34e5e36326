#include "framework/closerequestfilter.h"

#include <QApplication>
#include <QWidget>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace {

quint32 atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : 0U;
}

void dismissDialogsAndClose(QWidget *window)
{
    while (QWidget *dialog = QApplication::activeModalWidget()) {
        if (!dialog->close())
            return;
    }
    window->close();
}

} // namespace

CloseRequestFilter::CloseRequestFilter()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    m_protocols = atom(connection, "WM_PROTOCOLS");
    m_deleteWindow = atom(connection, "WM_DELETE_WINDOW");
    xcb_disconnect(connection);
}

bool CloseRequestFilter::nativeEventFilter(const QByteArray &eventType, void *message, Result * /*result*/)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_client_message_event_t *>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE || event->type != m_protocols
        || event->data.data32[0] != m_deleteWindow)
        return false;
    QWidget *window = QWidget::find(event->window);
    const QWidget *modal = QApplication::activeModalWidget();
    if (!window || !modal || modal->window() == window)
        return false;
    dismissDialogsAndClose(window);
    return true;
}
