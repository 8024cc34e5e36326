#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class QIODevice;

/// What a longer line of a file is cut into, in bytes.
constexpr int longestLinePiece = 1023;

/// The bytes as Latin-1 text, up to the first zero byte.
QString asciiText(const QByteArray &bytes);

/// Whether the character is white space to Qt, in Latin-1 two above ASCII as well.
inline bool isSpace(char latin1)
{
    // Nearly every character is told by the first comparison.
    return static_cast<signed char>(latin1) <= ' ' && QChar(QLatin1Char(latin1)).isSpace();
}

/// The text without the white space around it.
QLatin1String trimmed(QLatin1String text);

/// The next line of a text device with its newline, as asciiText(), in pieces of at most longestLinePiece
/// bytes. Nothing at the end of the device.
std::optional<QString> readLinePiece(QIODevice &device);

/// Takes off the text what readLinePiece() would read from it; the text ends before the given end. The piece
/// is good as long as the text is.
QLatin1String takeLinePiece(QByteArray::const_iterator &text, QByteArray::const_iterator end);
