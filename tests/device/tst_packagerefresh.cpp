#include "tests/device/softwarepage.h"

#include <QAbstractEventDispatcher>
#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

using namespace SoftwarePage;

class tst_PackageRefresh : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { Device::clearCalls(); }
    void cleanup() { Device::restore(); }

    void refreshesEveryThreeSeconds();
    void readsTheNamesAtEachRefresh();
    void choosesTheProgramAtEachRefresh();
    void keepsTheMainListWhenItsProgramsVanish();
    void keepsTheAddonsWhenTheToolVanishes();
    void doesNotDoubleRows();
    void losesSelectionAndPosition();
    void fitsTheColumnsToTheRows();
    void reportsRowsAtOnce();
    void emptiesTheModelBeforeItsProgramStarts();
    void keepsModelsConsistent();
    void keepsHeadersBesideLongerRows();
};

void tst_PackageRefresh::refreshesEveryThreeSeconds()
{
    Device::installTool(dpkgQuery, printing("a 1\\n"));
    Device::installTool(ovpkg, printing("x\\n"));
    QElapsedTimer time;
    time.start();
    pageSoftware page(nullptr);
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&page);
    QCOMPARE(timers.size(), 1);
    QCOMPARE(timers.constFirst().interval, 3000);

    // A busy machine makes the refreshes later, but none comes early: a coarse timer is at most 5 % off.
    Device::installTool(dpkgQuery, printing("b 2\\n"));
    Device::installTool(ovpkg, printing("y\\n"));
    QTRY_COMPARE_WITH_TIMEOUT(mainRows(page), QStringLiteral("b|2"), 30000);
    QVERIFY(time.elapsed() >= 2800);
    QCOMPARE(addonRows(page), QStringLiteral("y"));

    Device::installTool(dpkgQuery, printing("c 3\\n"));
    Device::clearCalls();
    QTRY_COMPARE_WITH_TIMEOUT(mainRows(page), QStringLiteral("c|3"), 30000);
    QCOMPARE(recordedCalls().count(QStringLiteral("dpkg-query")), 1);
    QCOMPARE(recordedCalls().count(QStringLiteral("ovpkg [-l]")), 1);
}

void tst_PackageRefresh::readsTheNamesAtEachRefresh()
{
    Device::write(packageNames, "bash");
    pageSoftware page(nullptr);
    Device::write(packageNames, "zsh");
    Device::clearCalls();
    tick(page);
    QCOMPARE(recordedCalls(),
             QStringLiteral("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]\n"
                            "/usr/bin/dpkg-query [-W] [zsh]\n"
                            "/usr/bin/ovpkg [-l]"));
}

void tst_PackageRefresh::choosesTheProgramAtEachRefresh()
{
    Device::installTool(dpkgQuery, printing("first 1\\n"));
    Device::installTool(fallbackQuery, printing("second 2\\n"));
    pageSoftware page(nullptr);
    QCOMPARE(mainRows(page), QStringLiteral("first|1"));
    Device::remove(dpkgQuery);
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("second|2"));
    Device::installTool(dpkgQuery, printing("third 3\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("third|3"));
}

void tst_PackageRefresh::keepsTheMainListWhenItsProgramsVanish()
{
    Device::installTool(dpkgQuery, printing("a 1\\n"));
    pageSoftware page(nullptr);
    Device::remove(dpkgQuery);
    Device::remove(fallbackQuery);
    Device::clearCalls();
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("a|1"));
    QCOMPARE(recordedCalls(), QStringLiteral("/usr/bin/ovpkg [-l]"));
}

void tst_PackageRefresh::keepsTheAddonsWhenTheToolVanishes()
{
    Device::installTool(ovpkg, printing("a 1\\n"));
    pageSoftware page(nullptr);
    Device::remove(ovpkg);
    tick(page);
    QVERIFY(groupOf(page, addonTitle));
    QCOMPARE(addonRows(page), QStringLiteral("a 1"));
}

void tst_PackageRefresh::doesNotDoubleRows()
{
    pageSoftware page(nullptr);
    const QString rows = mainRows(page);
    const QString addons = addonRows(page);
    QVERIFY(!rows.isEmpty() && !addons.isEmpty());
    modelOf(page, mainTitle)->appendRow(new QStandardItem(QStringLiteral("a row that no tool printed")));
    for (int count = 0; count < 3; ++count) {
        tick(page);
        QCOMPARE(mainRows(page), rows);
        QCOMPARE(addonRows(page), addons);
    }
}

