#include "pages/system/memory.h"

#include "app/asciitext.h"
#include "pages/system/megabytes.h"

#include <QByteArray>

#include <algorithm>

namespace {

/// As QTextStream parts words: the two white spaces of Latin-1 above ASCII as well.
bool isSpace(char c)
{
    return QChar(QLatin1Char(c)).isSpace();
}

/// Takes the first word off the text; an empty one when only white space is left.
QLatin1String takeWord(QByteArray::const_iterator &text, QByteArray::const_iterator end)
{
    const auto begin = std::find_if_not(text, end, isSpace);
    text = std::find_if(begin, end, isSpace);
    return QLatin1String(begin, static_cast<int>(text - begin));
}

} // namespace

QString totalMemory(const QByteArray &meminfo)
{
    for (auto text = meminfo.cbegin(); text != meminfo.cend();) {
        QString line = takeLinePiece(text, meminfo.cend());
        if (!line.contains(QLatin1String("MemTotal"), Qt::CaseInsensitive))
            continue;
        const QString figure = line.remove(QLatin1String("MemTotal:")).trimmed().remove(QLatin1String("kB"));
        return wholeMegabytes(static_cast<double>(figure.toFloat()) * 0.001);
    }
    return {};
}

QString freeMemory(const QByteArray &meminfo)
{
    qint64 kilobytes = 0;
    int figures = 0;
    for (auto text = meminfo.cbegin(); figures < 3 && text != meminfo.cend();) {
        const QLatin1String word = takeWord(text, meminfo.cend());
        if (word == QLatin1String("MemFree:") || word == QLatin1String("Buffers:")
            || word == QLatin1String("Cached:")) {
            kilobytes += QString(takeWord(text, meminfo.cend())).toInt();
            ++figures;
        }
    }
    return QString::number(kilobytes / 1024);
}
