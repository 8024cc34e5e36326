#include "tests/device/network.h"

#include "tests/device/device.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s %s failed", qPrintable(program), qPrintable(arguments.join(QLatin1Char(' '))));
    return process.readAllStandardOutput();
}

QByteArray sysfsFile(const QString &path)
{
    QFile file(QStringLiteral("/sys/class/net/") + path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(file.fileName()));
    return file.readAll().trimmed();
}

QString dottedQuad(quint32 hostOrder)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(hostOrder >> 24)
        .arg(hostOrder >> 16 & 255)
        .arg(hostOrder >> 8 & 255)
        .arg(hostOrder & 255);
}

} // namespace

namespace Network {

void ip(const char *arguments)
{
    outputOf(QStringLiteral("ip"), QString::fromLocal8Bit(arguments).split(QLatin1Char(' ')));
}

void addInterface(const QString &name)
{
    static int number = 0;
    ip(qPrintable(QStringLiteral("link add %1 type veth peer name end%2").arg(name).arg(++number)));
}

void reset()
{
    const QDir interfaces(QStringLiteral("/sys/class/net"));
    const QStringList names = interfaces.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        // One end of a pair takes the other with it.
        if (name != QLatin1String("lo") && interfaces.exists(name))
            ip(qPrintable(QStringLiteral("link delete ") + name));
    }
    const QString script = QStringLiteral("devices/") + Device::name() + QStringLiteral("/network");
    outputOf(QTest::qFindTestData(script, __FILE__, __LINE__), {});
}

InterfaceFacts facts(const QString &name)
{
    const QByteArray answer = outputOf(QStringLiteral("ip"),
                                       {QStringLiteral("-json"), QStringLiteral("address"),
                                        QStringLiteral("show"), QStringLiteral("dev"), name});
    const QJsonObject link = QJsonDocument::fromJson(answer).array().at(0).toObject();
    const bool up = link[QLatin1String("flags")].toArray().contains(QStringLiteral("UP"));
    InterfaceFacts facts{up ? QStringLiteral("Enabled") : QStringLiteral("Disabled"),
                         QStringLiteral("0.0.0.0"), QStringLiteral("0.0.0.0"),
                         QStringLiteral("255.255.255.255"), link[QLatin1String("address")].toString()};
    const QJsonArray addresses = link[QLatin1String("addr_info")].toArray();
    for (const QJsonValue &value : addresses) {
        const QJsonObject address = value.toObject();
        if (address[QLatin1String("family")].toString() != QLatin1String("inet"))
            continue;
        const int prefix = address[QLatin1String("prefixlen")].toInt();
        facts.address = address[QLatin1String("local")].toString();
        facts.netmask = dottedQuad(prefix == 0 ? 0 : ~quint32{0} << (32 - prefix));
        facts.broadcast = address[QLatin1String("broadcast")].toString();
        break;
    }
    return facts;
}

QString counter(const QString &name, const char *counter)
{
    return QString::fromLatin1(sysfsFile(name + QStringLiteral("/statistics/") + QLatin1String(counter)));
}

void sendFrames(const char *name, int frames, int length)
{
    // What is sent before the kernel has put the new pair into operation is lost.
    const QString state = QLatin1String(name) + QStringLiteral("/operstate");
    if (!QTest::qWaitFor([&state] { return sysfsFile(state) == "up"; }))
        qFatal("%s does not come up", name);
    const int descriptor = socket(AF_PACKET, SOCK_DGRAM, 0);
    sockaddr_ll to = {};
    to.sll_family = AF_PACKET;
    to.sll_protocol = htons(0x88B5); // for local experiments
    to.sll_ifindex = static_cast<int>(if_nametoindex(name));
    to.sll_halen = 6;
    const QByteArray payload(length - 14, 'x');
    for (int i = 0; i < frames; ++i) {
        if (sendto(descriptor, payload.constData(), static_cast<size_t>(payload.size()), 0,
                   reinterpret_cast<const sockaddr *>(&to), sizeof to)
            != payload.size())
            qFatal("nothing can be sent over %s", name);
    }
    close(descriptor);
}

} // namespace Network
