#include "tests/device/softwarepage.h"
#include "tests/markingtranslator.h"

#include <QApplication>
#include <QHeaderView>
#include <QLayout>
#include <QProcess>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>

#include <memory>

using namespace SoftwarePage;

namespace {

QList<QProcess *> processesOf(const QObject *page)
{
    return page->findChildren<QProcess *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

class tst_pageSoftware : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { Device::clearCalls(); }
    void cleanup() { Device::restore(); }

    void showsTheInventoryOfTheDevice();
    void hasTwoReadOnlyLists();
    void hasNoMembersInItsMetaObject();
    void marksItsTextsForTranslation();
    void hasNoAddonBoxWithoutTheTool();
    void keepsTheAddonBoxAwayWhenTheToolComesLater();
    void sharesTheNamesProcess();
    void outlivesTheFirstPage();
    void deletesViewsThenProcess();
    void leavesNothingBehind();
};

void tst_pageSoftware::showsTheInventoryOfTheDevice()
{
    const bool arm = Device::name() == QLatin1String("arm");
    const pageSoftware page(nullptr);
    QCOMPARE(mainRows(page),
             arm ? QStringLiteral("terminal-client|7.2.4-1 / xserver-common|1.7.7-18"
                                  " / kernel-image|2.6.35-tc50-r118")
                 : QStringLiteral("terminal-client|8.0.1-2 / xserver-common|1.12.4-6"));
    QCOMPARE(addonRows(page),
             arm ? QStringLiteral("remote-desktop 6.3-12 / serial-redirection 2.1")
                 : QStringLiteral("remote-desktop 7.0-3"));
    const QString names = arm ? QStringLiteral("[terminal-client] [xserver-common] [kernel-image] []")
                              : QStringLiteral("[terminal-client] [xserver-common] []");
    QCOMPARE(recordedCalls(),
             QStringLiteral("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]\n"
                            "/usr/bin/dpkg-query [-W] %1\n"
                            "/usr/bin/ovpkg [-l]")
                 .arg(names));
}

void tst_pageSoftware::hasTwoReadOnlyLists()
{
    const pageSoftware page(nullptr);
    QVERIFY(qobject_cast<QVBoxLayout *>(page.layout()));
    QCOMPARE(page.layout()->count(), 2);
    QCOMPARE(page.layout()->itemAt(0)->widget(), groupOf(page, mainTitle));
    QCOMPARE(page.layout()->itemAt(1)->widget(), groupOf(page, addonTitle));
    for (const QString &title : {mainTitle, addonTitle}) {
        const QTreeView *view = viewOf(page, title);
        QVERIFY(qobject_cast<QHBoxLayout *>(groupOf(page, title)->layout()));
        QVERIFY(!view->rootIsDecorated());
        QVERIFY(view->alternatingRowColors());
        QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(!view->isSortingEnabled());
        QCOMPARE(view->accessibleName(), title);
        QVERIFY(qobject_cast<QStandardItemModel *>(view->model()));
        QCOMPARE(view->model()->QObject::parent(), &page);
    }
    QCOMPARE(page.findChildren<QStandardItemModel *>().size(), 2);

    const QTreeView *mainView = viewOf(page, mainTitle);
    QCOMPARE(headersOf(mainView->model()), (QStringList{QStringLiteral("Name"), QStringLiteral("Version")}));
    QCOMPARE(mainView->header()->sectionResizeMode(0), QHeaderView::ResizeToContents);
    QCOMPARE(mainView->header()->sectionResizeMode(1), QHeaderView::ResizeToContents);
    const QTreeView *addonView = viewOf(page, addonTitle);
    QCOMPARE(headersOf(addonView->model()), QStringList{QStringLiteral("Orvo Package Name")});
    QCOMPARE(addonView->header()->sectionResizeMode(0), QHeaderView::Interactive);
}

void tst_pageSoftware::hasNoMembersInItsMetaObject()
{
    const QMetaObject &metaObject = pageSoftware::staticMetaObject;
    QCOMPARE(metaObject.className(), "pageSoftware");
    QCOMPARE(metaObject.methodCount(), metaObject.methodOffset());
    QCOMPARE(metaObject.propertyCount(), metaObject.propertyOffset());
}

void tst_pageSoftware::marksItsTextsForTranslation()
{
    const MarkingTranslator translator;
    const pageSoftware page(nullptr);
    const QString context = QStringLiteral("[pageSoftware]");
    QVERIFY(groupOf(page, context + mainTitle) && groupOf(page, context + addonTitle));
    const QStandardItemModel *mainModel = modelOf(page, context + mainTitle);
    const QStandardItemModel *addonModel = modelOf(page, context + addonTitle);
    QCOMPARE(headersOf(mainModel),
             (QStringList{QStringLiteral("[pageSoftware]Name"), QStringLiteral("[pageSoftware]Version")}));
    QCOMPARE(headersOf(addonModel), QStringList{QStringLiteral("[pageSoftware]Orvo Package Name")});
    QVERIFY(!rowsOf(mainModel).isEmpty() && !rowsOf(mainModel).contains(context));
    QVERIFY(!rowsOf(addonModel).isEmpty() && !rowsOf(addonModel).contains(context));
}

void tst_pageSoftware::hasNoAddonBoxWithoutTheTool()
{
    Device::remove(ovpkg);
    const qsizetype before = QApplication::topLevelWidgets().size();
    {
        pageSoftware page(nullptr);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        QCOMPARE(groupOf(page, addonTitle), nullptr);
        QCOMPARE(page.findChildren<QTreeView *>().size(), 1);
        QCOMPARE(page.layout()->count(), 1);
        QVERIFY(!mainRows(page).isEmpty());
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (const QWidget *window : windows)
            QVERIFY(window == &page || !window->isVisible());
        QVERIFY(!recordedCalls().contains(ovpkg));
    }
    QCOMPARE(QApplication::topLevelWidgets().size(), before);
}

void tst_pageSoftware::keepsTheAddonBoxAwayWhenTheToolComesLater()
{
    Device::remove(ovpkg);
    pageSoftware page(nullptr);
    page.show();
    Device::installTool(ovpkg, printing("a\\n"));
    tick(page);
    QCOMPARE(groupOf(page, addonTitle), nullptr);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows)
        QVERIFY(window == &page || !window->isVisible());
    QVERIFY(recordedCalls().endsWith(QLatin1String("/usr/bin/ovpkg [-l]")));
}

