#include "pages/system/megabytes.h"

#include <QRegularExpression>

QString wholeMegabytes(double megabytes)
{
    static const QRegularExpression fraction(QStringLiteral("[.][0-9]*"));
    return QString::number(megabytes, 'g', 6).remove(fraction);
}

QString megabytes(float megabytes)
{
    return QString::number(static_cast<double>(megabytes), 'g', 6);
}
