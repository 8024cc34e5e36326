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

    using Row = std::vector<std::unique_ptr<QStandardItem>>;

    /// New rows of one item per text, which belong to no model yet. The items show the texts where these
    /// stand and don't copy them.
    static std::vector<Row> createRows(const std::vector<PackageRow> &texts);

    /// Adds the rows; the model gets as many columns as the longest of them needs. It reports all rows at
    /// once, so that a view measures and arranges its columns once.
    void appendRows(std::vector<Row> rows);
};
