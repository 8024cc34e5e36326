#include "app/sysinfohelper.h"

#include "app/waitingwork.h"
#include "framework/userinfo.h"
#include "pages/nettools/pagenettools.h"
#include "pages/network/pagenetwork.h"
#include "pages/software/pagesoftware.h"
#include "pages/system/pagesystem.h"

#include <QApplication>
#include <QIcon>
#include <QScrollArea>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

/// Asks for the whole size of its page, so that the dialog opens with nothing to scroll where the screen
/// allows it.
class PageArea : public QScrollArea {
public:
    QSize sizeHint() const override { return widget() ? widget()->sizeHint() : QScrollArea::sizeHint(); }
};

/// Qt keeps what it loads for the first question about a font.
void loadFont()
{
    QFontMetrics(QApplication::font()).boundingRect(QLatin1Char('A'));
}

} // namespace

SysInfoHelper::SysInfoHelper(int page)
{
    setWindowTitle(QObject::tr("About this thin client"));

    createPages();
    if (page > 0 && page <= m_tabs->count())
        m_tabs->setCurrentIndex(page - 1);

    // Escape would close a dialog; the shortcut swallows it.
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &SysInfoHelper::doNothing);
}

bool SysInfoHelper::isAdmin() const
{
    return UserInfo::isAdmin();
}

void SysInfoHelper::createTabs()
{
    m_tabs = new QTabWidget(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tabs);
}

void SysInfoHelper::createPages()
{
    // While a page waits for its commands, the tabs are made, the font is loaded, and pages are put into
    // their places.
    WaitingWork work;
    work.add([this] {
        setWindowIcon(QIcon(QStringLiteral("/usr/share/icewm/icons/sysinfo_32x32.xpm")));
        createTabs();
    });
    work.add(loadFont);
    createPage<pageSystem>(work, QObject::tr("General"));
    createPage<pageNetwork>(work, QObject::tr("Network"));
    createPage<pageNetTools>(work, QObject::tr("Net Tools"));
    createPage<pageSoftware>(work, QObject::tr("Software Information"));
}

template <typename Page>
void SysInfoHelper::createPage(WaitingWork &work, const QString &label)
{
    // The page gets its place in its first wait, before it has a layout: one that is asked for sizes while
    // the page is being filled keeps them, as it hears of new texts only in the event loop. Only the last
    // page has its layout by then, with lists in it, whose sizes do not depend on what they list.
    work.add([this, label] { addPage(findChild<Page *>(QString(), Qt::FindDirectChildrenOnly), label); });
    const auto *page = new Page(this);
    // What the window is going to ask for when it is shown.
    work.add([page] { page->sizeHint(); });
}

void SysInfoHelper::addPage(QWidget *page, const QString &label)
{
    auto *area = new PageArea;
    area->setFrameStyle(QFrame::NoFrame);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setAlignment(Qt::AlignHCenter);
    area->setWidgetResizable(true);
    area->setAccessibleName(label);
    // The page comes last: every change of parent applies the stylesheet to all its widgets anew. The Tab key
    // gets to the area first nevertheless.
    m_tabs->addTab(area, label);
    page->setObjectName(QStringLiteral("tabContent"));
    area->setWidget(page);
    // The area asks for that background too, but the stylesheet takes it back when it is applied after that.
    // A page that fills its background is painted without what is below it.
    page->setAutoFillBackground(true);
    setTabOrder(m_tabs->tabBar(), area);
}

void SysInfoHelper::doNothing() { }
