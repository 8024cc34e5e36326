#pragma once

#include <QWidgetItem>

/// The place of a widget in a layout that is never squeezed below what the widget's content needs, even
/// where that is more than the minimum size that was set on the widget, as it is with large fonts.
class UnsqueezedItem : public QWidgetItem {
public:
    using QWidgetItem::QWidgetItem;
    QSize minimumSize() const override
    {
        return QWidgetItem::minimumSize().expandedTo(wid->minimumSizeHint());
    }
};