void tst_PackageRefresh::losesSelectionAndPosition()
{
    const QByteArray manyRows = "seq -f 'a-very-long-name-of-a-package-number-%.0f 1' 500";
    Device::installTool(dpkgQuery, manyRows);
    Device::installTool(ovpkg, manyRows);
    pageSoftware page(nullptr);
    page.resize(300, 500);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    for (const QString &title : {mainTitle, addonTitle}) {
        QTreeView *view = viewOf(page, title);
        view->setCurrentIndex(view->model()->index(200, 0));
        view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->maximum());
        QVERIFY(view->verticalScrollBar()->value() > 0);
        QVERIFY(view->selectionModel()->hasSelection());
    }
    QVERIFY(viewOf(page, mainTitle)->horizontalScrollBar()->value() > 0);
    tick(page);
    QCoreApplication::processEvents();
    for (const QString &title : {mainTitle, addonTitle}) {
        const QTreeView *view = viewOf(page, title);
        QVERIFY(!view->selectionModel()->hasSelection());
        QVERIFY(!view->currentIndex().isValid());
        QCOMPARE(view->verticalScrollBar()->value(), 0);
        QCOMPARE(view->horizontalScrollBar()->value(), 0);
        QCOMPARE(view->indexAt(QPoint(5, 5)).row(), 0);
    }
}

void tst_PackageRefresh::fitsTheColumnsToTheRows()
{
    const QString shortName(5, QLatin1Char('w'));
    const QString longName(60, QLatin1Char('w'));
    Device::installTool(dpkgQuery, printing(shortName.toLatin1() + " 1\\n"));
    pageSoftware page(nullptr);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    const QTreeView *view = viewOf(page, mainTitle);
    const int width = view->columnWidth(0);
    Device::installTool(dpkgQuery, printing(longName.toLatin1() + " 1\\n"));
    tick(page);
    QTRY_VERIFY(view->columnWidth(0) >= view->fontMetrics().horizontalAdvance(longName));
    Device::installTool(dpkgQuery, printing(shortName.toLatin1() + " 1\\n"));
    tick(page);
    QTRY_COMPARE(view->columnWidth(0), width);
}

void tst_PackageRefresh::reportsRowsAtOnce()
{
    Device::installTool(dpkgQuery, "seq -f 'package-%.0f 1' 500");
    Device::installTool(ovpkg, "seq -f 'addon-%.0f' 500");
    pageSoftware page(nullptr);
    for (const QString &title : {mainTitle, addonTitle}) {
        const QStandardItemModel *model = modelOf(page, title);
        QSignalSpy removed(model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        tick(page);
        QCOMPARE(model->rowCount(), 500);
        QCOMPARE(removed.size(), 1);
        QCOMPARE(inserted.size(), 1);
        QCOMPARE(changed.size(), 0);
    }
}

void tst_PackageRefresh::emptiesTheModelBeforeItsProgramStarts()
{
    Device::installTool(dpkgQuery, printing("a 1\\nb 2\\n"));
    Device::installTool(ovpkg, printing("x\\n"));
    pageSoftware page(nullptr);
    const QStandardItemModel *main = modelOf(page, mainTitle);
    const QStandardItemModel *addons = modelOf(page, addonTitle);
    QCOMPARE(main->rowCount(), 2);
    QCOMPARE(addons->rowCount(), 1);
    QStringList starts;
    const auto processes = page.findChildren<QProcess *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QProcess *process : processes)
        connect(process, &QProcess::stateChanged, this, [&, process](QProcess::ProcessState state) {
            if (state == QProcess::Starting)
                starts.append(QStringLiteral("%1 %2 %3")
                                  .arg(process->program())
                                  .arg(main->rowCount())
                                  .arg(addons->rowCount()));
        });
    tick(page);
    QCOMPARE(starts,
             (QStringList{QStringLiteral("cat 2 1"), dpkgQuery + QStringLiteral(" 0 1"),
                          ovpkg + QStringLiteral(" 2 0")}));
}

void tst_PackageRefresh::keepsModelsConsistent()
{
    pageSoftware page(nullptr);
    page.show();
    using Tester = QAbstractItemModelTester;
    Tester mainTester(viewOf(page, mainTitle)->model(), Tester::FailureReportingMode::QtTest);
    Tester addonTester(viewOf(page, addonTitle)->model(), Tester::FailureReportingMode::QtTest);
    for (const char *output : {"a 1\\n", "a 1\\nb 2\\nc 3\\n", "", "a 1 x y\\nb\\n", "z 9\\n", "z 9\\n"}) {
        Device::installTool(dpkgQuery, printing(output));
        Device::installTool(ovpkg, printing(output));
        tick(page);
        QCoreApplication::processEvents();
    }
    QCOMPARE(mainRows(page), QStringLiteral("z|9"));
    QCOMPARE(addonRows(page), QStringLiteral("z 9"));
}

void tst_PackageRefresh::keepsHeadersBesideLongerRows()
{
    Device::installTool(dpkgQuery, printing("a 1 x\\n"));
    pageSoftware page(nullptr);
    const QStandardItemModel *model = modelOf(page, mainTitle);
    const QStringList names{QStringLiteral("Name"), QStringLiteral("Version")};
    QCOMPARE(headersOf(model).mid(0, 2), names);
    QCOMPARE(model->columnCount(), 3);
    Device::installTool(dpkgQuery, printing("b 2\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("b|2"));
    QCOMPARE(headersOf(model).mid(0, 2), names);
}

QTEST_MAIN(tst_PackageRefresh)
#include "tst_packagerefresh.moc"
