#include "pages/software/packagelistview.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>

PackageListView::PackageListView(QWidget *parent)
    : QTreeView(parent)
{
    setRootIsDecorated(false);
    setAlternatingRowColors(true);
    setEditTriggers(NoEditTriggers);
    setUniformRowHeights(true);
    // All rows, so that the width does not depend on which are visible when it is measured.
    header()->setResizeContentsPrecision(-1);
}

void PackageListView::forgetColumnWidths()
{
    columnWidths.clear();
}

void PackageListView::scrollToStart()
{
    for (QScrollBar *bar : {verticalScrollBar(), horizontalScrollBar()})
        bar->setValue(bar->minimum());
}

bool PackageListView::event(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        forgetColumnWidths();
    return QTreeView::event(event);
}

int PackageListView::sizeHintForColumn(int column) const
{
    const auto index = static_cast<size_t>(column);
    if (columnWidths.size() <= index)
        columnWidths.resize(index + 1, -1);
    if (columnWidths[index] < 0)
        columnWidths[index] = QTreeView::sizeHintForColumn(column);
    return columnWidths[index];
}
