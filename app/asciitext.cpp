#include "app/asciitext.h"

#include <QIODevice>

#include <algorithm>
#include <array>

QString asciiText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData());
}

QLatin1String trimmed(QLatin1String text)
{
    const char *const begin = std::find_if_not(text.begin(), text.end(), isSpace);
    const char *end = text.end();
    while (end > begin && isSpace(end[-1]))
        --end;
    return QLatin1String(begin, end);
}

std::optional<QString> readLinePiece(QIODevice &device)
{
    // The result of the read tells the end: files under /proc have no size, so atEnd() holds for them at
    // once.
    std::array<char, longestLinePiece + 1> piece{};
    if (device.readLine(piece.data(), piece.size()) <= 0)
        return {};
    return QString::fromLatin1(piece.data());
}

QLatin1String takeLinePiece(QByteArray::const_iterator &text, QByteArray::const_iterator end)
{
    const auto begin = text;
    const auto limit = begin + std::min<std::ptrdiff_t>(longestLinePiece, end - begin);
    const auto newline = std::find(begin, limit, '\n');
    text = newline == limit ? limit : newline + 1;
    return QLatin1String(begin, std::find(begin, text, '\0'));
}
