#include "app/asciitext.h"

#include <QByteArray>
#include <QIODevice>

#include <array>

QString asciiText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData());
}

std::optional<QString> readLinePiece(QIODevice &device)
{
    // The result of the read tells the end: files under /proc have no size, so atEnd() holds for them at
    // once.
    std::array<char, 1024> piece{};
    if (device.readLine(piece.data(), piece.size()) <= 0)
        return {};
    return QString::fromLatin1(piece.data());
}
