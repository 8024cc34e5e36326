#include "pages/nettools/traceroutepanel.h"

#include "pages/nettools/optioninputs.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLineEdit>

namespace {

/// Lets numbers be typed that traceroute reads as the same ones: no thousands separators, no digits of
/// another script.
class PortValidator : public QIntValidator {
public:
    explicit PortValidator(QObject *parent)
        : QIntValidator(1, 65535, parent)
    {
        QLocale plainDigits = QLocale::c();
        plainDigits.setNumberOptions(QLocale::RejectGroupSeparator);
        setLocale(plainDigits);
    }

    State validate(QString &input, int &position) const override
    {
        // To newer versions of Qt a number that is too large is the start of a valid one while it has no
        // digit too many.
        return input.toInt() > top() ? Invalid : QIntValidator::validate(input, position);
    }
};

} // namespace

TraceRoutePanel::TraceRoutePanel(const QValidator *addressValidator, QWidget *parent)
    : QWidget(parent)
    , m_numericAddresses(new QCheckBox(tr("Display addresses numerically")))
    , m_datagramSize(new NumberOption(tr("Datagram size"), {0, 2000, 40, 10}))
    , m_maxHops(new NumberOption(tr("Max hops"), {0, 99, 30, 1}))
    , m_queriesPerHop(new NumberOption(tr("Queries/hop"), {1, 99, 3, 1}))
    , m_sourceAddress(new TextOption(tr("Set source IP"), QStringLiteral("0.0.0.0")))
    , m_responseWait(new NumberOption(tr("Response wait time ( sec )"), {1, 99, 3, 1}))
    , m_udpPort(new TextOption(tr("UDP port"), QStringLiteral("33434")))
{
    m_sourceAddress->edit()->setValidator(addressValidator);
    m_udpPort->edit()->setValidator(new PortValidator(this));

    auto *layout = new QVBoxLayout(this);
    m_target = addLabelledEdit(layout, tr("Target Host:"));

    auto *grid = new QGridLayout;
    layout->addLayout(grid);
    grid->addLayout(m_datagramSize, 0, 0);
    grid->addWidget(m_numericAddresses, 0, 1);
    grid->addLayout(m_udpPort, 1, 0);
    grid->addLayout(m_maxHops, 1, 1);
    grid->addLayout(m_responseWait, 2, 0);
    grid->addLayout(m_queriesPerHop, 2, 1);
    grid->addLayout(m_sourceAddress, 3, 0);
}

TraceRouteOptions TraceRoutePanel::options() const
{
    TraceRouteOptions options;
    options.numericAddresses = m_numericAddresses->isChecked();
    options.maxHops = m_maxHops->value();
    options.queriesPerHop = m_queriesPerHop->value();
    options.sourceAddress = m_sourceAddress->value();
    options.responseWaitSeconds = m_responseWait->value();
    options.udpPort = m_udpPort->value();
    options.target = m_target->text();
    options.datagramSize = m_datagramSize->value();
    return options;
}
