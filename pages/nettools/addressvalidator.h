#pragma once

#include <QRegularExpressionValidator>

/// Lets the digits and dots of an IPv4 address be typed, in any number. A text of them alone, as the
/// nameservers that the page begins with, is accepted without the library for regular expressions: that is
/// loaded for the first other character that somebody types.
class AddressValidator : public QRegularExpressionValidator {
public:
    AddressValidator();

    State validate(QString &input, int &position) const override;
};
