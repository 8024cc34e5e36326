#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QRect>
#include <QStringList>

#include <memory>

/// A node of the tree that a program shows to screen readers, asked for over the bus and never cached.
class Accessible {
public:
    enum Role {
        CheckBox = 7,
        ComboBox = 11,
        Label = 29,
        List = 31,
        ListItem = 32,
        Tab = 37,
        TabList = 38,
        Panel = 39,
        PushButton = 43,
        RadioButton = 44,
        SpinButton = 52,
        Table = 55,
        Text = 61,
        Tree = 65,
    };
    enum State { Focused = 12, Showing = 25 };

    Accessible() = default;
    Accessible(const QDBusConnection &bus, const QString &service, const QString &path);

    bool isNull() const { return m_path.isEmpty(); }
    bool operator==(const Accessible &other) const { return m_path == other.m_path; }

    QString name() const;
    int role() const;

    /// The name of the label that a screen reader reads for this node; its own name without such a label.
    QString caption() const;
    bool has(State state) const;
    QList<Accessible> children() const;

    /// Whether it has a text besides its name.
    bool hasText() const;

    /// What a screen reader reads as its content.
    QString text() const;

    /// On the screen, in pixels.
    QRect rectangle() const;

    int rowCount() const;
    int columnCount() const;
    QString columnHeader(int column) const;
    Accessible cell(int row, int column) const;

    /// This node and all below it as far as they are shown, in the order of the tree, without what lists,
    /// tables and trees hold: they call their current cell focused whether or not they have the focus.
    QList<Accessible> shownNodes() const;

    /// The first of shownNodes() of the role and caption; null without one.
    Accessible find(int role, const QString &caption) const;

private:
    QVariant call(const QString &interface, const QString &method, const QVariantList &arguments = {}) const;
    QVariant property(const QString &interface, const QString &name) const;

    QDBusConnection m_bus = QDBusConnection(QString());
    QString m_service;
    QString m_path;
};

/// A session bus of its own with the accessibility bus that a screen reader would listen on.
class AccessibilityBus {
public:
    explicit AccessibilityBus(const QProcessEnvironment &environment);
    ~AccessibilityBus();
    Q_DISABLE_COPY(AccessibilityBus)

    /// False when there is no such bus here.
    bool isConnected() const;

    /// Lets the program show itself to screen readers.
    void admit(QProcess &program) const;

    /// The window of the title that an admitted program shows; null when that takes too long.
    Accessible waitForWindow(const QString &title) const;

private:
    QProcess m_session;
    QString m_address;
    QDBusConnection m_bus = QDBusConnection(QString());
};
