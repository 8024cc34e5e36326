#pragma once

#include <QString>

class QIODevice;

/// The BIOS version from the DMI tables; empty when they cannot be read.
QString readBiosVersion();

/// The date of the BIOS from the DMI tables, as they write it (month/day/year); empty when they cannot be
/// read.
QString readBiosReleaseDate();

/// The device's serial number from the DMI tables; empty when they cannot be read.
QString readSerialNumber();

/// The release of the running kernel from "uname -r", with its newline. Null when the command cannot be
/// started or does not end within the given milliseconds; a command that goes on is killed.
QString readKernelVersion(int timeout = 30000);

/// The first line of the image's identifier file (/etc/imageid), trimmed; a line of blanks gives an empty
/// text. Null when the file is empty.
QString buildId(QIODevice &imageId);
