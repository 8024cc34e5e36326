#pragma once

#include <QWidget>

class NetStatsView;
class QComboBox;
class QGroupBox;
class QLabel;
class QListWidget;

/// The "Network" tab: one of the network interfaces with its counters, the default gateway and the DNS
/// settings. All but the choice of interfaces is read again every three seconds.
class pageNetwork : public QWidget {
    Q_OBJECT

public:
    explicit pageNetwork(QWidget *parent);
    ~pageNetwork() override;

public Q_SLOTS:
    /// Shows the facts of the interface with this name anew and reads the counters, which stay eth0's. The
    /// gateway and the DNS settings wait for the next refresh.
    void deviceSelected(const QString &label);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void createLayout();
    void createInterfaceGroup();
    void createNetworkGroup();
    void createDnsGroup();

    void fillInterfaceList();
    void gatherNetworkInfo();
    void updateDeviceInfo(const QString &name);

    QGroupBox *interfaceGroup = nullptr;
    QComboBox *deviceCombo = nullptr;
    QLabel *netmaskValue = nullptr;
    QLabel *stateValue = nullptr;
    QLabel *macAddressValue = nullptr;
    QLabel *ipAddressValue = nullptr;
    QGroupBox *dnsGroup = nullptr;
    QLabel *hostnameValue = nullptr;
    QLabel *domainValue = nullptr;
    QListWidget *nameserverList = nullptr;
    QGroupBox *networkGroup = nullptr;
    QLabel *gatewayValue = nullptr;
    QLabel *dhcpServerCaption = nullptr;
    QLabel *dhcpServerValue = nullptr;
    NetStatsView *statsView = nullptr;
    int refreshTimerId = 0;
};
