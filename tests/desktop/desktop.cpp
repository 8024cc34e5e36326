#include "tests/desktop/desktop.h"

#include <QElapsedTimer>
#include <QThread>

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> owned(Reply *reply)
{
    return {reply, &std::free};
}

xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(name)), name);
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray property(xcb_connection_t *connection, quint32 window, xcb_atom_t name)
{
    const auto cookie = xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 4096);
    const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

void stop(QProcess &process)
{
    process.terminate();
    if (!process.waitForFinished(5000)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace

Desktop::Desktop()
{
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                    QStringLiteral("tcp"), QStringLiteral("-noreset")});
    while (!m_server.canReadLine() && m_server.waitForReadyRead(15000)) { }
    const QString number = QString::fromLatin1(m_server.readLine()).trimmed();
    if (number.isEmpty())
        return;
    m_connection = xcb_connect(qPrintable(QLatin1Char(':') + number), nullptr);
    if (xcb_connection_has_error(m_connection))
        return;
    m_display = QLatin1Char(':') + number;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;

    m_windowManager.setProcessEnvironment(environment());
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    waitForWindowManager();
}

/// A window manager that starts says early that it is there, and may yet lose the windows that are mapped
/// until it works. It is waited for with a window that is mapped until the window manager takes it.
void Desktop::waitForWindowManager() const
{
    const xcb_window_t probe = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, probe, m_root, 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    QElapsedTimer time;
    time.start();
    bool isManaged = false;
    while (!isManaged && time.elapsed() < 15000) {
        xcb_unmap_window(m_connection, probe);
        xcb_map_window(m_connection, probe);
        isManaged = waitUntilManaged(probe, true, 200);
    }
    if (!isManaged)
        qWarning("The window manager manages no window");
    xcb_destroy_window(m_connection, probe);
    waitUntilManaged(probe, false);
}

Desktop::~Desktop()
{
    stop(m_windowManager);
    if (m_connection)
        xcb_disconnect(m_connection);
    stop(m_server);
}

QString Desktop::windowTitle(quint32 window) const
{
    return QString::fromUtf8(property(m_connection, window, atom(m_connection, "_NET_WM_NAME")));
}

/// In the order in which the window manager took them.
QList<quint32> Desktop::topLevelWindows() const
{
    const QByteArray list = property(m_connection, m_root, atom(m_connection, "_NET_CLIENT_LIST"));
    QList<quint32> result;
    for (int i = 0; i + 4 <= list.size(); i += 4) {
        quint32 window = 0;
        std::memcpy(&window, list.constData() + i, sizeof(window));
        result.append(window);
    }
    return result;
}

QList<quint32> Desktop::windows(const QString &title) const
{
    QList<quint32> result;
    const QList<quint32> all = topLevelWindows();
    for (const quint32 window : all) {
        if (windowTitle(window) == title)
            result.append(window);
    }
    return result;
}

quint32 Desktop::waitForWindow(const QString &title, int milliseconds) const
{
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < milliseconds) {
        const QList<quint32> found = windows(title);
        if (found.size() == 1)
            return found.constFirst();
        QThread::msleep(20);
    }
    return 0;
}

bool Desktop::waitUntilManaged(quint32 window, bool isManaged, int milliseconds) const
{
    QElapsedTimer time;
    time.start();
    while (topLevelWindows().contains(window) != isManaged) {
        if (time.elapsed() >= milliseconds)
            return false;
        QThread::msleep(20);
    }
    return true;
}

quint32 Desktop::childOf(quint32 window) const
{
    const auto tree =
        owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    return tree && tree->children_len == 1 ? *xcb_query_tree_children(tree.get()) : 0;
}

QSize Desktop::sizeOf(quint32 window) const
{
    const auto geometry =
        owned(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
    return geometry ? QSize(geometry->width, geometry->height) : QSize();
}

quint32 Desktop::focusWindow() const
{
    const auto focus =
        owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return focus ? focus->focus : 0;
}

quint32 Desktop::createPixmap() const
{
    const quint32 pixmap = xcb_generate_id(m_connection);
    xcb_create_pixmap(m_connection, 24, pixmap, m_root, 10, 10);
    xcb_flush(m_connection);
    return pixmap;
}

QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

QImage Desktop::picture(quint32 window) const
{
    const auto geometry =
        owned(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
    if (!geometry)
        return {};
    const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, geometry->width,
                                      geometry->height, ~0U);
    const auto image = owned(xcb_get_image_reply(m_connection, cookie, nullptr));
    if (!image)
        return {};
    return QImage(xcb_get_image_data(image.get()), geometry->width, geometry->height, QImage::Format_RGB32)
        .copy();
}

void Desktop::closeByWindowManager(quint32 window) const
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(m_connection, "_NET_CLOSE_WINDOW");
    event.data.data32[1] = 2; // as a pager does
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(m_connection);
}

void Desktop::pressKey(const QString &key) const
{
    QProcess xdotool;
    xdotool.setProcessEnvironment(environment());
    xdotool.start(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
    xdotool.waitForFinished();
}
