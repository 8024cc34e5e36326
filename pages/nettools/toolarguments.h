#pragma once

#include <QStringList>

#include <optional>

/// What one run of ping is asked to do; a setting without a value is left to ping.
struct PingOptions {
    bool userToUserLatency = false;
    bool numericAddresses = false;
    bool verbose = false;
    bool adaptive = false;
    std::optional<int> count;
    std::optional<int> intervalSeconds;
    std::optional<int> packetDataSize;
    std::optional<int> timeToLive;
    QString target;
};

/// What one run of host is asked to look up; without a nameserver it asks those of /etc/resolv.conf.
struct DnsLookupOptions {
    QString hostName;
    std::optional<QString> nameServer;
};

/// What one run of traceroute is asked to do; a setting without a value is left to traceroute.
struct TraceRouteOptions {
    bool numericAddresses = false;
    std::optional<int> maxHops;
    std::optional<int> queriesPerHop;
    std::optional<QString> sourceAddress;
    std::optional<int> responseWaitSeconds;
    std::optional<QString> udpPort;
    QString target;
    std::optional<int> datagramSize;
};

/// The arguments of ping: the flags, each followed by its value as an argument of its own, then the target.
/// Nothing is checked; an empty target is an empty argument.
QStringList pingArguments(const PingOptions &options);

/// The arguments of host: the name to look up and the nameserver to ask, if one is given. Nothing is
/// checked; what is empty is an empty argument.
QStringList dnsLookupArguments(const DnsLookupOptions &options);

/// The arguments of traceroute: the flags, each followed by its value as an argument of its own, the target,
/// and behind it the datagram size in bytes. Nothing is checked; what is empty is an empty argument.
QStringList traceRouteArguments(const TraceRouteOptions &options);
