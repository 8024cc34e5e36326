#pragma once

#include <algorithm>
#include <utility>
#include <vector>

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

/// The value that a quarter of the values do not reach, and the one that a quarter of them exceed.
inline std::pair<double, double> quartiles(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return {values[values.size() / 4], values[values.size() - 1 - values.size() / 4]};
}
