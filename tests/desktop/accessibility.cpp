#include "tests/desktop/accessibility.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QThread>

namespace {

const QString accessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");
const QString tableInterface = QStringLiteral("org.a11y.atspi.Table");
const QString textInterface = QStringLiteral("org.a11y.atspi.Text");
const QString connectionName = QStringLiteral("accessibility");

struct Reference {
    QString service;
    QDBusObjectPath path;
};

const QDBusArgument &operator>>(const QDBusArgument &argument, Reference &reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

struct Relation {
    quint32 type = 0;
    QList<Reference> targets;
};

const QDBusArgument &operator>>(const QDBusArgument &argument, Relation &relation)
{
    argument.beginStructure();
    argument >> relation.type >> relation.targets;
    argument.endStructure();
    return argument;
}

template <typename Value>
Value read(const QVariant &answer)
{
    Value value{};
    if (answer.canConvert<QDBusArgument>())
        answer.value<QDBusArgument>() >> value;
    return value;
}

QVariant firstValue(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

void stop(QProcess &process)
{
    process.terminate();
    if (!process.waitForFinished(5000)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace

Accessible::Accessible(const QDBusConnection &bus, const QString &service, const QString &path)
    : m_bus(bus)
    , m_service(service)
    , m_path(path)
{
}

QVariant Accessible::call(const QString &interface, const QString &method,
                          const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(m_service, m_path, interface, method);
    message.setArguments(arguments);
    return firstValue(m_bus.call(message));
}

QVariant Accessible::property(const QString &interface, const QString &name) const
{
    return call(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"), {interface, name})
        .value<QDBusVariant>()
        .variant();
}

QString Accessible::name() const
{
    return property(accessibleInterface, QStringLiteral("Name")).toString();
}

int Accessible::role() const
{
    return call(accessibleInterface, QStringLiteral("GetRole")).toInt();
}

QString Accessible::caption() const
{
    constexpr quint32 labelledBy = 2;
    const auto relations = read<QList<Relation>>(call(accessibleInterface, QStringLiteral("GetRelationSet")));
    for (const Relation &relation : relations) {
        if (relation.type == labelledBy && !relation.targets.isEmpty()) {
            const Reference &label = relation.targets.constFirst();
            return Accessible(m_bus, label.service, label.path.path()).name();
        }
    }
    return name();
}

bool Accessible::hasText() const
{
    return call(accessibleInterface, QStringLiteral("GetInterfaces")).toStringList().contains(textInterface);
}

bool Accessible::has(State state) const
{
    const auto words = read<QList<quint32>>(call(accessibleInterface, QStringLiteral("GetState")));
    return ((words.value(state / 32) >> (state % 32)) & 1U) != 0;
}

QList<Accessible> Accessible::children() const
{
    QList<Accessible> result;
    const auto references = read<QList<Reference>>(call(accessibleInterface, QStringLiteral("GetChildren")));
    for (const Reference &reference : references)
        result.append(Accessible(m_bus, reference.service, reference.path.path()));
    return result;
}

QString Accessible::text() const
{
    return call(textInterface, QStringLiteral("GetText"), {0, -1}).toString();
}

QRect Accessible::rectangle() const
{
    const QVariant answer = call(QStringLiteral("org.a11y.atspi.Component"), QStringLiteral("GetExtents"),
                                 {QVariant::fromValue(quint32{0})});
    if (!answer.canConvert<QDBusArgument>())
        return {};
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const auto argument = answer.value<QDBusArgument>();
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return {x, y, width, height};
}

int Accessible::rowCount() const
{
    return property(tableInterface, QStringLiteral("NRows")).toInt();
}

int Accessible::columnCount() const
{
    return property(tableInterface, QStringLiteral("NColumns")).toInt();
}

QString Accessible::columnHeader(int column) const
{
    return call(tableInterface, QStringLiteral("GetColumnDescription"), {column}).toString();
}

Accessible Accessible::cell(int row, int column) const
{
    const auto reference =
        read<Reference>(call(tableInterface, QStringLiteral("GetAccessibleAt"), {row, column}));
    return {m_bus, reference.service, reference.path.path()};
}

QList<Accessible> Accessible::shownNodes() const
{
    if (!has(Showing))
        return {};
    QList<Accessible> result{*this};
    const int ownRole = role();
    if (ownRole == List || ownRole == Table || ownRole == Tree)
        return result;
    const QList<Accessible> direct = children();
    for (const Accessible &child : direct)
        result += child.shownNodes();
    return result;
}

Accessible Accessible::find(int role, const QString &caption) const
{
    const QList<Accessible> nodes = shownNodes();
    for (const Accessible &node : nodes) {
        if (node.role() == role && node.caption() == caption)
            return node;
    }
    return {};
}

AccessibilityBus::AccessibilityBus(const QProcessEnvironment &environment)
{
    m_session.setProcessEnvironment(environment);
    m_session.setStandardErrorFile(QProcess::nullDevice());
    m_session.start(
        QStringLiteral("dbus-daemon"),
        {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    while (!m_session.canReadLine() && m_session.waitForReadyRead(15000)) { }
    m_address = QString::fromLatin1(m_session.readLine()).trimmed();
    if (m_address.isEmpty())
        return;
    const QString session = QStringLiteral("session");
    const QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                       QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    const QString address =
        firstValue(QDBusConnection::connectToBus(m_address, session).call(question)).toString();
    QDBusConnection::disconnectFromBus(session);
    if (!address.isEmpty())
        m_bus = QDBusConnection::connectToBus(address, connectionName);
}

AccessibilityBus::~AccessibilityBus()
{
    QDBusConnection::disconnectFromBus(connectionName);
    stop(m_session);
}

bool AccessibilityBus::isConnected() const
{
    return m_bus.isConnected();
}

void AccessibilityBus::admit(QProcess &program) const
{
    QProcessEnvironment environment = program.processEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
    environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    program.setProcessEnvironment(environment);
}

Accessible AccessibilityBus::waitForWindow(const QString &title) const
{
    const Accessible registry(m_bus, QStringLiteral("org.a11y.atspi.Registry"),
                              QStringLiteral("/org/a11y/atspi/accessible/root"));
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 30000) {
        const QList<Accessible> programs = registry.children();
        for (const Accessible &program : programs) {
            const QList<Accessible> windows = program.children();
            for (const Accessible &window : windows) {
                if (window.name() == title)
                    return window;
            }
        }
        QThread::msleep(20);
    }
    return {};
}
