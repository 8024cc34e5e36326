#include "pages/system/flash.h"

#include "app/asciitext.h"
#include "app/commandrunner.h"
#include "pages/system/megabytes.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cstdlib>

namespace {

QString lastComponent(const QString &path)
{
    return path.split(QLatin1Char('/')).constLast().trimmed();
}

QString withoutLastCharacter(QString text)
{
    text.chop(1);
    return text;
}

/// A word of a shell command. Letters, digits and what else the kernel's names have stay as they are; a word
/// with anything else is quoted.
QString shellWord(QString word)
{
    const auto isPlain = [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("_.:+-").contains(character);
    };
    if (std::all_of(word.cbegin(), word.cend(), isPlain))
        return word;
    return QLatin1Char('\'') + word.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

/// The names of the partitions that the listing command prints, one a line.
QStringList listedPartitions(const QString &listCommand)
{
    QStringList partitions;
    std::FILE *pipe = popen(listCommand.toLatin1().constData(), "r");
    if (pipe) {
        char *line = nullptr;
        size_t capacity = 0;
        while (getdelim(&line, &capacity, '\n', pipe) > 0) {
            const QStringList words =
                QString::fromLatin1(line).trimmed().split(QLatin1Char(' '), Qt::SkipEmptyParts);
            partitions.append(words.isEmpty() ? QString() : lastComponent(words.constLast()));
        }
        std::free(line);
    }
    closeCommandPipe(pipe);
    return partitions;
}

float usedFlash(const QString &listCommand)
{
    float sum = 0.0F;
    const QStringList partitions = listedPartitions(listCommand);
    for (const QString &partition : partitions) {
        const QString figure = runCommand(QStringLiteral("df -lh | grep /dev/") + shellWord(partition)
                                          + QStringLiteral(" | awk '{print $3}'"));
        if (!figure.isEmpty())
            sum += usedMegabytes(figure);
    }
    return sum;
}

} // namespace

FlashFigures readFlash()
{
    const QString listByUuid = QStringLiteral("ls -l /dev/disk/by-uuid/*|awk '{ print $NF }'");
    QString listPartitions = QStringLiteral("ls -l /dev/disk/by-label/*|awk '{ print $NF }'");
    QString root = runCommand(QStringLiteral("readlink /dev/disk/by-label/ROOT"));
    if (root.isEmpty()) {
        listPartitions = listByUuid;
        root = runCommand(listByUuid);
    }
    QFile partitions(QStringLiteral("/proc/partitions"));
    if (root.isEmpty() || !partitions.open(QIODevice::ReadOnly))
        return {};
    const QString installed = installedFlash(partitions, diskOfPartition(root));
    partitions.close();
    if (installed.isNull())
        return {};
    const float used = usedFlash(listPartitions);
    return {installed, megabytes(used), megabytes(installed.toFloat() - used)};
}

QString diskOfPartition(const QString &linkTarget)
{
    return withoutLastCharacter(lastComponent(linkTarget));
}

QString installedFlash(QIODevice &partitions, const QString &disk)
{
    while (const std::optional<QString> line = readLinePiece(partitions)) {
        const QStringList fields = line->split(QLatin1Char(' '));
        if (fields.size() > 1 && fields.constLast() == disk + QLatin1Char('\n')) {
            const float blocks = fields.at(fields.size() - 2).trimmed().toFloat();
            return wholeMegabytes(static_cast<double>(blocks) * 0.001024);
        }
    }
    return {};
}

float usedMegabytes(const QString &dfFigure)
{
    const float number = withoutLastCharacter(dfFigure).toFloat();
    if (dfFigure.endsWith(QLatin1Char('K')))
        return number * 0.0009765625F;
    if (dfFigure.endsWith(QLatin1Char('G')))
        return number * 1024.0F;
    return number;
}
