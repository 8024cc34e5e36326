#pragma once

#include <QLatin1String>
#include <QStringList>
#include <QVarLengthArray>

#include <vector>

class QByteArray;

/// The arguments of the package query: "-W" and every line of the list of package names, the empty ones
/// included, so that a final newline adds an empty argument. Without a name "-W" alone, which asks for
/// every installed package.
QStringList packageQueryArguments(const QByteArray &packageNames);

/// The texts of a row, which stand in the output of a tool: the row is good as long as the output is.
using PackageRow = QVarLengthArray<QLatin1String, 2>;

/// The fields of every line that the package query printed, up to the first zero byte; lines without any
/// field are left out.
std::vector<PackageRow> packageRows(const QByteArray &queryOutput);

/// One row with the trimmed line for each line that the add-on tool printed, up to the first zero byte;
/// without the tool's headings and without blank lines.
std::vector<PackageRow> addonRows(const QByteArray &toolOutput);
