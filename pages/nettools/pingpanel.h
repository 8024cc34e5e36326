#pragma once

#include "pages/nettools/toolarguments.h"

#include <QCoreApplication>
#include <QWidget>

class NumberOption;
class QCheckBox;
class QLineEdit;

/// The options of ping.
class PingPanel : public QWidget {
    Q_DECLARE_TR_FUNCTIONS(pageNetTools)

public:
    explicit PingPanel(QWidget *parent);

    PingOptions options() const;

private:
    QLineEdit *m_target;
    QCheckBox *m_userToUserLatency;
    QCheckBox *m_numericAddresses;
    QCheckBox *m_verbose;
    QCheckBox *m_adaptive;
    NumberOption *m_count;
    NumberOption *m_interval;
    NumberOption *m_packetDataSize;
    NumberOption *m_timeToLive;
};
