#pragma once

#include "pages/software/packagelist.h"

#include <QStandardItemModel>

#include <memory>
#include <vector>

/// The rows of a package list, which come and go all together.
class PackageListModel : public QStandardItemModel {
    Q_OBJECT

public:
    /// A model without rows that has a column for each header.
    PackageListModel(const QStringList &headers, QObject *parent);

    /// Removes the rows. Their items are kept for putRowsBack() until other rows are appended.
    void removeAllRows();

    /// Adds the removed rows again, all at once, as if they had been made anew. False without any, and when
    /// the model has reported any other change since they were added.
    bool putRowsBack();

    /// The items of rows, by column; null where a row is shorter than others.
    using Columns = std::vector<std::vector<std::unique_ptr<QStandardItem>>>;

    /// New items for rows of at least one text each, which belong to no model yet. They show the texts where
    /// these stand, which have to stay for as long as there are the items.
    static Columns createItems(const std::vector<PackageRow> &rows);

    /// Adds the rows; the model gets as many columns as the longest of them needs. It reports all rows at
    /// once, so that a view measures and arranges its columns once.
    void appendRows(Columns columns);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;

private:
    void deleteRowsAway();

    bool m_isAway = false; ///< whether the items stay while the model has no rows
    /// Whether the rows are as they were appended. Every report resets it, an own one only for a moment.
    bool m_isAsMade = false;
};
