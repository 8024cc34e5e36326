#include "pages/software/packagelistview.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <utility>

namespace {

/// How many cells of a column are measured exactly.
constexpr size_t measuredCells = 32;

/// Widths of texts from the widths of their single characters. Only what a character's neighbours change
/// (kerning, ligatures) is missing, and with it nearly all of the work.
class WidthEstimate {
public:
    explicit WidthEstimate(const QFont &font)
        : metrics(font)
    {
        widths.fill(-1);
    }

    qreal operator()(const QString &text)
    {
        qreal sum = 0;
        for (const QChar character : text)
            sum += widthOf(character);
        return sum;
    }

private:
    qreal widthOf(QChar character)
    {
        if (character.unicode() >= widths.size())
            return metrics.horizontalAdvance(character);
        qreal &width = widths[character.unicode()];
        if (width < 0)
            width = metrics.horizontalAdvance(character);
        return width;
    }

    QFontMetricsF metrics;
    std::array<qreal, 256> widths;
};

/// The header that a tree view has, but it leaves its captions unmeasured until it is shown; then Qt has the
/// sections resized.
class Header : public QHeaderView {
public:
    explicit Header(QWidget *parent)
        : QHeaderView(Qt::Horizontal, parent)
    {
        setSectionsMovable(true);
        setStretchLastSection(true);
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }

protected:
    QSize sectionSizeFromContents(int section) const override
    {
        return isVisible() ? QHeaderView::sectionSizeFromContents(section) : QSize(0, 0);
    }
};

} // namespace

PackageListView::PackageListView(QWidget *parent)
    : ArrangedWhenShown(parent)
{
    setHeader(new Header(this));
    setRootIsDecorated(false);
    setAlternatingRowColors(true);
    setEditTriggers(NoEditTriggers);
    setUniformRowHeights(true);
}

void PackageListView::forgetColumnWidths()
{
    columnWidths.clear();
}

void PackageListView::scrollToStart()
{
    for (QScrollBar *bar : {verticalScrollBar(), horizontalScrollBar()})
        bar->setValue(bar->minimum());
}

bool PackageListView::event(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        forgetColumnWidths();
    return QTreeView::event(event);
}

int PackageListView::sizeHintForColumn(int column) const
{
    if (!isVisible())
        return -1;
    const auto index = static_cast<size_t>(column);
    if (columnWidths.size() <= index)
        columnWidths.resize(index + 1, -1);
    if (columnWidths[index] < 0)
        columnWidths[index] = measureColumn(column);
    return columnWidths[index];
}

int PackageListView::measureColumn(int column) const
{
    const int rowCount = model() ? model()->rowCount() : 0;
    if (rowCount == 0)
        return -1;
    std::vector<std::pair<qreal, int>> rows;
    rows.reserve(static_cast<size_t>(rowCount));
    WidthEstimate estimate(font());
    for (int row = 0; row < rowCount; ++row)
        rows.emplace_back(estimate(model()->index(row, column).data().toString()), row);
    const auto measured = rows.begin() + static_cast<std::ptrdiff_t>(std::min(measuredCells, rows.size()));
    std::partial_sort(rows.begin(), measured, rows.end(), std::greater<>());
    int width = 0;
    for (auto row = rows.begin(); row != measured; ++row)
        width = std::max(width, sizeHintForIndex(model()->index(row->second, column)).width());
    return width;
}
