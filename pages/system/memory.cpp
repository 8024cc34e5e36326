#include "pages/system/memory.h"

#include "app/asciitext.h"
#include "pages/system/megabytes.h"

#include <QIODevice>
#include <QTextStream>

QString totalMemory(QIODevice &meminfo)
{
    while (std::optional<QString> line = readLinePiece(meminfo)) {
        if (!line->contains(QLatin1String("MemTotal"), Qt::CaseInsensitive))
            continue;
        const QString figure = line->remove(QLatin1String("MemTotal:")).trimmed().remove(QLatin1String("kB"));
        return wholeMegabytes(static_cast<double>(figure.toFloat()) * 0.001);
    }
    return {};
}

QString freeMemory(QIODevice &meminfo)
{
    QTextStream words(&meminfo);
    qint64 kilobytes = 0;
    int figures = 0;
    while (figures < 3 && words.status() != QTextStream::ReadPastEnd) {
        QString word;
        words >> word;
        if (word == QLatin1String("MemFree:") || word == QLatin1String("Buffers:")
            || word == QLatin1String("Cached:")) {
            words >> word;
            kilobytes += word.toInt();
            ++figures;
        }
    }
    return QString::number(kilobytes / 1024);
}
