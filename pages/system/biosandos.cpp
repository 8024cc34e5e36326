#include "pages/system/biosandos.h"

#include "app/asciitext.h"
#include "app/commandrunner.h"
#include "app/waitingwork.h"

#include <QIODevice>
#include <QProcess>

QString readBiosVersion()
{
    return runCommand(QStringLiteral("sudo /usr/sbin/dmidecode -t bios|grep -m 1 'Version'|cut -d : -f 2"));
}

QString readBiosReleaseDate()
{
    return runCommand(
        QStringLiteral("sudo /usr/sbin/dmidecode -t bios|grep -m 1 'Release Date'|cut -d : -f 2"));
}

QString readSerialNumber()
{
    return runCommand(
        QStringLiteral("sudo /usr/sbin/dmidecode -t system|grep -m 1 'Serial Number'|cut -d : -f 2"));
}

QString readKernelVersion(int timeout)
{
    QProcess uname;
    uname.start(QStringLiteral("uname"), {QStringLiteral("-r")}, QIODevice::ReadWrite);
    if (waitForFinished(uname, timeout))
        return asciiText(uname.readAllStandardOutput());
    uname.kill();
    uname.waitForFinished();
    return {};
}

QString buildId(QIODevice &imageId)
{
    const std::optional<QString> line = readLinePiece(imageId);
    return line && !line->isEmpty() ? line->trimmed() : QString();
}
