#include "app/sysinfohelper.h"
#include "resources/qss/stylesheet.h"
#include "tests/device/device.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QTabBar>
#include <QTest>

#include <memory>

/// The dialog without a mouse.
class tst_Keyboard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qApp->setStyleSheet(applicationStyleSheet()); }
    void cleanup();

    void tabVisitsEveryInputInReadingOrder_data();
    void tabVisitsEveryInputInReadingOrder();
    void shiftTabGoesBack();
    void arrowsMoveInTablesAndLists_data();
    void arrowsMoveInTablesAndLists();
    void escapeLeavesTheWindowOpen_data();
    void escapeLeavesTheWindowOpen();
    void escapeClosesAPopup();

private:
    void open(int page, const QString &tool = {});
    static QString nameOf(const QWidget *widget);

    std::unique_ptr<SysInfoHelper> m_dialog;
};

void tst_Keyboard::cleanup()
{
    m_dialog.reset();
    Device::restore();
}

void tst_Keyboard::open(int page, const QString &tool)
{
    m_dialog = std::make_unique<SysInfoHelper>(page);
    m_dialog->show();
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    const QList<QAbstractButton *> buttons = m_dialog->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (!tool.isEmpty() && button->text() == tool)
            QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
    }
    m_dialog->findChild<QTabBar *>()->setFocus();
}

/// What a button says; the kind of any other widget.
QString tst_Keyboard::nameOf(const QWidget *widget)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    return QString::fromLatin1(widget->metaObject()->className());
}

void tst_Keyboard::tabVisitsEveryInputInReadingOrder_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QStringList>("visited");

    // First the area that the page is scrolled in.
    const auto row = [](const char *name, int page, const char *tool, const char *inputs) {
        const QStringList visited = QStringList(QStringLiteral("QScrollArea"))
            + QString::fromLatin1(inputs).split(QStringLiteral(", "));
        QTest::newRow(name) << page << QString::fromLatin1(tool) << visited;
    };
    QTest::newRow("General") << 1 << QString() << QStringList(QStringLiteral("QScrollArea"));
    row("Network", 2, "", "QComboBox, QTableWidget, QListWidget");
    row("Ping", 3, "Ping",
        "Diagnostic, Ping, QLineEdit, Verbose output, Adaptive ping, Display address numerically, "
        "Display user-to-user latency, Number of pings, QSpinBox, Packet data size, QSpinBox, "
        "Interval ( sec ), QSpinBox, Time-to-live, QSpinBox, QTextEdit, Start Process, Clear Log");
    row("DNS Lookup", 3, "DNS Lookup",
        "Diagnostic, DNS Lookup, QLineEdit, Use this nameserver:, QComboBox, QTextEdit, Start Process, "
        "Clear Log");
    row("Trace Route", 3, "Trace Route",
        "Diagnostic, Trace Route, QLineEdit, Datagram size, QSpinBox, Display addresses numerically, "
        "UDP port, QLineEdit, Max hops, QSpinBox, Response wait time ( sec ), QSpinBox, "
        "Queries/hop, QSpinBox, Set source IP, QLineEdit, QTextEdit, Start Process, Clear Log");
    row("Software Information", 4, "", "PackageListView, PackageListView");
}

void tst_Keyboard::tabVisitsEveryInputInReadingOrder()
{
    QFETCH(int, page);
    QFETCH(QString, tool);
    open(page, tool);
    QStringList visited;
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (qobject_cast<QTabBar *>(QApplication::focusWidget()))
            break;
        visited << nameOf(QApplication::focusWidget());
    }
    QTEST(visited, "visited");
}

void tst_Keyboard::shiftTabGoesBack()
{
    open(2);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(nameOf(QApplication::focusWidget()), QStringLiteral("QTableWidget"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(nameOf(QApplication::focusWidget()), QStringLiteral("QComboBox"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(nameOf(QApplication::focusWidget()), QStringLiteral("QScrollArea"));
}

void tst_Keyboard::arrowsMoveInTablesAndLists_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("view");
    QTest::newRow("counters") << 2 << 0;
    QTest::newRow("name servers") << 2 << 1;
    QTest::newRow("main software") << 4 << 0;
    QTest::newRow("add-ons") << 4 << 1;
}

void tst_Keyboard::arrowsMoveInTablesAndLists()
{
    QFETCH(int, page);
    QFETCH(int, view);
    Device::write(QStringLiteral("/etc/resolv.conf"), "nameserver 10.0.0.1\nnameserver 10.0.0.2\n");
    Device::installTool(QStringLiteral("/usr/bin/dpkg-query"), "echo one 1; echo two 2");
    Device::installTool(QStringLiteral("/usr/bin/ovpkg"), "echo one; echo two");
    open(page);
    QList<QAbstractItemView *> views;
    const QList<QAbstractItemView *> all = m_dialog->findChildren<QAbstractItemView *>();
    for (QAbstractItemView *candidate : all) {
        if (candidate->isVisible() && !candidate->inherits("QHeaderView"))
            views << candidate;
    }
    QAbstractItemView *target = views.at(view);
    QVERIFY(target->model()->rowCount() >= 2);
    target->setFocus();
    QTest::keyClick(target, Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(target->currentIndex().row(), 0);
    QTest::keyClick(target, Qt::Key_Down);
    QCOMPARE(target->currentIndex().row(), 1);
    QTest::keyClick(target, Qt::Key_Up);
    QCOMPARE(target->currentIndex().row(), 0);
}

void tst_Keyboard::escapeLeavesTheWindowOpen_data()
{
    tabVisitsEveryInputInReadingOrder_data();
}

void tst_Keyboard::escapeLeavesTheWindowOpen()
{
    QFETCH(int, page);
    QFETCH(QString, tool);
    QFETCH(QStringList, visited);
    open(page, tool);
    for (int i = 0; i <= visited.size(); ++i) {
        const QWidget *focused = QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY2(m_dialog->isVisible(), qPrintable(nameOf(focused)));
        QCOMPARE(QApplication::focusWidget(), focused);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

void tst_Keyboard::escapeClosesAPopup()
{
    open(2);
    auto *combo = m_dialog->findChildren<QComboBox *>().constFirst();
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(combo->view()->isVisible());
    QTest::keyClick(combo->view(), Qt::Key_Escape);
    QTRY_VERIFY(!combo->view()->isVisible());
    QVERIFY(m_dialog->isVisible());
}

QTEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
