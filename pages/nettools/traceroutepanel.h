#pragma once

#include "pages/nettools/toolarguments.h"

#include <QCoreApplication>
#include <QWidget>

class NumberOption;
class QCheckBox;
class QLineEdit;
class QValidator;
class TextOption;

/// The options of a trace route.
class TraceRoutePanel : public QWidget {
    Q_DECLARE_TR_FUNCTIONS(pageNetTools)

public:
    /// The validator, which is not owned, restricts what can be typed as a source address.
    TraceRoutePanel(const QValidator *addressValidator, QWidget *parent);

    TraceRouteOptions options() const;

private:
    QLineEdit *m_target;
    QCheckBox *m_numericAddresses;
    NumberOption *m_datagramSize;
    NumberOption *m_maxHops;
    NumberOption *m_queriesPerHop;
    TextOption *m_sourceAddress;
    NumberOption *m_responseWait;
    TextOption *m_udpPort;
};
