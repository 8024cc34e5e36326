#include "pages/software/packagelist.h"

#include "app/asciitext.h"

#include <algorithm>
#include <utility>

namespace {

/// The lines of the bytes up to the first zero byte, where they stand.
std::vector<QLatin1String> textLines(const QByteArray &bytes)
{
    std::vector<QLatin1String> lines;
    const char *line = bytes.constData();
    const char *const end = line + qstrlen(line);
    while (line < end) {
        const char *const lineEnd = std::find(line, end, '\n');
        lines.emplace_back(line, lineEnd);
        line = lineEnd == end ? end : lineEnd + 1;
    }
    return lines;
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
    std::vector<PackageRow> rows;
    for (const QLatin1String line : textLines(queryOutput)) {
        PackageRow row;
        const char *field = std::find_if_not(line.begin(), line.end(), isSpace);
        while (field != line.end()) {
            const char *const fieldEnd = std::find_if(field, line.end(), isSpace);
            row.emplace_back(field, fieldEnd);
            field = std::find_if_not(fieldEnd, line.end(), isSpace);
        }
        if (!row.empty())
            rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<PackageRow> addonRows(const QByteArray &toolOutput)
{
    std::vector<PackageRow> rows;
    for (const QLatin1String line : textLines(toolOutput)) {
        const QLatin1String addon = trimmed(line);
        if (!addon.isEmpty() && !addon.startsWith(QLatin1String("The Orvo packages")))
            rows.push_back({addon});
    }
    return rows;
}
