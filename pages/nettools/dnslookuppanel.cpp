#include "pages/nettools/dnslookuppanel.h"

#include "pages/nettools/optioninputs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

DnsLookupPanel::DnsLookupPanel(const QString &nameServers, const QValidator *addressValidator,
                               QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    m_hostName = addLabelledEdit(layout, tr("Hostname:"));

    m_useNameServer = new QCheckBox(tr("Use this nameserver:"), this);
    // The list that drops down, which few will ever see, is made when it is asked for; but also by
    // setEditable(), and by a change of style such as a parent that is given later brings.
    m_nameServer = new QComboBox(this);
    m_nameServer->setLineEdit(new QLineEdit);
    m_nameServer->setValidator(addressValidator);
    m_nameServer->setInsertPolicy(QComboBox::NoInsert);
    m_nameServer->setAccessibleName(m_useNameServer->text());
    m_nameServer->addItems(nameServers.split(QLatin1Char(' ')));

    auto *row = new QHBoxLayout;
    row->addWidget(m_useNameServer);
    row->addWidget(m_nameServer, 1);
    layout->addLayout(row);

    // To a screen reader a combo box is named by a label, and here the check box stands in its place.
    auto *name = new QLabel(m_useNameServer->text(), this);
    name->setBuddy(m_nameServer);
    name->hide();
}

DnsLookupOptions DnsLookupPanel::options() const
{
    DnsLookupOptions options;
    options.hostName = m_hostName->text();
    if (m_useNameServer->isChecked())
        options.nameServer = m_nameServer->currentText();
    return options;
}
