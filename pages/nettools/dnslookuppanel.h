#pragma once

#include "pages/nettools/toolarguments.h"

#include <QCoreApplication>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QValidator;

/// The options of a DNS lookup.
class DnsLookupPanel : public QWidget {
    Q_DECLARE_TR_FUNCTIONS(pageNetTools)

public:
    /// The nameservers to choose from are separated by single blanks. The validator, which is not owned,
    /// restricts what can be typed as a nameserver.
    DnsLookupPanel(const QString &nameServers, const QValidator *addressValidator, QWidget *parent);

    DnsLookupOptions options() const;

private:
    QLineEdit *m_hostName = nullptr;
    QCheckBox *m_useNameServer = nullptr;
    QComboBox *m_nameServer = nullptr;
};
