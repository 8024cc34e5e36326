#include "pages/software/packagelistmodel.h"

#include <QSignalBlocker>

#include <algorithm>

namespace {

/// A cell that shows its text as it is. It shares the text with the rows, while an ordinary item would copy
/// it into a table of roles, which is most of the work of filling a long list.
class TextItem : public QStandardItem {
public:
    explicit TextItem(const QString &text)
        : shownText(text)
    {
    }

    QVariant data(int role) const override
    {
        return role == Qt::DisplayRole || role == Qt::EditRole ? shownText : QStandardItem::data(role);
    }

private:
    QString shownText;
};

int longestRow(const QList<QStringList> &rows)
{
    int longest = 0;
    for (const QStringList &row : rows)
        longest = std::max(longest, int(row.size()));
    return longest;
}

} // namespace

PackageListModel::PackageListModel(const QStringList &headers, QObject *parent)
    : QStandardItemModel(0, int(headers.size()), parent)
{
    for (int section = 0; section < headers.size(); ++section)
        setHeaderData(section, Qt::Horizontal, headers.at(section), Qt::EditRole);
}

void PackageListModel::removeAllRows()
{
    removeRows(0, rowCount());
}

void PackageListModel::appendRows(const QList<QStringList> &rows)
{
    if (rows.isEmpty())
        return;
    setColumnCount(std::max(columnCount(), longestRow(rows)));
    int row = rowCount();
    const int end = row + int(rows.size());
    beginInsertRows(QModelIndex(), row, end - 1);
    {
        // Neither the rows while they are empty nor each of their items is worth a report.
        const QSignalBlocker blocker(this);
        setRowCount(end);
        for (const QStringList &texts : rows) {
            for (int column = 0; column < texts.size(); ++column)
                setItem(row, column, new TextItem(texts.at(column)));
            ++row;
        }
    }
    endInsertRows();
}
