#pragma once

#include <QStringList>

#include <optional>

class QIODevice;

/// The names of the interfaces that are offered to the user when they are present, in the order of the offer.
QStringList candidateInterfaces();

/// Whether /proc/net/dev has counters for the interface. A line for a longer name that contains this one
/// counts as well.
bool isInterfacePresent(const QString &name);

/// The first line of /etc/hostname, blanks included; empty when there is none.
QString readHostName();

/// The first domain of the first "search" line of /etc/resolv.conf; empty when there is none.
QString readSearchDomain();

/// The gateway of the first default route that "route -n" lists, as dotted quad; empty when there is none.
QString readDefaultGateway();

/// The address of the DHCP server that configured the interface, from the variables that the DHCP client
/// left below /var/lib/dhcp3/vars. "none", translated, when it left none.
QString readDhcpServer(const QString &name);

/// Whether any line of /etc/network/interfaces contains the interface's name and "dhcp"; false when the file
/// cannot be opened.
bool isDhcpConfigured(const QString &name);

/// The host name in the text of a host name file, which is in the locale's encoding: its first line, blanks
/// included; empty when the text is.
QString parseHostName(QIODevice &file);

/// The first domain of the first "search" line in the text of a resolver configuration, which is in the
/// locale's encoding. Empty when no line starts with that word, or the first that does names no domain.
QString parseSearchDomain(QIODevice &resolverConfiguration);

/// The value of the last "dhcp_server_identifier=" line, trimmed; nothing when there is no such line.
std::optional<QString> parseDhcpServer(QIODevice &dhcpVariables);

/// Whether any line contains the interface's name, be it as part of a longer word, and "dhcp".
bool mentionsDhcp(QIODevice &interfaces, const QString &name);
