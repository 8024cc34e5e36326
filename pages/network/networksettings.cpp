#include "pages/network/networksettings.h"

#include "app/asciitext.h"
#include "app/commandrunner.h"
#include "app/qtversion.h"
#include "pages/network/netstatsview.h"

#include <QFile>
#include <QObject>
#include <QTextStream>

#include <algorithm>

namespace {

/// The word that follows the keyword, with which the line starts, and white space; an empty one at the end of
/// the line. Nothing when the keyword stands alone or is the start of a longer word. By hand, as it would be
/// the only use of regular expressions at the start, and the first one is costly.
std::optional<QString> wordAfter(QLatin1String keyword, const QString &line)
{
    if (!line.startsWith(keyword))
        return {};
    const auto isWhiteSpace = [](QChar character) { return character.isSpace(); };
    const auto rest = line.cbegin() + keyword.size();
    const auto word = std::find_if_not(rest, line.cend(), isWhiteSpace);
    if (word == rest)
        return {};
    return QString(word, static_cast<int>(std::find_if(word, line.cend(), isWhiteSpace) - word));
}

} // namespace

QStringList candidateInterfaces()
{
    // The last one is a single name.
    return {QStringLiteral("eth0"),  QStringLiteral("eth1"), QStringLiteral("wlan0"),
            QStringLiteral("wlan1"), QStringLiteral("via0"), QStringLiteral("athath_pci0")};
}

bool isInterfacePresent(const QString &name)
{
    return !readInterfaceCounters(name).isEmpty();
}

QString readHostName()
{
    QFile file(QStringLiteral("/etc/hostname"));
    return file.open(QIODevice::ReadOnly) ? parseHostName(file) : QString();
}

QString readSearchDomain()
{
    QFile file(QStringLiteral("/etc/resolv.conf"));
    return file.open(QIODevice::ReadOnly) ? parseSearchDomain(file) : QString();
}

QString readDefaultGateway()
{
    return runCommand(QStringLiteral("/sbin/route -n | awk '/^0.0.0.0/ { print $2 }'"));
}

QString readDhcpServer(const QString &name)
{
    QFile variables(QStringLiteral("/var/lib/dhcp3/vars/") + name
                    + QStringLiteral("/dhcp_server_identifier"));
    std::optional<QString> server;
    if (variables.open(QIODevice::ReadOnly))
        server = parseDhcpServer(variables);
    return server ? *server : QObject::tr("none");
}

bool isDhcpConfigured(const QString &name)
{
    QFile interfaces(QStringLiteral("/etc/network/interfaces"));
    return interfaces.open(QIODevice::ReadOnly) && mentionsDhcp(interfaces, name);
}

QString parseHostName(QIODevice &file)
{
    QTextStream stream(&file);
    useLocaleEncoding(stream);
    return stream.readLine();
}

QString parseSearchDomain(QIODevice &resolverConfiguration)
{
    QTextStream stream(&resolverConfiguration);
    useLocaleEncoding(stream);
    while (!stream.atEnd()) {
        if (const std::optional<QString> domain = wordAfter(QLatin1String("search"), stream.readLine()))
            return *domain;
    }
    return {};
}

std::optional<QString> parseDhcpServer(QIODevice &dhcpVariables)
{
    const QLatin1String key("dhcp_server_identifier=");
    std::optional<QString> server;
    while (std::optional<QString> piece = readLinePiece(dhcpVariables)) {
        if (piece->contains(key))
            server = piece->remove(key).trimmed();
    }
    return server;
}

bool mentionsDhcp(QIODevice &interfaces, const QString &name)
{
    bool mentioned = false;
    while (const std::optional<QString> piece = readLinePiece(interfaces))
        mentioned = mentioned || (piece->contains(name) && piece->contains(QLatin1String("dhcp")));
    return mentioned;
}