void tst_pageSoftware::sharesTheNamesProcess()
{
    pageSoftware first(nullptr);
    pageSoftware second(nullptr);
    tick(second);
    tick(first);
    QCOMPARE(processesOf(&first).size(), 2);
    QCOMPARE(processesOf(&second).size(), 1);
}

void tst_pageSoftware::outlivesTheFirstPage()
{
    auto first = std::make_unique<pageSoftware>(nullptr);
    pageSoftware second(nullptr);
    const QString rows = mainRows(second);
    first.reset();
    Device::clearCalls();
    tick(second);
    QCOMPARE(mainRows(second), rows);
    QVERIFY(recordedCalls().startsWith(QLatin1String("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]")));
    QCOMPARE(processesOf(&second).size(), 2);

    const pageSoftware third(nullptr);
    QCOMPARE(mainRows(third), rows);
    QCOMPARE(processesOf(&third).size(), 1);
}

void tst_pageSoftware::deletesViewsThenProcess()
{
    QStringList deleted;
    {
        // Keeps the process for the names, so that the page below has only its own.
        const pageSoftware first(nullptr);
        const pageSoftware page(nullptr);
        const auto note = [&deleted](const QObject *object, const QString &name) {
            connect(object, &QObject::destroyed, object, [&deleted, name] { deleted.append(name); });
        };
        note(viewOf(page, mainTitle), QStringLiteral("main list"));
        note(viewOf(page, addonTitle), QStringLiteral("add-on list"));
        note(processesOf(&page).constFirst(), QStringLiteral("process"));
        note(groupOf(page, mainTitle), QStringLiteral("group"));
    }
    QCOMPARE(deleted.join(QStringLiteral(", ")), QStringLiteral("main list, add-on list, process, group"));
}

void tst_pageSoftware::leavesNothingBehind()
{
    // Without the tool the add-on list is in no layout that would delete it.
    Device::remove(ovpkg);
    const qsizetype before = QApplication::topLevelWidgets().size();
    delete new pageSoftware(nullptr);
    QCOMPARE(QApplication::topLevelWidgets().size(), before);
}

QTEST_MAIN(tst_pageSoftware)
#include "tst_pagesoftware.moc"
