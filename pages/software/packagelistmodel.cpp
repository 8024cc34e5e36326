#include "pages/software/packagelistmodel.h"

#include <QSignalBlocker>

#include <algorithm>

namespace {

/// A cell that shows a text where it stands, or another one that it is given. An ordinary item would copy the
/// text into a table of roles, which is most of the work of filling a long list. It can't be cloned.
class TextItem : public QStandardItem {
public:
    explicit TextItem(QLatin1String text)
        : shownText(text)
    {
    }

    QVariant data(int role) const override
    {
        const QVariant given = QStandardItem::data(role);
        const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
        return isText && !given.isValid() ? QString(shownText) : given;
    }

private:
    QLatin1String shownText;
};

int longestRow(const std::vector<PackageListModel::Row> &rows)
{
    size_t longest = 0;
    for (const PackageListModel::Row &row : rows)
        longest = std::max(longest, row.size());
    return static_cast<int>(longest);
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

std::vector<PackageListModel::Row> PackageListModel::createRows(const std::vector<PackageRow> &texts)
{
    std::vector<Row> rows;
    rows.reserve(texts.size());
    for (const PackageRow &rowTexts : texts) {
        Row &row = rows.emplace_back();
        row.reserve(static_cast<size_t>(rowTexts.size()));
        for (const QLatin1String text : rowTexts)
            row.push_back(std::make_unique<TextItem>(text));
    }
    return rows;
}

void PackageListModel::appendRows(std::vector<Row> rows)
{
    if (rows.empty())
        return;
    setColumnCount(std::max(columnCount(), longestRow(rows)));
    int rowNumber = rowCount();
    const int end = rowNumber + static_cast<int>(rows.size());
    beginInsertRows(QModelIndex(), rowNumber, end - 1);
    {
        // Neither the rows while they are empty nor each of their items is worth a report. New rows at the
        // end move no index that a view keeps; to insert elsewhere, the blocked reports would be needed.
        const QSignalBlocker blocker(this);
        setRowCount(end);
        for (Row &row : rows) {
            int column = 0;
            for (std::unique_ptr<QStandardItem> &item : row)
                setItem(rowNumber, column++, item.release());
            ++rowNumber;
        }
    }
    endInsertRows();
}
