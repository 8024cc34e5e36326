#pragma once

#include <QRegularExpressionValidator>

/// Lets the digits and dots of an IPv4 address be typed, in any number. A text of them alone, as most
/// nameservers that the page begins with, is accepted without compiling the pattern: with the first one, much
/// of the library for regular expressions gets into memory.
class AddressValidator : public QRegularExpressionValidator {
public:
    AddressValidator();

    State validate(QString &input, int &position) const override;
};
