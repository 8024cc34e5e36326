#include "pages/nettools/addressvalidator.h"

#include <QRegularExpression>

#include <algorithm>

AddressValidator::AddressValidator()
    : QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9.]+")))
{
}

QValidator::State AddressValidator::validate(QString &input, int &position) const
{
    const auto isOfAddress = [](QChar character) {
        return (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
            || character == QLatin1Char('.');
    };
    if (!input.isEmpty() && std::all_of(input.cbegin(), input.cend(), isOfAddress))
        return Acceptable;
    return QRegularExpressionValidator::validate(input, position);
}
