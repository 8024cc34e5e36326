#include "pages/system/memory.h"

#include "app/asciitext.h"
#include "pages/system/megabytes.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <system_error>

namespace {

/// Takes the first word off the text; an empty one when only white space is left.
QLatin1String takeWord(QByteArray::const_iterator &text, QByteArray::const_iterator end)
{
    const auto begin = std::find_if_not(text, end, isSpace);
    text = std::find_if(begin, end, isSpace);
    return QLatin1String(begin, static_cast<int>(text - begin));
}

/// As many letters as the longest of the keys below has.
constexpr std::ptrdiff_t longestKey = 8;

/// What stands before the given place, from the last white space on; the end of it when that is longer than
/// any key, so that a long text without white space is not gone through for each of its colons.
QLatin1String wordBefore(QByteArray::const_iterator place, QByteArray::const_iterator begin)
{
    const auto limit = place - std::min(place - begin, longestKey + 1);
    const auto space =
        std::find_if(std::make_reverse_iterator(place), std::make_reverse_iterator(limit), isSpace);
    return QLatin1String(space.base(), static_cast<int>(place - space.base()));
}

/// Copies the text without the word, wherever that stands in it, and returns the end of the copy. The copy
/// may take the place of the text.
char *copyWithout(std::string_view word, const char *text, const char *end, char *copy)
{
    while (text != end) {
        if (static_cast<std::size_t>(end - text) >= word.size() && std::equal(word.begin(), word.end(), text))
            text += word.size();
        else
            *copy++ = *text++;
    }
    return copy;
}

/// The figure as QByteArray::toFloat() has it, but 0 for one that single precision does not reach.
float toFloat(QLatin1String figure)
{
    // The kernel writes whole figures, for which there is a shorter way to the same.
    unsigned whole = 0;
    const auto [rest, error] = std::from_chars(figure.begin(), figure.end(), whole);
    if (error == std::errc() && rest == figure.end())
        return static_cast<float>(whole);
    bool isNumber = false;
    const float number =
        QByteArray::fromRawData(figure.data(), static_cast<int>(figure.size())).toFloat(&isNumber);
    return isNumber ? number : 0;
}

/// The word as QString::toInt() has it: a decimal number with or without a sign, else 0.
int toInt(QLatin1String word)
{
    const bool hasPlus = word.startsWith(QLatin1Char('+')) && !word.startsWith(QLatin1String("+-"));
    int number = 0;
    const auto [rest, error] = std::from_chars(word.begin() + (hasPlus ? 1 : 0), word.end(), number);
    return error == std::errc() && rest == word.end() ? number : 0;
}

bool countsAsFree(QLatin1String key)
{
    return key == QLatin1String("MemFree:") || key == QLatin1String("Buffers:")
        || key == QLatin1String("Cached:");
}

} // namespace

QString totalMemory(const QByteArray &meminfo)
{
    for (auto text = meminfo.cbegin(); text != meminfo.cend();) {
        const QLatin1String line = takeLinePiece(text, meminfo.cend());
        if (!line.contains(QLatin1String("MemTotal"), Qt::CaseInsensitive))
            continue;
        std::array<char, longestLinePiece> figure{};
        char *end = copyWithout("MemTotal:", line.begin(), line.end(), figure.data());
        end = copyWithout("kB", figure.data(), end, figure.data());
        const float kilobytes = toFloat(trimmed(QLatin1String(figure.data(), end)));
        return wholeMegabytes(static_cast<double>(kilobytes) * 0.001);
    }
    return {};
}

QString freeMemory(const QByteArray &meminfo)
{
    qint64 kilobytes = 0;
    int figures = 0;
    auto text = meminfo.cbegin();
    const auto end = meminfo.cend();
    // To look for the colons of the keys is quicker than to look at each word.
    while (figures < 3 && (text = std::find(text, end, ':')) != end) {
        ++text;
        if (countsAsFree(wordBefore(text, meminfo.cbegin())) && (text == end || isSpace(*text))) {
            kilobytes += toInt(takeWord(text, end));
            ++figures;
        }
    }
    return QString::number(kilobytes / 1024);
}
