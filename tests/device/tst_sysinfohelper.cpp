#include "app/commandrunner.h"
#include "app/sysinfohelper.h"
#include "pages/nettools/pagenettools.h"
#include "pages/network/pagenetwork.h"
#include "pages/software/pagesoftware.h"
#include "pages/system/pagesystem.h"
#include "resources/qss/stylesheet.h"
#include "tests/device/device.h"
#include "tests/markingtranslator.h"
#include "tests/shownvalues.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

QTabWidget *tabsOf(const QWidget &dialog)
{
    return dialog.findChild<QTabWidget *>();
}

/// The calls since Device::clearCalls() without those that a called shell or tool made in turn.
QList<QStringList> callsOfTheProgram()
{
    const QStringList programs{QStringLiteral("sh"), QStringLiteral("uname"), QStringLiteral("cat"),
                               QStringLiteral("dpkg-query"), QStringLiteral("ovpkg")};
    QList<QStringList> calls;
    const QList<QStringList> allCalls = Device::calls();
    for (const QStringList &call : allCalls) {
        if (programs.contains(call.constFirst().section(QLatin1Char('/'), -1)))
            calls.append(call);
    }
    return calls;
}

QColor colorBesideTheTabs(QWidget &dialog)
{
    const QTabBar *bar = dialog.findChild<QTabBar *>();
    return dialog.grab().toImage().pixelColor(dialog.width() - 5, bar->height() / 2);
}

/// The pages that have been put into scroll areas since this object was made, as far as they had no layout.
class PagesPlacedEarly : public QObject {
public:
    PagesPlacedEarly() { qApp->installEventFilter(this); }

    QStringList pages() const { return m_pages; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QString name = QLatin1String(watched->metaObject()->className());
        if (event->type() == QEvent::ParentChange && name.startsWith(QLatin1String("page"))
            && !static_cast<QWidget *>(watched)->layout())
            m_pages.append(name);
        return QObject::eventFilter(watched, event);
    }

private:
    QStringList m_pages;
};

/// Counts the events of a type that an object gets.
class EventCounter : public QObject {
public:
    EventCounter(QObject *watched, QEvent::Type type)
        : m_type(type)
    {
        watched->installEventFilter(this);
    }

    int count() const { return m_count; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == m_type ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    QEvent::Type m_type;
    int m_count = 0;
};

} // namespace

class tst_SysInfoHelper : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qApp->setStyleSheet(applicationStyleSheet()); }
    void cleanup() { Device::restore(); }

    void opensOnTheTab_data();
    void opensOnTheTab();
    void hasTheFourPagesInOrder();
    void runsTheCommandsOfEachPageOnceInTheOrderOfTheTabs();
    void fillsTheWindowWithTheTabs();
    void wrapsEachPageInAScrollArea();
    void scrollsAPageTallerThanTheWindow();
    void opensLargeEnoughForItsPages();
    void staysOpenOnEscape();
    void startsTheToolOnReturn();
    void hasAWindowIconWhereThereIsTheFile();
    void asksForAdministratorRightsEachTime();
    void showsAdministratorsInRed();
    void paintsPagesInTheStyleSheetsColours();
    void lowersTheTabsThatAreNotSelected();
    void putsPagesIntoTheirPlacesBeforeTheyHaveLayouts();
    void knowsTheSizesOfItsPages();
    void paintsNothingBelowAPage_data();
    void paintsNothingBelowAPage();
    void makesTheListsOfComboBoxesWhenTheyAreAskedFor();
    void translatesInTheGeneralContext();
    void refreshesMemoryBehindAnotherTab();
    void survivesTheDescriptorLimit();
};

void tst_SysInfoHelper::opensOnTheTab_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("tab");
    QTest::newRow("1") << 1 << "General";
    QTest::newRow("2") << 2 << "Network";
    QTest::newRow("3") << 3 << "Net Tools";
    QTest::newRow("4") << 4 << "Software Information";
    QTest::newRow("0") << 0 << "General";
    QTest::newRow("5") << 5 << "General";
    QTest::newRow("-3") << -3 << "General";
}

void tst_SysInfoHelper::opensOnTheTab()
{
    QFETCH(int, page);
    const SysInfoHelper dialog(page);
    const QTabWidget *tabs = tabsOf(dialog);
    QTEST(tabs->tabText(tabs->currentIndex()), "tab");
}

