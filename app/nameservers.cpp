#include "app/nameservers.h"

#include "app/commandrunner.h"

QString nameServersCommand()
{
    return QStringLiteral("awk '/nameserver/ { printf \"%s \", $2 }' /etc/resolv.conf");
}

QString readNameServers()
{
    return runCommand(nameServersCommand());
}
