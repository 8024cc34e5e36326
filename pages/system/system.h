#pragma once

#include <QString>

class QIODevice;

/// What /proc/cpuinfo says of the processor, each value as the kernel wrote it, trimmed.
struct CpuInfo {
    QString modelName;
    QString processor;
    QString mhz;
    QString cacheSize;
    QString instructionCacheSize;
    QString dataCacheSize;
};

/// Reads the text of /proc/cpuinfo over the given starting values. A key counts wherever it stands in a
/// line, in either case, and the last line with it wins; a line without a colon changes nothing.
CpuInfo readCpuInfo(QIODevice &cpuinfo, CpuInfo info);

/// The platform's name from the maker's identification tool; empty when the tool is absent or silent.
QString readPlatform();

/// The processor's greatest speed from the DMI tables, with the unit that they give ("1600 MHz"); empty
/// when they cannot be read.
QString readProcessorMaxSpeed();
