#pragma once

#include "app/arrangedwhenshown.h"

#include <QTreeView>

#include <vector>

/// A flat, read-only list, wide enough for the widest of all its rows. To lay out the text of every row takes
/// longer than the programs that list the packages: a column is measured once for a content, not each time
/// that the same content is put into the model anew, only in the rows that an estimate finds the widest, and
/// not before the list is shown.
class PackageListView : public ArrangedWhenShown<QTreeView> {
    Q_OBJECT

public:
    explicit PackageListView(QWidget *parent = nullptr);

    /// Has the columns measured again, for another content.
    void forgetColumnWidths();

    /// Shows the first row and the start of its text.
    void scrollToStart();

protected:
    bool event(QEvent *event) override;
    int sizeHintForColumn(int column) const override;

private:
    int measureColumn(int column) const;

    mutable std::vector<int> columnWidths; ///< in pixels; -1 where not measured
};
