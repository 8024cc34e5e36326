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

    QGroupBox *interfaceGroup;
    QComboBox *deviceCombo;
    QLabel *netmaskValue;
    QLabel *stateValue;
    QLabel *macAddressValue;
    QLabel *ipAddressValue;
    QGroupBox *dnsGroup;
    QLabel *hostnameValue;
    QLabel *domainValue;
    QListWidget *nameserverList;
    QGroupBox *networkGroup;
    QLabel *gatewayValue;
    QLabel *dhcpServerCaption;
    QLabel *dhcpServerValue;
    NetStatsView *statsView;
    int refreshTimerId;
};
