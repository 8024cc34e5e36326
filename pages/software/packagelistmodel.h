#pragma once

#include <QStandardItemModel>

/// The rows of a package list, which come and go all together.
class PackageListModel : public QStandardItemModel {
    Q_OBJECT

public:
    /// A model without rows that has a column for each header.
    PackageListModel(const QStringList &headers, QObject *parent);

    void removeAllRows();

    /// Adds rows of one item per text; the model gets as many columns as the longest row needs. It reports
    /// all rows at once, so that a view measures and arranges its columns once.
    void appendRows(const QList<QStringList> &rows);
};
