#pragma once

#include <QList>
#include <QStringList>

class QByteArray;

/// The arguments of the package query: "-W" and every line of the list of package names, the empty ones
/// included, so that a final newline adds an empty argument. Without a name "-W" alone, which asks for
/// every installed package.
QStringList packageQueryArguments(const QByteArray &packageNames);

/// The fields of every line that the package query printed, Latin-1 text up to the first zero byte; lines
/// without any field are left out.
QList<QStringList> packageRows(const QByteArray &queryOutput);

/// One row with the trimmed line for each line that the add-on tool printed, Latin-1 text up to the first
/// zero byte; without the tool's headings and without blank lines.
QList<QStringList> addonRows(const QByteArray &toolOutput);
