#pragma once

#include <QString>

/// The real network interfaces of the simulated thin client.
namespace Network {

/// Runs the ip command with blank-separated arguments; a failure ends the test program.
void ip(const char *arguments);

/// Adds an interface, its far end being called end1, end2 and so on.
void addInterface(const QString &name);

/// Puts the interfaces back to what they are when the device starts.
void reset();

/// What "ip -json" says of an interface, as the page is to show it.
struct InterfaceFacts {
    QString state;
    QString address;
    QString netmask;
    QString broadcast;
    QString macAddress;
};
InterfaceFacts facts(const QString &name);

/// One of the interface's counters from its folder "statistics" in sysfs.
QString counter(const QString &name, const char *counter);

/// Sends frames of the given length out of the interface; nobody listens to their protocol.
void sendFrames(const char *name, int frames, int length);

} // namespace Network
