#pragma once

#include "pages/system/pagesystem.h"
#include "tests/device/device.h"
#include "tests/shownvalues.h"

// What the tests of the General tab share: where the device keeps its facts and where the page shows them.

namespace SystemPage {

inline const QString cpuinfo = QStringLiteral("/proc/cpuinfo");
inline const QString meminfo = QStringLiteral("/proc/meminfo");
inline const QString partitions = QStringLiteral("/proc/partitions");
inline const QString dmidecode = QStringLiteral("/usr/sbin/dmidecode");

/// What a new page shows beside the caption.
inline QString shownByNewPage(const char *caption, int columnsAfter = 1)
{
    const pageSystem page(nullptr);
    return shownValue(&page, caption, columnsAfter);
}

/// Free, used and installed.
inline QStringList boxedValues(const QWidget &page, const char *caption)
{
    return {shownValue(&page, caption, 1), shownValue(&page, caption, 2), shownValue(&page, caption, 3)};
}

} // namespace SystemPage
