#include "framework/hostwindow.h"
#include "tests/desktop/desktop.h"
#include "tests/desktop/host.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <utility>

#include <sys/ioctl.h>
#include <xcb/xcb.h>

namespace {

/// What happens before the next reply on a window's attributes is read.
std::function<void(xcb_connection_t *)> beforeReply;

int bytesToRead(xcb_connection_t *connection)
{
    int bytes = 0;
    ioctl(xcb_get_file_descriptor(connection), FIONREAD, &bytes);
    return bytes;
}

/// Whether the event loop, which would run for ever, ends because the program does.
bool programEnds()
{
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    limit.start(5000);
    return QCoreApplication::exec() == 0;
}

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
xcb_get_window_attributes_reply_t *__real_xcb_get_window_attributes_reply(
    xcb_connection_t *connection, xcb_get_window_attributes_cookie_t cookie, xcb_generic_error_t **error);

xcb_get_window_attributes_reply_t *
__wrap_xcb_get_window_attributes_reply(xcb_connection_t *connection,
                                       xcb_get_window_attributes_cookie_t cookie, xcb_generic_error_t **error)
{
    if (beforeReply)
        std::exchange(beforeReply, nullptr)(connection);
    return __real_xcb_get_window_attributes_reply(connection, cookie, error);
}
// NOLINTEND(bugprone-reserved-identifier)
}

/// A widget of this program in a window of another one.
class tst_HostWindow : public QObject {
    Q_OBJECT

public:
    explicit tst_HostWindow(const Desktop &desktop)
        : m_desktop(desktop)
    {
    }

private Q_SLOTS:
    void followsAResizeBeforeItIsTakenIn();
    void endsTheProgramWhenTheHostGoesBeforeItIsTakenIn();
    void endsTheProgramWhenTheHostGoesWhileItIsLookedAt();

private:
    const Desktop &m_desktop;
};

void tst_HostWindow::followsAResizeBeforeItIsTakenIn()
{
    Host host(m_desktop, QStringLiteral(XCB_HOST));
    QVERIFY(host.window != 0);
    QWidget guest;
    HostWindow window(host.window, &guest);
    QVERIFY(window.exists());
    host.resize(640, 480);
    QTRY_COMPARE(m_desktop.sizeOf(host.window), QSize(640, 480));
    window.takeIn();
    guest.show();
    QTRY_COMPARE(guest.size(), QSize(640, 480));
    QTRY_COMPARE(m_desktop.sizeOf(m_desktop.childOf(host.window)), QSize(640, 480));
}

void tst_HostWindow::endsTheProgramWhenTheHostGoesBeforeItIsTakenIn()
{
    Host host(m_desktop, QStringLiteral(XCB_HOST));
    QVERIFY(host.window != 0);
    QWidget guest;
    HostWindow window(host.window, &guest);
    QVERIFY(window.exists());
    host.end();
    window.takeIn();
    QVERIFY(programEnds());
}

void tst_HostWindow::endsTheProgramWhenTheHostGoesWhileItIsLookedAt()
{
    Host host(m_desktop, QStringLiteral(XCB_HOST));
    QVERIFY(host.window != 0);
    QWidget guest;
    beforeReply = [&host](xcb_connection_t *connection) {
        xcb_flush(connection);
        QTRY_VERIFY(bytesToRead(connection) > 0);
        // The event of the end is read together with the reply.
        const int reply = bytesToRead(connection);
        host.end();
        QTRY_VERIFY(bytesToRead(connection) > reply);
    };
    HostWindow window(host.window, &guest);
    QVERIFY(window.exists());
    window.takeIn();
    QVERIFY(programEnds());
}

int main(int argc, char *argv[])
{
    const Desktop desktop;
    if (desktop.display().isEmpty())
        return 1;
    qputenv("DISPLAY", desktop.display().toLatin1());
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argc, argv);
    tst_HostWindow test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hostwindow.moc"
