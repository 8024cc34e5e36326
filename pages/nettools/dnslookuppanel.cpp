#include "pages/nettools/dnslookuppanel.h"

#include "pages/nettools/optioninputs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

DnsLookupPanel::DnsLookupPanel(const QString &nameServers, const QValidator *addressValidator,
                               QWidget *parent)
    : QWidget(parent)
    , m_useNameServer(new QCheckBox(tr("Use this nameserver:")))
    , m_nameServer(new QComboBox)
{
    // Makes it editable; setEditable() would make the list that drops down as well, which few will ever see.
    m_nameServer->setLineEdit(new QLineEdit);
    m_nameServer->setValidator(addressValidator);
    m_nameServer->setInsertPolicy(QComboBox::NoInsert);
    m_nameServer->setAccessibleName(m_useNameServer->text());
    m_nameServer->addItems(nameServers.split(QLatin1Char(' ')));

    auto *layout = new QVBoxLayout(this);
    m_hostName = addLabelledEdit(layout, tr("Hostname:"));
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
