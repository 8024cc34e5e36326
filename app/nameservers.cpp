#include "app/nameservers.h"

#include "app/commandrunner.h"

QString readNameServers()
{
    return runCommand(QStringLiteral("awk '/nameserver/ { printf \"%s \", $2 }' /etc/resolv.conf"));
}
