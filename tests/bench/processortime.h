#pragma once

#include <sys/resource.h>

/// User and system time.
inline double processorMilliseconds(const rusage &usage)
{
    const auto milliseconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}
