#include "pages/nettools/pingpanel.h"

#include "pages/nettools/optioninputs.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>

PingPanel::PingPanel(QWidget *parent)
    : QWidget(parent)
    , m_userToUserLatency(new QCheckBox(tr("Display user-to-user latency")))
    , m_numericAddresses(new QCheckBox(tr("Display address numerically")))
    , m_verbose(new QCheckBox(tr("Verbose output")))
    , m_adaptive(new QCheckBox(tr("Adaptive ping")))
    , m_count(new NumberOption(tr("Number of pings"), {1, 99, 10, 1}))
    , m_interval(new NumberOption(tr("Interval ( sec )"), {1, 99, 1, 1}))
    , m_packetDataSize(new NumberOption(tr("Packet data size"), {1, 2000, 56, 10}))
    , m_timeToLive(new NumberOption(tr("Time-to-live"), {0, 99, 30, 1}))
{
    auto *layout = new QVBoxLayout(this);
    m_target = addLabelledEdit(layout, tr("Target Host:"));

    auto *grid = new QGridLayout;
    layout->addLayout(grid);
    grid->addWidget(m_verbose, 0, 0);
    grid->addWidget(m_adaptive, 0, 1);
    grid->addWidget(m_numericAddresses, 1, 0);
    grid->addWidget(m_userToUserLatency, 1, 1);
    grid->addLayout(m_count, 2, 0);
    grid->addLayout(m_packetDataSize, 2, 1);
    grid->addLayout(m_interval, 3, 0);
    grid->addLayout(m_timeToLive, 3, 1);
}

PingOptions PingPanel::options() const
{
    PingOptions options;
    options.userToUserLatency = m_userToUserLatency->isChecked();
    options.numericAddresses = m_numericAddresses->isChecked();
    options.verbose = m_verbose->isChecked();
    options.adaptive = m_adaptive->isChecked();
    options.count = m_count->value();
    options.intervalSeconds = m_interval->value();
    options.packetDataSize = m_packetDataSize->value();
    options.timeToLive = m_timeToLive->value();
    options.target = m_target->text();
    return options;
}
