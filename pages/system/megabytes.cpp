#include "pages/system/megabytes.h"

#include <algorithm>

QString wholeMegabytes(double megabytes)
{
    QString figure = QString::number(megabytes, 'g', 6);
    const auto point = std::find(figure.cbegin(), figure.cend(), QLatin1Char('.'));
    if (point == figure.cend())
        return figure;
    const auto rest = std::find_if_not(point + 1, figure.cend(), [](QChar c) { return c.isDigit(); });
    return figure.remove(static_cast<int>(point - figure.cbegin()), static_cast<int>(rest - point));
}

QString megabytes(float megabytes)
{
    return QString::number(static_cast<double>(megabytes), 'g', 6);
}
