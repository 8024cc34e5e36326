#include "pages/software/packagelist.h"

#include "app/asciitext.h"

#include <utility>

namespace {

QStringList linesOf(const QByteArray &bytes)
{
    return asciiText(bytes).split(QLatin1Char('\n'));
}

} // namespace

QStringList packageQueryArguments(const QByteArray &packageNames)
{
    const QStringList names = linesOf(packageNames);
    QStringList arguments{QStringLiteral("-W")};
    // Nothing splits into one empty name, too, and that would ask for no package at all.
    if (names != QStringList{QString()})
        arguments += names;
    return arguments;
}

QList<QStringList> packageRows(const QByteArray &queryOutput)
{
    const QString text = asciiText(queryOutput) + QLatin1Char('\n');
    QList<QStringList> rows;
    QStringList row;
    auto fieldStart = text.cbegin();
    for (auto character = text.cbegin(); character != text.cend(); ++character) {
        if (!character->isSpace())
            continue;
        if (character > fieldStart)
            row.append(QString(fieldStart, static_cast<int>(character - fieldStart)));
        fieldStart = character + 1;
        if (*character == QLatin1Char('\n') && !row.isEmpty())
            rows.append(std::exchange(row, {}));
    }
    return rows;
}

QList<QStringList> addonRows(const QByteArray &toolOutput)
{
    QList<QStringList> rows;
    const QStringList lines = linesOf(toolOutput);
    for (const QString &line : lines) {
        const QString addon = line.trimmed();
        if (!addon.isEmpty() && !addon.startsWith(QLatin1String("The Orvo packages")))
            rows.append({addon});
    }
    return rows;
}
