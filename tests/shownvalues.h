#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QWidget>

/// The caption's position in the grid of its group box, and what stands beside it.
struct CaptionedRow {
    const QGridLayout *grid = nullptr;
    int row = -1;
    int column = -1;

    QLabel *labelAt(int columnsAfter) const
    {
        QLayoutItem *item = grid ? grid->itemAtPosition(row, column + columnsAfter) : nullptr;
        return item ? qobject_cast<QLabel *>(item->widget()) : nullptr;
    }
};

/// Finds the row of the label with the given text among the page's grids.
inline CaptionedRow captionedRow(const QWidget *page, const QString &caption)
{
    const QList<QLabel *> labels = page->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        const auto *grid = qobject_cast<QGridLayout *>(label->parentWidget()->layout());
        const int index = grid ? grid->indexOf(label) : -1;
        if (label->text() != caption || index < 0)
            continue;
        int rowSpan = 0;
        int columnSpan = 0;
        CaptionedRow found;
        found.grid = grid;
        grid->getItemPosition(index, &found.row, &found.column, &rowSpan, &columnSpan);
        return found;
    }
    return {};
}

/// The text of the label that stands the given number of columns after the caption.
inline QString shownValue(const QWidget *page, const char *caption, int columnsAfter = 1)
{
    const QLabel *label = captionedRow(page, QString::fromUtf8(caption)).labelAt(columnsAfter);
    return label ? label->text() : QStringLiteral("no such label");
}
