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

} // namespace

PackageListModel::PackageListModel(const QStringList &headers, QObject *parent)
    : QStandardItemModel(0, int(headers.size()), parent)
{
    for (int section = 0; section < headers.size(); ++section)
        setHeaderData(section, Qt::Horizontal, headers.at(section), Qt::EditRole);

    const auto noteChange = [this] { m_isAsMade = false; };
    connect(this, &QAbstractItemModel::dataChanged, this, noteChange);
    connect(this, &QAbstractItemModel::layoutChanged, this, noteChange);
    connect(this, &QAbstractItemModel::modelReset, this, noteChange);
    connect(this, &QAbstractItemModel::rowsInserted, this, noteChange);
    connect(this, &QAbstractItemModel::rowsRemoved, this, noteChange);
    connect(this, &QAbstractItemModel::columnsInserted, this, noteChange);
    connect(this, &QAbstractItemModel::columnsRemoved, this, noteChange);
}

void PackageListModel::removeAllRows()
{
    const int count = rowCount();
    if (!m_isAsMade) {
        removeRows(0, count);
    } else if (count > 0) {
        beginRemoveRows(QModelIndex(), 0, count - 1);
        m_isAway = true;
        endRemoveRows();
        m_isAsMade = true;
    }
}

bool PackageListModel::putRowsBack()
{
    if (!m_isAway || !m_isAsMade)
        return false;
    beginInsertRows(QModelIndex(), 0, QStandardItemModel::rowCount() - 1);
    m_isAway = false;
    endInsertRows();
    m_isAsMade = true;
    return true;
}

QModelIndex PackageListModel::index(int row, int column, const QModelIndex &parent) const
{
    return m_isAway ? QModelIndex() : QStandardItemModel::index(row, column, parent);
}

int PackageListModel::rowCount(const QModelIndex &parent) const
{
    return m_isAway ? 0 : QStandardItemModel::rowCount(parent);
}

bool PackageListModel::hasChildren(const QModelIndex &parent) const
{
    return !m_isAway && QStandardItemModel::hasChildren(parent);
}

PackageListModel::Columns PackageListModel::createItems(const std::vector<PackageRow> &rows)
{
    Columns columns;
    for (size_t row = 0; row < rows.size(); ++row) {
        const auto length = static_cast<size_t>(rows[row].size());
        while (columns.size() < length)
            columns.emplace_back(rows.size());
        for (size_t column = 0; column < length; ++column)
            columns[column][row] = std::make_unique<TextItem>(rows[row][static_cast<int>(column)]);
    }
    return columns;
}

void PackageListModel::appendRows(Columns columns)
{
    deleteRowsAway();
    if (columns.empty())
        return;
    const bool willBeAsMade = m_isAsMade || rowCount() == 0;
    setColumnCount(std::max(columnCount(), static_cast<int>(columns.size())));
    const int firstRow = rowCount();
    QList<QStandardItem *> firstItems;
    firstItems.reserve(static_cast<int>(columns.front().size()));
    for (std::unique_ptr<QStandardItem> &item : columns.front())
        firstItems.append(item.release());
    beginInsertRows(QModelIndex(), firstRow, firstRow + static_cast<int>(firstItems.size()) - 1);
    {
        // Neither the rows while they are not whole nor each of their items is worth a report. New rows at
        // the end move no index that a view keeps; to insert elsewhere, the blocked reports would be needed.
        const QSignalBlocker blocker(this);
        invisibleRootItem()->insertRows(firstRow, firstItems);
        for (size_t column = 1; column < columns.size(); ++column) {
            int row = firstRow;
            for (std::unique_ptr<QStandardItem> &item : columns[column]) {
                if (item)
                    setItem(row, static_cast<int>(column), item.release());
                ++row;
            }
        }
    }
    endInsertRows();
    m_isAsMade = willBeAsMade;
}

void PackageListModel::deleteRowsAway()
{
    if (!m_isAway)
        return;
    // Whoever looks at the model was told before that they are gone.
    const QSignalBlocker blocker(this);
    m_isAway = false;
    removeRows(0, rowCount());
}
