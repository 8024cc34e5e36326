#pragma once

#include <QString>

struct ifreq;

/// One network interface, known by its kernel name. Addresses and state are asked of the kernel anew on every
/// call; only the MAC address and the driver's name are remembered.
/// Numeric addresses are IPv4 in network byte order, as the kernel hands them out.
class NetworkDevice {
public:
    explicit NetworkDevice(const QString &name);
    virtual ~NetworkDevice();

    /// The kernel's name of the interface (eth0), as given to the constructor, whether or not it exists.
    QString name() const;

    /// The interface's directory in sysfs, without a trailing slash.
    QString sysfsPath() const;

    /// Sends one interface request (SIOCGIF...) for this interface; the kernel's answer is left in the
    /// record. False when there is no such interface, or it has nothing to answer.
    bool queryInterface(unsigned long request, ifreq &req) const;

    /// A numeric address as dotted quad.
    static QString addressToString(quint32 value);

    /// The interface's address and netmask; 0 when it has none or does not exist.
    quint32 rawAddress() const;
    quint32 rawNetmask() const;

    /// The network's own and its broadcast address, computed from address and netmask. Without those the
    /// network is 0 and the broadcast address all ones.
    quint32 rawNetwork() const;
    quint32 rawBroadcast() const;

    /// The same four as dotted quads, "0.0.0.0" for 0.
    QString address() const;
    QString netmask() const;
    QString network() const;
    QString broadcast() const;

    /// Whether the interface is switched on, with or without a carrier; false when it does not exist.
    bool isUp() const;

    /// The MAC address as the kernel writes it (00:1a:2b:3c:4d:5e), from the file "address" in sysfs.
    /// Empty when that cannot be opened; then the next call tries again.
    QString macAddress();

    /// The name of the driver (e1000), from the link "device/driver" in sysfs.
    /// Null for an interface without one, a virtual one for instance; then the next call tries again.
    QString driver();

private:
    QString hwAddress;
    QString ifName;
    QString driverName;
};
