#pragma once

#include <QTreeView>

#include <vector>

/// A flat, read-only list. To measure a column means to lay out the text of every row, so it is done once
/// for a content and not each time that the same content is put into the model anew.
class PackageListView : public QTreeView {
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
    mutable std::vector<int> columnWidths; ///< in pixels; -1 where not measured
};
