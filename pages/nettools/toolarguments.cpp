#include "pages/nettools/toolarguments.h"

namespace {

void appendFlag(QStringList &arguments, QLatin1String flag, bool wanted)
{
    if (wanted)
        arguments << flag;
}

void appendFlag(QStringList &arguments, QLatin1String flag, const std::optional<int> &value)
{
    if (value)
        arguments << flag << QString::number(*value);
}

void appendFlag(QStringList &arguments, QLatin1String flag, const std::optional<QString> &value)
{
    if (value)
        arguments << flag << *value;
}

} // namespace

QStringList pingArguments(const PingOptions &options)
{
    QStringList arguments;
    appendFlag(arguments, QLatin1String("-U"), options.userToUserLatency);
    appendFlag(arguments, QLatin1String("-n"), options.numericAddresses);
    appendFlag(arguments, QLatin1String("-v"), options.verbose);
    appendFlag(arguments, QLatin1String("-A"), options.adaptive);
    appendFlag(arguments, QLatin1String("-c"), options.count);
    appendFlag(arguments, QLatin1String("-i"), options.intervalSeconds);
    appendFlag(arguments, QLatin1String("-s"), options.packetDataSize);
    appendFlag(arguments, QLatin1String("-t"), options.timeToLive);
    return arguments << options.target;
}

QStringList dnsLookupArguments(const DnsLookupOptions &options)
{
    QStringList arguments{options.hostName};
    if (options.nameServer)
        arguments << *options.nameServer;
    return arguments;
}

QStringList traceRouteArguments(const TraceRouteOptions &options)
{
    QStringList arguments;
    appendFlag(arguments, QLatin1String("-n"), options.numericAddresses);
    appendFlag(arguments, QLatin1String("-m"), options.maxHops);
    appendFlag(arguments, QLatin1String("-q"), options.queriesPerHop);
    appendFlag(arguments, QLatin1String("-s"), options.sourceAddress);
    appendFlag(arguments, QLatin1String("-w"), options.responseWaitSeconds);
    appendFlag(arguments, QLatin1String("-p"), options.udpPort);
    arguments << options.target;
    if (options.datagramSize)
        arguments << QString::number(*options.datagramSize);
    return arguments;
}
