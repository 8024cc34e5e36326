#include "pages/system/memory.h"

#include "app/asciitext.h"
#include "pages/system/megabytes.h"

#include <QByteArray>

#include <algorithm>

namespace {

/// Takes the first word off the text; an empty one when only white space is left.
QLatin1String takeWord(QByteArray::const_iterator &text, QByteArray::const_iterator end)
{
    const auto begin = std::find_if_not(text, end, isSpace);
    text = std::find_if(begin, end, isSpace);
    return QLatin1String(begin, static_cast<int>(text - begin));
}

/// The text without the word, wherever that stands, and then without white space around it.
QByteArray without(const char *word, QLatin1String text)
{
    const QByteArray rest = QByteArray(text.data(), static_cast<int>(text.size())).replace(word, "");
    const QLatin1String inner = trimmed(QLatin1String(rest));
    return QByteArray(inner.data(), static_cast<int>(inner.size()));
}

} // namespace

QString totalMemory(const QByteArray &meminfo)
{
    for (auto text = meminfo.cbegin(); text != meminfo.cend();) {
        const QLatin1String line = takeLinePiece(text, meminfo.cend());
        if (!line.contains(QLatin1String("MemTotal"), Qt::CaseInsensitive))
            continue;
        const QByteArray figure = without("kB", QLatin1String(without("MemTotal:", line)));
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
