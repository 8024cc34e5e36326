#include "app/sysinfohelper.h"
#include "resources/qss/stylesheet.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

namespace {

QString described(const QWidget *widget)
{
    QString text = widget->accessibleName();
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        text = label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        text = button->text();
    if (const auto *group = qobject_cast<const QGroupBox *>(widget))
        text = group->title();
    const QRect place = widget->geometry();
    return QStringLiteral("%1 '%2' at %3,%4 of %5x%6")
        .arg(QLatin1String(widget->metaObject()->className()), text)
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height());
}

/// The widgets that a layout of the widget places, as far as they are visible.
QList<QWidget *> placedChildren(const QWidget *widget)
{
    QList<QWidget *> result;
    const auto children = widget->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (child->isVisible() && !child->isWindow())
            result.append(child);
    }
    return result;
}

bool arrangesItself(const QWidget *widget)
{
    return qobject_cast<const QAbstractScrollArea *>(widget) || qobject_cast<const QComboBox *>(widget)
        || qobject_cast<const QAbstractSpinBox *>(widget) || qobject_cast<const QLineEdit *>(widget);
}

/// The size in which the widget shows its whole text.
QSize neededSize(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        const QSize text = label->fontMetrics().size(0, label->text());
        return label->text().isEmpty() ? QSize() : text.expandedTo(label->sizeHint());
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
        return text.expandedTo(button->sizeHint());
    }
    if (arrangesItself(widget))
        return widget->minimumSizeHint();
    return {};
}

QStringList flawsOfGroup(const QGroupBox *group)
{
    QStyleOptionGroupBox option;
    option.initFrom(group);
    option.text = group->title();
    option.lineWidth = 1;
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    const QRect title =
        group->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, group);
    QStringList flaws;
    // A title has just the room of its ink.
    if (title.width() < group->fontMetrics().tightBoundingRect(group->title()).width()
        || !group->rect().contains(title))
        flaws << QStringLiteral("cut off title: ") + described(group);
    const QList<QWidget *> children = placedChildren(group);
    for (const QWidget *child : children) {
        if (child->geometry().intersects(title))
            flaws << QStringLiteral("over the title: ") + described(child);
    }
    return flaws;
}

/// What is wrong with the places and sizes of the visible widgets below this one.
QStringList flaws(const QWidget *widget)
{
    QStringList result;
    const QList<QWidget *> children = placedChildren(widget);
    for (const QWidget *child : children) {
        if (!widget->rect().contains(child->geometry()))
            result << QStringLiteral("outside of its place: ") + described(child);
        for (const QWidget *other : children) {
            if (other == child)
                break;
            if (other->geometry().intersects(child->geometry()))
                result << QStringLiteral("overlap: ") + described(other) + QStringLiteral(" and ")
                        + described(child);
        }
        const QSize needed = neededSize(child);
        if (child->width() < needed.width() || child->height() < needed.height())
            result << QStringLiteral("cut off (needs %1x%2): ").arg(needed.width()).arg(needed.height())
                    + described(child);
        if (const auto *group = qobject_cast<const QGroupBox *>(child))
            result << flawsOfGroup(group);
        if (!arrangesItself(child))
            result << flaws(child);
    }
    return result;
}

QStringList flawsOfTabs(const QTabBar *bar)
{
    QStringList result;
    for (int i = 0; i < bar->count(); ++i) {
        if (bar->tabRect(i).width() <= bar->fontMetrics().size(0, bar->tabText(i)).width()
            || bar->tabRect(i).height() < bar->fontMetrics().height())
            result << QStringLiteral("cut off tab: ") + bar->tabText(i);
        if (i > 0 && bar->tabRect(i).intersects(bar->tabRect(i - 1)))
            result << QStringLiteral("overlapping tab: ") + bar->tabText(i);
    }
    return result;
}

/// Whatever does not fit can be scrolled to.
QStringList flawsOfScrolling(const QScrollArea *area)
{
    QStringList result;
    const QSize page = area->widget()->size();
    const QSize visible = area->viewport()->size();
    if (page.height() > visible.height() && !area->verticalScrollBar()->isVisible())
        result << QStringLiteral("no vertical scroll bar");
    if (page.width() > visible.width() && !area->horizontalScrollBar()->isVisible())
        result << QStringLiteral("no horizontal scroll bar");
    if (page.height() - visible.height() > area->verticalScrollBar()->maximum())
        result << QStringLiteral("scrolls not to the lower end");
    if (page.width() - visible.width() > area->horizontalScrollBar()->maximum())
        result << QStringLiteral("scrolls not to the right end");
    return result;
}

/// Those of the shown page, and of each of its panels where it has several.
QStringList flawsOfPage(const QScrollArea *area)
{
    QStringList result;
    const auto look = [&] {
        QCoreApplication::processEvents();
        result << flawsOfScrolling(area) << flaws(area->widget());
    };
    look();
    const auto tools = area->findChildren<QRadioButton *>();
    for (QRadioButton *tool : tools) {
        tool->click();
        look();
    }
    return result;
}

QStringList flawsOfPages(const QWidget &dialog)
{
    QStringList result;
    auto *tabs = dialog.findChild<QTabWidget *>();
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        result << flawsOfPage(qobject_cast<QScrollArea *>(tabs->currentWidget()));
        result << flawsOfTabs(tabs->tabBar());
    }
    return result;
}

} // namespace

/// Everything on the four pages stays legible in windows of all sizes and with all fonts.
class tst_Resizing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsEverything_data();
    void showsEverything();
};

void tst_Resizing::initTestCase()
{
    qApp->setStyleSheet(applicationStyleSheet());
}

void tst_Resizing::showsEverything_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {8, 9, 12, 16, 24})
        QTest::addRow("%d points", points) << points;
}

void tst_Resizing::showsEverything()
{
    QFETCH(int, points);
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), points));
    SysInfoHelper dialog(1);
    dialog.show();
    QCOMPARE(dialog.devicePixelRatioF(),
             qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble());
    for (const QSize size : {QSize(320, 240), QSize(640, 480), QSize(800, 600), QSize(1920, 1200)}) {
        dialog.resize(size);
        QCOMPARE(dialog.size(), size);
        const QStringList found = flawsOfPages(dialog);
        QVERIFY2(found.isEmpty(),
                 qPrintable(QStringLiteral("%1x%2:\n").arg(size.width()).arg(size.height())
                            + found.join(QLatin1Char('\n'))));
    }
}

QTEST_MAIN(tst_Resizing)
#include "tst_resizing.moc"
