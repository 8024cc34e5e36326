#pragma once

#include "app/arrangedwhenshown.h"

#include <QTableWidget>

class QTextStream;

/// The table of the interface's traffic counters, received and transmitted, as the kernel counts them.
/// It shows eth0, whichever interface the page shows, and "???" for what was never read.
class NetStatsView : public ArrangedWhenShown<QTableWidget> {
public:
    explicit NetStatsView(QWidget *parent);

    /// Puts a caption and a value into the row. A row without a value heads a section: its caption is
    /// centred.
    void setRow(int row, const QString &caption, const QString &value);

    /// Reads the counters anew; they stay as they are when there is no such interface.
    void updateStats();
};

/// The counters of the first line of /proc/net/dev in which the name, as a regular expression, is found
/// anywhere: sixteen decimal numbers, separated by blanks. Empty when there is no such line.
QString readInterfaceCounters(const QString &name);

/// The command line that readInterfaceCounters() runs.
QString interfaceCountersCommand(const QString &name);

/// Shows the stream's next word as the item's text, an empty one at the end of the stream.
QTextStream &readCounter(QTextStream &stream, QTableWidgetItem *item);
