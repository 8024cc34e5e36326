#include "framework/hostwindow.h"
#include "tests/desktop/desktop.h"
#include "tests/desktop/host.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>

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
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
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
