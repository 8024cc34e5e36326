#include "pages/network/networkdevice.h"

#include "app/asciitext.h"

#include <QFile>
#include <QStringList>

#include <cstring>

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

quint32 internetAddress(const sockaddr &socketAddress)
{
    sockaddr_in internet;
    static_assert(sizeof internet == sizeof socketAddress, "an IPv4 socket address fills the generic one");
    std::memcpy(&internet, &socketAddress, sizeof internet);
    return internet.sin_addr.s_addr;
}

} // namespace

NetworkDevice::NetworkDevice(const QString &name)
    : ifName(name)
{
}

NetworkDevice::~NetworkDevice() = default;

QString NetworkDevice::name() const
{
    return ifName;
}

QString NetworkDevice::sysfsPath() const
{
    return QStringLiteral("/sys/class/net/") + ifName;
}

bool NetworkDevice::queryInterface(unsigned long request, ifreq &req) const
{
    // Without a socket the request fails like one for an interface that does not exist.
    const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
    std::strncpy(req.ifr_name, ifName.toLocal8Bit().constData(), IFNAMSIZ);
    const bool answered = ioctl(descriptor, request, &req) != -1;
    close(descriptor);
    return answered;
}

QString NetworkDevice::addressToString(quint32 value)
{
    in_addr address{};
    address.s_addr = value;
    return QString::fromLatin1(inet_ntoa(address));
}

quint32 NetworkDevice::rawAddress() const
{
    ifreq req{};
    return queryInterface(SIOCGIFADDR, req) ? internetAddress(req.ifr_addr) : 0;
}

quint32 NetworkDevice::rawNetmask() const
{
    ifreq req{};
    return queryInterface(SIOCGIFNETMASK, req) ? internetAddress(req.ifr_netmask) : 0;
}

quint32 NetworkDevice::rawNetwork() const
{
    const quint32 address = rawAddress();
    return address & rawNetmask();
}

quint32 NetworkDevice::rawBroadcast() const
{
    const quint32 address = rawAddress();
    const quint32 netmask = rawNetmask();
    return ~netmask | (netmask & address);
}

QString NetworkDevice::address() const
{
    return addressToString(rawAddress());
}

QString NetworkDevice::netmask() const
{
    return addressToString(rawNetmask());
}

QString NetworkDevice::network() const
{
    return addressToString(rawNetwork());
}

QString NetworkDevice::broadcast() const
{
    return addressToString(rawBroadcast());
}

bool NetworkDevice::isUp() const
{
    ifreq req{};
    return queryInterface(SIOCGIFFLAGS, req) && (req.ifr_flags & IFF_UP) != 0;
}

QString NetworkDevice::macAddress()
{
    if (hwAddress.isNull()) {
        QFile file(sysfsPath() + QStringLiteral("/address"));
        if (file.open(QIODevice::ReadOnly))
            hwAddress = asciiText(file.readLine().simplified());
    }
    return hwAddress;
}

QString NetworkDevice::driver()
{
    if (driverName.isNull()) {
        const QString target = QFile::symLinkTarget(sysfsPath() + QStringLiteral("/device/driver"));
        if (!target.isEmpty())
            driverName = target.split(QLatin1Char('/')).constLast();
    }
    return driverName;
}
