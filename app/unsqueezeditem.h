#pragma once

#include <QWidget>
#include <QWidgetItem>

/// The place of a widget in a layout that is never squeezed below what the widget's content needs, even
/// where that is more than the minimum size that was set on the widget, as it is with large fonts. It keeps
/// the sizes until the widget reports others, as the items do that layouts make themselves.
class UnsqueezedItem : public QWidgetItemV2 {
public:
    using QWidgetItemV2::QWidgetItemV2;
    QSize minimumSize() const override
    {
        return QWidgetItemV2::minimumSize().expandedTo(wid->minimumSizeHint());
    }
};
