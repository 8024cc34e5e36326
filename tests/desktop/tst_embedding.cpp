#include "tests/desktop/desktop.h"
#include "tests/desktop/host.h"
#include "tests/desktop/program.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

const QString title = QStringLiteral("About this thin client");

} // namespace

/// "--embed": the dialog in a window of a program that knows nothing of it.
class tst_Embedding : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void fillsTheWindowAndFollowsItsSize_data();
    void fillsTheWindowAndFollowsItsSize();
    void takesTheKeyboard_data();
    void takesTheKeyboard();
    void endsWhenTheHostIsGone_data();
    void endsWhenTheHostIsGone();
    void endsWithOneWithoutAWindow_data();
    void endsWithOneWithoutAWindow();
    void endsWithOneForAPixmap();

private:
    quint32 waitForGuest(const Host &host) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<QTemporaryDir> m_runtimeDirectory;
};

void tst_Embedding::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(!m_desktop->display().isEmpty());
    if (qEnvironmentVariableIsSet("SYSINFO_REQUIRE_DEVICES"))
        QVERIFY2(*QT_WIDGET_HOST, "Qt " OTHER_QT " is not installed");
}

void tst_Embedding::init()
{
    m_runtimeDirectory = std::make_unique<QTemporaryDir>();
}

quint32 tst_Embedding::waitForGuest(const Host &host) const
{
    for (int i = 0; i < 500 && m_desktop->childOf(host.window) == 0; ++i)
        QTest::qWait(20);
    return m_desktop->childOf(host.window);
}

void tst_Embedding::fillsTheWindowAndFollowsItsSize_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("base");
    QTest::newRow("decimal id") << QStringLiteral(XCB_HOST) << 10;
    QTest::newRow("hexadecimal id") << QStringLiteral(XCB_HOST) << 16;
    QTest::newRow("host of the other Qt version") << QStringLiteral(QT_WIDGET_HOST) << 10;
}

void tst_Embedding::fillsTheWindowAndFollowsItsSize()
{
    QFETCH(QString, program);
    QFETCH(int, base);
    if (program.isEmpty())
        QSKIP("Qt " OTHER_QT " is not installed");
    Host host(*m_desktop, program);
    QVERIFY(host.window != 0);
    Program sysinfo(*m_desktop, m_runtimeDirectory->path());
    sysinfo.launch(QStringLiteral("--embed ") + (base == 16 ? QStringLiteral("0x") : QString())
                   + QString::number(host.window, base));
    const quint32 guest = waitForGuest(host);
    QVERIFY(guest != 0);
    QTRY_COMPARE(m_desktop->sizeOf(guest), QSize(700, 500));
    // Beside the tabs, in the dialog's colour for root.
    QTRY_COMPARE(m_desktop->picture(guest).pixelColor(695, 5), QColor(153, 0, 0));

    host.resize(900, 610);
    QTRY_COMPARE(m_desktop->sizeOf(guest), QSize(900, 610));
    QTRY_COMPARE(m_desktop->picture(guest).pixelColor(895, 5), QColor(153, 0, 0));
    host.resize(500, 300);
    QTRY_COMPARE(m_desktop->sizeOf(guest), QSize(500, 300));
    // It is no window of its own.
    QVERIFY(m_desktop->windows(title).isEmpty());
}

void tst_Embedding::takesTheKeyboard_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("host that is no widget") << QStringLiteral(XCB_HOST);
    QTest::newRow("host of the other Qt version") << QStringLiteral(QT_WIDGET_HOST);
}

void tst_Embedding::takesTheKeyboard()
{
    QFETCH(QString, program);
    if (program.isEmpty())
        QSKIP("Qt " OTHER_QT " is not installed");
    const Host host(*m_desktop, program);
    Program sysinfo(*m_desktop, m_runtimeDirectory->path());
    sysinfo.launch(QStringLiteral("--embed %1").arg(host.window));
    const quint32 guest = waitForGuest(host);
    QTRY_COMPARE(m_desktop->focusWindow(), guest);
    const QImage before = m_desktop->picture(guest);
    m_desktop->pressKey(QStringLiteral("ctrl+Tab"));
    // The next tab is the one whose upper left corner is no longer background.
    QTRY_VERIFY(m_desktop->picture(guest).copy(0, 0, 300, 10) != before.copy(0, 0, 300, 10));
    m_desktop->pressKey(QStringLiteral("Escape"));
    QTest::qWait(200);
    QCOMPARE(sysinfo.state(), QProcess::Running);

    // Another window takes the focus and gives it back to the host.
    {
        const Host other(*m_desktop, QStringLiteral(XCB_HOST));
        QTRY_COMPARE(m_desktop->focusWindow(), other.window);
    }
    QTRY_COMPARE(m_desktop->focusWindow(), guest);
}

void tst_Embedding::endsWhenTheHostIsGone_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<bool>("killed");
    QTest::newRow("host ends") << QStringLiteral(XCB_HOST) << false;
    QTest::newRow("host is killed") << QStringLiteral(XCB_HOST) << true;
    QTest::newRow("host of the other Qt version ends") << QStringLiteral(QT_WIDGET_HOST) << false;
    QTest::newRow("host of the other Qt version is killed") << QStringLiteral(QT_WIDGET_HOST) << true;
}

void tst_Embedding::endsWhenTheHostIsGone()
{
    QFETCH(QString, program);
    QFETCH(bool, killed);
    if (program.isEmpty())
        QSKIP("Qt " OTHER_QT " is not installed");
    Host host(*m_desktop, program);
    Program sysinfo(*m_desktop, m_runtimeDirectory->path());
    sysinfo.launch(QStringLiteral("--embed %1").arg(host.window));
    QVERIFY(waitForGuest(host) != 0);
    QTest::qWait(300);
    if (killed)
        host.kill();
    host.end();
    QVERIFY(sysinfo.waitForFinished(10000));
    QCOMPARE(sysinfo.exitStatus(), QProcess::NormalExit);
    QCOMPARE(sysinfo.exitCode(), 0);
}

void tst_Embedding::endsWithOneWithoutAWindow_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::newRow("no number") << "--embed abc";
    QTest::newRow("no hexadecimal number") << "--embed 0xzz";
    QTest::newRow("fraction") << "--embed 1.5";
    QTest::newRow("negative") << "--embed -1";
    QTest::newRow("larger than an id") << "--embed 4294967296";
    QTest::newRow("zero") << "--embed 0";
    QTest::newRow("no such window") << "--embed 0x7fffff0";
    QTest::newRow("no value") << "--embed";
    QTest::newRow("another option as value") << "--embed --page 2";
}

void tst_Embedding::endsWithOneWithoutAWindow()
{
    QFETCH(QString, arguments);
    Program sysinfo(*m_desktop, m_runtimeDirectory->path());
    sysinfo.launch(arguments);
    QVERIFY(sysinfo.waitForFinished(15000));
    QCOMPARE(sysinfo.exitStatus(), QProcess::NormalExit);
    QCOMPARE(sysinfo.exitCode(), 1);
    QCOMPARE(sysinfo.readAllStandardOutput(), QByteArray());
    QVERIFY(m_desktop->windows(title).isEmpty());
}

void tst_Embedding::endsWithOneForAPixmap()
{
    Program sysinfo(*m_desktop, m_runtimeDirectory->path());
    sysinfo.launch(QStringLiteral("--embed %1").arg(m_desktop->createPixmap()));
    QVERIFY(sysinfo.waitForFinished(15000));
    QCOMPARE(sysinfo.exitCode(), 1);
}

QTEST_GUILESS_MAIN(tst_Embedding)
#include "tst_embedding.moc"
