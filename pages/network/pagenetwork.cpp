#include "pages/network/pagenetwork.h"

#include "app/commandrunner.h"
#include "app/factlabel.h"
#include "app/nameservers.h"
#include "app/unsqueezeditem.h"
#include "app/valuebox.h"
#include "app/waitingwork.h"
#include "pages/network/netstatsview.h"
#include "pages/network/networkdevice.h"
#include "pages/network/networksettings.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>

namespace {

QLabel *createCaption(const QString &text, QWidget *value)
{
    auto *caption = new QLabel(text, value->parentWidget());
    caption->setBuddy(value);
    // A list does not get its name from its caption, as a label does.
    value->setAccessibleName(text);
    return caption;
}

void addBelowCaption(QBoxLayout *layout, const QString &caption, QWidget *value, int stretch = 0)
{
    layout->addWidget(createCaption(caption, value));
    layout->addItem(new UnsqueezedItem(value));
    layout->setStretchFactor(value, stretch);
}

} // namespace

pageNetwork::pageNetwork(QWidget *parent)
    : QWidget(parent)
{
    // The first command works while the widgets are made. What waits comes before them: the dialog puts an
    // empty page into its place.
    const CommandAhead firstInterface(interfaceCountersCommand(candidateInterfaces().constFirst()));
    WaitingWork::doAll();
    createLayout();
    applyValueBoxStyle(statsView);
    for (QLabel *value : {netmaskValue, stateValue, macAddressValue, ipAddressValue, hostnameValue,
                          domainValue, gatewayValue, dhcpServerValue})
        setupValueLabel(value, Qt::AlignRight | Qt::AlignVCenter);
    applyValueBoxStyle(nameserverList);
    fillInterfaceList();
    gatherNetworkInfo();
    connect(deviceCombo, &QComboBox::textActivated, this, &pageNetwork::deviceSelected);
    refreshTimerId = startTimer(3000);
}

pageNetwork::~pageNetwork()
{
    killTimer(refreshTimerId);
}

void pageNetwork::deviceSelected(const QString &label)
{
    updateDeviceInfo(label);
}

void pageNetwork::timerEvent(QTimerEvent * /*event*/)
{
    const QString device = deviceCombo->currentText();
    if (device.isEmpty())
        return;
    // Each of the later two does the work of the one before it once more; the repetition and its order are
    // established and kept.
    statsView->updateStats();
    updateDeviceInfo(device);
    gatherNetworkInfo();
}

void pageNetwork::createLayout()
{
    resize(600, 360);
    createInterfaceGroup();
    createNetworkGroup();
    createDnsGroup();

    auto *layout = new QHBoxLayout(this);
    layout->addWidget(interfaceGroup, 3);
    auto *rightSide = new QVBoxLayout;
    layout->addLayout(rightSide, 2);
    rightSide->addWidget(networkGroup);
    rightSide->addWidget(dnsGroup);
}

void pageNetwork::createInterfaceGroup()
{
    interfaceGroup = new QGroupBox(QObject::tr("Interface"), this);
    deviceCombo = new QComboBox(interfaceGroup);
    stateValue = createFactLabel(interfaceGroup);
    ipAddressValue = createFactLabel(interfaceGroup);
    netmaskValue = createFactLabel(interfaceGroup);
    macAddressValue = createFactLabel(interfaceGroup);
    dhcpServerValue = createFactLabel(interfaceGroup);
    statsView = new NetStatsView(interfaceGroup);
    dhcpServerCaption = createCaption(QObject::tr("DHCP Server Address:"), dhcpServerValue);

    auto *grid = new QGridLayout(interfaceGroup);
    const auto addRow = [grid](int row, QLabel *caption) {
        grid->addWidget(caption, row, 0);
        grid->addItem(new UnsqueezedItem(caption->buddy()), row, 1);
    };
    addRow(0, createCaption(QObject::tr("Name:"), deviceCombo));
    addRow(1, createCaption(QObject::tr("State:"), stateValue));
    // Row 2 is left free.
    addRow(3, createCaption(QObject::tr("IP Address:"), ipAddressValue));
    addRow(4, createCaption(QObject::tr("Network Mask:"), netmaskValue));
    addRow(5, createCaption(QObject::tr("MAC Address:"), macAddressValue));
    addRow(6, dhcpServerCaption);
    grid->addWidget(statsView, 7, 0, 1, 2);
    grid->setRowStretch(7, 1);
}

void pageNetwork::createNetworkGroup()
{
    networkGroup = new QGroupBox(QObject::tr("Network"), this);
    gatewayValue = createFactLabel(networkGroup);

    auto *layout = new QVBoxLayout(networkGroup);
    addBelowCaption(layout, QObject::tr("Default Gateway:"), gatewayValue);
}

void pageNetwork::createDnsGroup()
{
    dnsGroup = new QGroupBox(QObject::tr("DNS Settings"), this);
    hostnameValue = createFactLabel(dnsGroup);
    domainValue = createFactLabel(dnsGroup);
    nameserverList = new QListWidget(dnsGroup);

    auto *layout = new QVBoxLayout(dnsGroup);
    addBelowCaption(layout, QObject::tr("Hostname:"), hostnameValue);
    addBelowCaption(layout, QObject::tr("Default Domain:"), domainValue);
    addBelowCaption(layout, QObject::tr("Nameservers:"), nameserverList, 1);
}

void pageNetwork::fillInterfaceList()
{
    const QStringList candidates = candidateInterfaces();
    for (const QString &name : candidates) {
        if (isInterfacePresent(name))
            deviceCombo->addItem(name);
    }
}

void pageNetwork::gatherNetworkInfo()
{
    gatewayValue->setText(readDefaultGateway());
    hostnameValue->setText(readHostName());
    domainValue->setText(readSearchDomain());
    nameserverList->clear();
    nameserverList->addItems(readNameServers().split(QLatin1Char(' '), Qt::SkipEmptyParts));
    const QString device = deviceCombo->currentText();
    if (!device.isEmpty())
        updateDeviceInfo(device);
}

void pageNetwork::updateDeviceInfo(const QString &name)
{
    NetworkDevice device(name);
    ipAddressValue->setText(device.address());
    netmaskValue->setText(device.netmask());
    stateValue->setText(device.isUp() ? QObject::tr("Enabled") : QObject::tr("Disabled"));
    macAddressValue->setText(device.macAddress());
    // Shown whether or not the interface was configured by DHCP.
    dhcpServerCaption->setVisible(true);
    dhcpServerValue->setVisible(true);
    dhcpServerValue->setText(readDhcpServer(name));
    statsView->updateStats();
}