void tst_SysInfoHelper::hasTheFourPagesInOrder()
{
    const SysInfoHelper dialog(1);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("About this thin client"));
    QVERIFY(!dialog.parentWidget());
    const QTabWidget *tabs = tabsOf(dialog);
    QCOMPARE(tabs->count(), 4);
    const auto pageAt = [tabs](int i) { return qobject_cast<QScrollArea *>(tabs->widget(i))->widget(); };
    QVERIFY(qobject_cast<pageSystem *>(pageAt(0)));
    QVERIFY(qobject_cast<pageNetwork *>(pageAt(1)));
    QVERIFY(qobject_cast<pageNetTools *>(pageAt(2)));
    QVERIFY(qobject_cast<pageSoftware *>(pageAt(3)));
    QCOMPARE(tabs->tabText(0), QStringLiteral("General"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Network"));
    QCOMPARE(tabs->tabText(2), QStringLiteral("Net Tools"));
    QCOMPARE(tabs->tabText(3), QStringLiteral("Software Information"));
}

void tst_SysInfoHelper::runsTheCommandsOfEachPageOnceInTheOrderOfTheTabs()
{
    // What each of the pages runs is the matter of its own test.
    Device::clearCalls();
    {
        const pageSystem general(nullptr);
        const pageNetwork network(nullptr);
        const pageNetTools netTools(nullptr);
        const pageSoftware software(nullptr);
    }
    const QList<QStringList> ofThePages = callsOfTheProgram();
    QVERIFY(ofThePages.size() > 20);

    Device::clearCalls();
    const SysInfoHelper dialog(1);
    QCOMPARE(callsOfTheProgram(), ofThePages);
}

void tst_SysInfoHelper::fillsTheWindowWithTheTabs()
{
    SysInfoHelper dialog(1);
    const auto *layout = qobject_cast<QVBoxLayout *>(dialog.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::Alignment());
    dialog.show();
    QCOMPARE(tabsOf(dialog)->geometry(), dialog.rect());
}

void tst_SysInfoHelper::wrapsEachPageInAScrollArea()
{
    const SysInfoHelper dialog(1);
    const QTabWidget *tabs = tabsOf(dialog);
    for (int i = 0; i < tabs->count(); ++i) {
        const auto *area = qobject_cast<QScrollArea *>(tabs->widget(i));
        QVERIFY(area);
        QCOMPARE(area->frameStyle(), 0);
        QCOMPARE(area->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
        QCOMPARE(area->alignment(), Qt::AlignHCenter);
        QVERIFY(area->widgetResizable());
        QCOMPARE(area->widget()->objectName(), QStringLiteral("tabContent"));
    }
}

void tst_SysInfoHelper::scrollsAPageTallerThanTheWindow()
{
    SysInfoHelper dialog(1);
    dialog.show();
    const auto *area = qobject_cast<QScrollArea *>(tabsOf(dialog)->currentWidget());
    dialog.resize(800, 700);
    QTRY_VERIFY(!area->verticalScrollBar()->isVisible());
    dialog.resize(800, 200);
    QTRY_VERIFY(area->verticalScrollBar()->isVisible());
}

void tst_SysInfoHelper::opensLargeEnoughForItsPages()
{
    SysInfoHelper dialog(1);
    dialog.show();
    const auto *area = qobject_cast<QScrollArea *>(tabsOf(dialog)->currentWidget());
    QVERIFY(!area->verticalScrollBar()->isVisible());
    QVERIFY(!area->horizontalScrollBar()->isVisible());
}

void tst_SysInfoHelper::staysOpenOnEscape()
{
    SysInfoHelper dialog(1);
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QTest::keyClick(tabsOf(dialog), Qt::Key_Escape);
    QVERIFY(dialog.isVisible());

    const auto *escape = dialog.findChild<QShortcut *>();
    QCOMPARE(escape->key(), QKeySequence(Qt::Key_Escape));
    QCOMPARE(escape->context(), Qt::WindowShortcut);
    const QMetaMethod slot = dialog.metaObject()->method(dialog.metaObject()->indexOfSlot("doNothing()"));
    QCOMPARE(slot.access(), QMetaMethod::Private);
}

void tst_SysInfoHelper::startsTheToolOnReturn()
{
    SysInfoHelper dialog(3);
    dialog.show();
    QLineEdit *target = nullptr;
    const QList<QLineEdit *> inputs = dialog.findChild<pageNetTools *>()->findChildren<QLineEdit *>();
    for (QLineEdit *input : inputs) {
        if (input->isVisible() && input->text().isEmpty())
            target = input;
    }
    QVERIFY(target);
    target->setText(QStringLiteral("127.0.0.1"));
    target->setFocus();
    Device::clearCalls();
    QTest::keyClick(target, Qt::Key_Return);
    const QStringList ping{QStringLiteral("/usr/bin/ping"), QStringLiteral("127.0.0.1")};
    QTRY_VERIFY(Device::calls().contains(ping));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_SysInfoHelper::hasAWindowIconWhereThereIsTheFile()
{
    QCOMPARE(SysInfoHelper(1).windowIcon().availableSizes(), QList<QSize>{QSize(32, 32)});
    Device::remove(QStringLiteral("/usr/share/icewm/icons/sysinfo_32x32.xpm"));
    QVERIFY(SysInfoHelper(1).windowIcon().availableSizes().isEmpty());
}

void tst_SysInfoHelper::asksForAdministratorRightsEachTime()
{
    const SysInfoHelper dialog(1);
    const QMetaObject *meta = dialog.metaObject();
    QCOMPARE(QByteArray(meta->className()), QByteArray("SysInfoHelper"));
    const QMetaProperty property = meta->property(meta->indexOfProperty("isAdmin"));
    QCOMPARE(QByteArray(property.typeName()), QByteArray("bool"));
    QVERIFY(property.isReadable() && !property.isWritable() && !property.isResettable()
            && !property.hasNotifySignal());
    QVERIFY(property.isDesignable() && property.isScriptable() && property.isStored());
    QVERIFY(dialog.property("isAdmin").toBool());
    // Another user from now on, and root again.
    if (setresuid(4711, 4711, 0) != 0)
        QSKIP("only root can become another user");
    const bool otherUserIsAdmin = dialog.property("isAdmin").toBool();
    QCOMPARE(setresuid(0, 0, 0), 0);
    QVERIFY(!otherUserIsAdmin);
    QVERIFY(dialog.property("isAdmin").toBool());
}

void tst_SysInfoHelper::showsAdministratorsInRed()
{
    SysInfoHelper dialog(1);
    dialog.resize(700, 500);
    dialog.show();
    // On a device the test is root.
    QCOMPARE(colorBesideTheTabs(dialog), QColor(153, 0, 0));
}

void tst_SysInfoHelper::paintsPagesInTheStyleSheetsColours()
{
    SysInfoHelper dialog(1);
    dialog.resize(700, 500);
    dialog.show();
    const QImage picture = dialog.grab().toImage();
    // Page and scroll area; the last pixels of each edge belong to the page as the pane has no frame.
    QCOMPARE(picture.pixelColor(2, 495), QColor(0xfa, 0xfa, 0xfa));
    QCOMPARE(picture.pixelColor(697, 495), QColor(0xfa, 0xfa, 0xfa));
    const int paneTop = dialog.findChild<QTabBar *>()->height();
    QCOMPARE(picture.pixelColor(697, paneTop + 3), QColor(0xfa, 0xfa, 0xfa));
}

void tst_SysInfoHelper::lowersTheTabsThatAreNotSelected()
{
    SysInfoHelper dialog(1);
    dialog.resize(700, 500);
    dialog.show();
    const QImage picture = dialog.grab().toImage();
    const QTabBar *bar = dialog.findChild<QTabBar *>();
    const QColor background(153, 0, 0);
    const int selected = bar->tabRect(0).center().x();
    const int other = bar->tabRect(1).center().x();
    QVERIFY(picture.pixelColor(selected, 0) != background);
    QCOMPARE(picture.pixelColor(other, 0), background);
    QCOMPARE(picture.pixelColor(other, 1), background);
    QVERIFY(picture.pixelColor(other, 2) != background);
}

void tst_SysInfoHelper::putsPagesIntoTheirPlacesBeforeTheyHaveLayouts()
{
    PagesPlacedEarly early;
    const SysInfoHelper dialog(1);
    // The last page has its layout before it waits.
    QCOMPARE(early.pages(),
             QStringList({QStringLiteral("pageSystem"), QStringLiteral("pageNetwork"),
                          QStringLiteral("pageNetTools")}));
}

void tst_SysInfoHelper::knowsTheSizesOfItsPages()
{
    // So large that the facts, not the captions, say how wide a group is.
    const QFont usual = QApplication::font();
    const auto restoreFont = qScopeGuard([&] { QApplication::setFont(usual); });
    QFont large = usual;
    large.setPointSize(24);
    QApplication::setFont(large);
    SysInfoHelper dialog(1);
    const QList<QWidget *> pages = dialog.findChildren<QWidget *>(QStringLiteral("tabContent"));
    QCOMPARE(pages.size(), 4);
    QList<QSize> sizes;
    for (const QWidget *page : pages)
        sizes << page->sizeHint() << page->minimumSizeHint();

    // A layout that was asked too early would hear of the facts only now.
    dialog.show();
    QList<QSize> shownSizes;
    for (int page = 0; page < pages.size(); ++page) {
        tabsOf(dialog)->setCurrentIndex(page);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QCoreApplication::processEvents();
        shownSizes << pages.at(page)->sizeHint() << pages.at(page)->minimumSizeHint();
    }
    QCOMPARE(shownSizes, sizes);
}

void tst_SysInfoHelper::paintsNothingBelowAPage_data()
{
    QTest::addColumn<int>("page");
    for (int page = 1; page <= 4; ++page)
        QTest::addRow("%d", page) << page;
}

void tst_SysInfoHelper::paintsNothingBelowAPage()
{
    QFETCH(const int, page);
    SysInfoHelper dialog(page);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    // Also what is painted again when the window gets the focus.
    QTest::qWait(200);
    const auto *area = qobject_cast<QScrollArea *>(tabsOf(dialog)->currentWidget());
    EventCounter ofThePage(area->widget(), QEvent::Paint);
    EventCounter ofTheArea(area->viewport(), QEvent::Paint);
    EventCounter ofTheDialog(&dialog, QEvent::Paint);
    area->widget()->update(5, 5, 10, 10);
    QTRY_VERIFY(ofThePage.count() > 0);
    QCOMPARE(ofTheArea.count(), 0);
    QCOMPARE(ofTheDialog.count(), 0);
}

void tst_SysInfoHelper::makesTheListsOfComboBoxesWhenTheyAreAskedFor()
{
    SysInfoHelper dialog(1);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QList<QComboBox *> comboBoxes = dialog.findChildren<QComboBox *>();
    QCOMPARE(comboBoxes.size(), 2);
    for (const QComboBox *comboBox : comboBoxes)
        QVERIFY2(comboBox->findChildren<QAbstractItemView *>().isEmpty(),
                 qPrintable(comboBox->accessibleName()));
    comboBoxes.constFirst()->showPopup();
    QCOMPARE(comboBoxes.constFirst()->findChildren<QAbstractItemView *>().size(), 1);
}

void tst_SysInfoHelper::translatesInTheGeneralContext()
{
    const MarkingTranslator translator;
    const SysInfoHelper dialog(1);
    const QTabWidget *tabs = tabsOf(dialog);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("[QObject]About this thin client"));
    QCOMPARE(tabs->tabText(0), QStringLiteral("[QObject]General"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("[QObject]Network"));
    QCOMPARE(tabs->tabText(2), QStringLiteral("[QObject]Net Tools"));
    QCOMPARE(tabs->tabText(3), QStringLiteral("[QObject]Software Information"));
}

void tst_SysInfoHelper::refreshesMemoryBehindAnotherTab()
{
    SysInfoHelper dialog(3);
    dialog.show();
    const auto *page = dialog.findChild<pageSystem *>();
    QVERIFY(!page->isVisible());
    Device::write(QStringLiteral("/proc/meminfo"), "MemTotal: 9000 kB\nMemFree: 2048 kB\n");
    QTRY_COMPARE_WITH_TIMEOUT(shownValue(page, "Memory:", 1), QStringLiteral("2 M"), 6000);
}

void tst_SysInfoHelper::survivesTheDescriptorLimit()
{
    SysInfoHelper dialog(1);
    dialog.show();
    rlimit limit = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const int lowestFree = open("/dev/null", O_RDONLY | O_CLOEXEC);
    close(lowestFree);
    rlimit reached = limit;
    reached.rlim_cur = static_cast<rlim_t>(lowestFree);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &reached), 0);
    const QString answer = runCommand(QStringLiteral("echo value"));
    // Two ticks of every page without a descriptor to spare.
    QTest::qWait(6500);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    QCOMPARE(answer, QString());
    QVERIFY(dialog.isVisible());
    QCOMPARE(shownValue(dialog.findChild<pageSystem *>(), "Memory:", 1), QStringLiteral("FileError M"));
    QCOMPARE(runCommand(QStringLiteral("echo value")), QStringLiteral("value"));
}

QTEST_MAIN(tst_SysInfoHelper)
#include "tst_sysinfohelper.moc"
