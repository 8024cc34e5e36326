#include "pages/software/packagelistmodel.h"

#include <QSignalBlocker>

#include <algorithm>

namespace {

/// A cell that shows its text as it is. It shares the text with the rows, while an ordinary item would copy
/// it into a table of roles, which is most of the work of filling a long list. It can't be cloned.
class TextItem : public QStandardItem {
public:
    explicit TextItem(const QString &text)
        : shownText(text)
    {
    }

    QVariant data(int role) const override { return isText(role) ? shownText : QStandardItem::data(role); }

    void setData(const QVariant &value, int role) override
    {
        if (!isText(role)) {
            QStandardItem::setData(value, role);
            return;
        }
        shownText = value.toString();
        emitDataChanged();
    }

private:
    static bool isText(int role) { return role == Qt::DisplayRole || role == Qt::EditRole; }

    QString shownText;
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

std::vector<PackageListModel::Row> PackageListModel::createRows(const QList<QStringList> &texts)
{
    std::vector<Row> rows;
    rows.reserve(static_cast<size_t>(texts.size()));
    for (const QStringList &rowTexts : texts) {
        Row &row = rows.emplace_back();
        row.reserve(static_cast<size_t>(rowTexts.size()));
        for (const QString &text : rowTexts)
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
