#include "app/sysinfohelper.h"

#include "app/waitingwork.h"
#include "framework/userinfo.h"
#include "pages/nettools/pagenettools.h"
#include "pages/network/pagenetwork.h"
#include "pages/software/pagesoftware.h"
#include "pages/system/pagesystem.h"

#include <QApplication>
#include <QEvent>
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

/// Keeps from all widgets, as long as it exists, that their style changed.
class StyleChangeStop : public QObject {
public:
    StyleChangeStop() { qApp->installEventFilter(this); }

    bool eventFilter(QObject * /*widget*/, QEvent *event) override
    {
        return event->type() == QEvent::StyleChange;
    }
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
    // While a page waits for its commands, the tabs are made, the font is loaded, and the page before it is
    // put into its place.
    WaitingWork work;
    work.add([this] {
        setWindowIcon(QIcon(QStringLiteral("/usr/share/icewm/icons/sysinfo_32x32.xpm")));
        createTabs();
    });
    const auto addWhileWaiting = [&](QWidget *page, const QString &label) {
        work.add([this, page, label] { addPage(page, label); });
    };
    work.add(loadFont);
    addWhileWaiting(new pageSystem(this), QObject::tr("General"));
    addWhileWaiting(new pageNetwork(this), QObject::tr("Network"));
    addWhileWaiting(new pageNetTools(this), QObject::tr("Net Tools"));
    addWhileWaiting(new pageSoftware(this), QObject::tr("Software Information"));
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
    {
        // A new parent may have another style, so each of the page's widgets is told to compute anew what
        // depends on it. Here all have the application's.
        const StyleChangeStop stop;
        area->setWidget(page);
    }
    setTabOrder(m_tabs->tabBar(), area);
}

void SysInfoHelper::doNothing() { }
