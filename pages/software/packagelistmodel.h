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

    void removeAllRows();

    /// The items of rows, by column; null where a row is shorter than others.
    using Columns = std::vector<std::vector<std::unique_ptr<QStandardItem>>>;

    /// New items for rows of at least one text each, which belong to no model yet. They show the texts where
    /// these stand, which have to stay for as long as there are the items.
    static Columns createItems(const std::vector<PackageRow> &rows);

    /// Adds the rows; the model gets as many columns as the longest of them needs. It reports all rows at
    /// once, so that a view measures and arranges its columns once.
    void appendRows(Columns columns);
};
