#pragma once

#include <QString>

class QByteArray;

/// Installed memory in whole decimal megabytes, from the "MemTotal" line of /proc/meminfo: kilobytes
/// times 0.001, fraction cut off. A null string when there is no such line.
QString totalMemory(const QByteArray &meminfo);

/// Free memory in whole 1024-based megabytes: the first three of MemFree, Buffers and Cached of
/// /proc/meminfo, in kilobytes, divided by 1024. Without any of them "0".
QString freeMemory(const QByteArray &meminfo);
