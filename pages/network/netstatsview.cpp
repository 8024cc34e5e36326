#include "pages/network/netstatsview.h"

#include "app/commandrunner.h"

#include <QHeaderView>
#include <QIODevice>
#include <QTextStream>

namespace {

constexpr int counterRowHeight = 20;

QTableWidgetItem *createItem(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled);
    return item;
}

} // namespace

NetStatsView::NetStatsView(QWidget *parent)
    : ArrangedWhenShown(parent)
{
    setLineWidth(1);
    setMidLineWidth(1);
    setColumnCount(2);
    setRowCount(15);
    setAccessibleName(QObject::tr("Interface Statistics"));
    // Tab goes on to the next input, not from cell to cell.
    setTabKeyNavigation(false);
    setColumnWidth(0, 174);
    verticalHeader()->setVisible(false);
    // The least height that the style allows a row may be larger.
    verticalHeader()->setMinimumSectionSize(counterRowHeight);
    horizontalHeader()->setFixedHeight(23);
    setHorizontalHeaderLabels({QObject::tr("Interface Statistics"), QObject::tr("Value")});

    const QString section;
    const QString unread = QStringLiteral("???");
    setRow(0, QObject::tr("Received"), section);
    setRow(1, QObject::tr("Packets"), unread);
    setRow(2, QObject::tr("Bytes"), unread);
    setRow(3, QObject::tr("Errors"), unread);
    setRow(4, QObject::tr("Dropped"), unread);
    setRow(5, QObject::tr("Overruns"), unread);
    setRow(6, QObject::tr("Frame Errors"), unread);
    setRow(7, QObject::tr("Transmitted"), section);
    setRow(8, QObject::tr("Packets"), unread);
    setRow(9, QObject::tr("Bytes"), unread);
    setRow(10, QObject::tr("Errors"), unread);
    setRow(11, QObject::tr("Dropped"), unread);
    setRow(12, QObject::tr("Overruns"), unread);
    setRow(13, QObject::tr("Carrier Errors"), unread);
    setRow(14, QObject::tr("Collisions"), unread);
}

void NetStatsView::setRow(int row, const QString &caption, const QString &value)
{
    const Qt::Alignment alignment = value.isEmpty() ? Qt::AlignHCenter : Qt::AlignRight;
    QTableWidgetItem *captionItem = createItem(caption);
    captionItem->setData(Qt::TextAlignmentRole, int(alignment | Qt::AlignVCenter));
    setItem(row, 0, captionItem);
    setItem(row, 1, createItem(value));
    setRowHeight(row, counterRowHeight);
}

void NetStatsView::updateStats()
{
    QString counters = readInterfaceCounters(QStringLiteral("eth0"));
    QTextStream stream(&counters, QIODevice::ReadOnly);
    if (stream.atEnd())
        return;
    for (const int row : {2, 1, 3, 4, 5, 6})
        readCounter(stream, item(row, 1));
    QString compressedOrMulticast;
    stream >> compressedOrMulticast >> compressedOrMulticast;
    // The kernel counts collisions before carrier errors.
    for (const int row : {9, 8, 10, 11, 12, 14, 13})
        readCounter(stream, item(row, 1));
}

QString interfaceCountersCommand(const QString &name)
{
    return QStringLiteral("awk '/%1/ { split($0,aa,\":\"); print aa[2] }' /proc/net/dev").arg(name);
}

QString readInterfaceCounters(const QString &name)
{
    return runCommand(interfaceCountersCommand(name));
}

QTextStream &readCounter(QTextStream &stream, QTableWidgetItem *item)
{
    QString word;
    stream >> word;
    item->setData(Qt::DisplayRole, word);
    return stream;
}
