#pragma once

#include <QString>

/// The figure with six significant digits and its fraction cut off: 8010.072 gives 8010. From 1000000 on
/// the six digits are written with an exponent, whose fraction goes as well: 1000204.9 gives 1e+06.
QString wholeMegabytes(double megabytes);

/// The figure with up to six significant digits, fraction included: 1836.01171875 gives 1836.01.
QString megabytes(float megabytes);
