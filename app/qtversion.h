#pragma once

#include <QTextStream>

/// Has the stream decode what it reads with the encoding of the locale. Qt 5 does so from the start; Qt 6
/// starts with UTF-8. Bytes that the encoding does not know become replacement characters.
inline void useLocaleEncoding(QTextStream &stream)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    stream.setEncoding(QStringConverter::System);
#else
    Q_UNUSED(stream)
#endif
}
