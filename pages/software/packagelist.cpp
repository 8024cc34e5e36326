#include "pages/software/packagelist.h"

#include "app/asciitext.h"

#include <algorithm>

namespace {

/// What the function makes of each line of the bytes up to the first zero byte; empty rows are left out.
template <typename Function>
std::vector<PackageRow> rowsOfLines(const QByteArray &bytes, Function rowOf)
{
    std::vector<PackageRow> rows;
    rows.reserve(static_cast<size_t>(bytes.count('\n')) + 1);
    const char *line = bytes.constData();
    const char *const end = line + qstrlen(line);
    while (line < end) {
        const char *const lineEnd = std::find(line, end, '\n');
        const PackageRow row = rowOf(QLatin1String(line, lineEnd));
        if (!row.isEmpty())
            rows.push_back(row);
        line = lineEnd == end ? end : lineEnd + 1;
    }
    return rows;
}

/// The words of the line, which white space parts.
PackageRow fields(QLatin1String line)
{
    PackageRow row;
    const char *field = std::find_if_not(line.begin(), line.end(), isSpace);
    while (field != line.end()) {
        const char *const fieldEnd = std::find_if(field, line.end(), isSpace);
        row.append(QLatin1String(field, fieldEnd));
        field = std::find_if_not(fieldEnd, line.end(), isSpace);
    }
    return row;
}

/// The trimmed line; nothing for a blank line and the tool's heading.
PackageRow addon(QLatin1String line)
{
    const QLatin1String name = trimmed(line);
    if (name.isEmpty() || name.startsWith(QLatin1String("The Orvo packages")))
        return {};
    return {name};
}

} // namespace

QStringList packageQueryArguments(const QByteArray &packageNames)
{
    const QStringList names = asciiText(packageNames).split(QLatin1Char('\n'));
    QStringList arguments{QStringLiteral("-W")};
    // Nothing splits into one empty name, too, and that would ask for no package at all.
    if (names != QStringList{QString()})
        arguments += names;
    return arguments;
}

std::vector<PackageRow> packageRows(const QByteArray &queryOutput)
{
    return rowsOfLines(queryOutput, fields);
}

std::vector<PackageRow> addonRows(const QByteArray &toolOutput)
{
    return rowsOfLines(toolOutput, addon);
}
