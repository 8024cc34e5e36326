#include "pages/software/packagelist.h"

#include "app/asciitext.h"

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
    QList<QStringList> rows;
    const QStringList lines = linesOf(queryOutput);
    for (const QString &line : lines) {
        const QString fields = line.simplified();
        if (!fields.isEmpty())
            rows.append(fields.split(QLatin1Char(' ')));
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
