#include "pages/network/networksettings.h"

#include "app/asciitext.h"
#include "app/commandrunner.h"
#include "app/qtversion.h"
#include "pages/network/netstatsview.h"

#include <QFile>
#include <QObject>
#include <QRegularExpression>
#include <QTextStream>

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
    static const QRegularExpression whiteSpace(QStringLiteral("\\s+"),
                                               QRegularExpression::UseUnicodePropertiesOption);
    while (!stream.atEnd()) {
        const QStringList parts = stream.readLine().split(whiteSpace);
        if (parts.size() > 1 && parts.constFirst() == QLatin1String("search"))
            return parts.at(1);
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
