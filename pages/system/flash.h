#pragma once

#include <QString>

class QIODevice;

/// The flash disk's figures in megabytes, as they are shown.
struct FlashFigures {
    QString installed; ///< whole decimal megabytes
    QString used; ///< 1024-based megabytes
    QString free; ///< installed less used
};

/// Finds the flash disk by the link /dev/disk/by-label/ROOT, else by the first link of /dev/disk/by-uuid,
/// its size in /proc/partitions, and the space used on all partitions linked there, from df.
/// All three texts are null when no such link or no such disk is found.
FlashFigures readFlash();

/// The disk of the partition that a link points to: the last component less its last character. So
/// "../../sda1" gives "sda", "../../sda12" gives "sda1" and "../../mmcblk0p1" gives "mmcblk0p".
QString diskOfPartition(const QString &linkTarget);

/// The size of the disk in whole decimal megabytes from the text of /proc/partitions (1024-byte blocks).
/// Null when no line ends in the disk's name and a newline.
QString installedFlash(QIODevice &partitions, const QString &disk);

/// The megabytes in a figure of "df -h": K and G are converted, any other last character is dropped and
/// the number taken as it stands; 0 when there is no number.
float usedMegabytes(const QString &dfFigure);
