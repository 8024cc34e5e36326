#include "framework/vapplication.h"

#include "framework/closerequestfilter.h"
#include "framework/instancelock.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdlib>

namespace {

/// Qt looks into the run-time directory while it starts and complains of one that is missing or unsafe. A
/// second copy, which does the same before it can end, has to end without a message.
int &withoutMessages(int &argc)
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false\ndefault.critical=false"));
    return argc;
}

} // namespace

VApplication::VApplication(int &argc, char **argv, bool, bool, bool)
    : QApplication(withoutMessages(argc), argv)
{
    QLoggingCategory::setFilterRules({});
    if (platformName() == QLatin1String("xcb")) {
        m_closeRequests = std::make_unique<CloseRequestFilter>();
        installNativeEventFilter(m_closeRequests.get());
    }
}

VApplication::~VApplication() = default;

void VApplication::exitIfRunning()
{
    const QString program = QFileInfo(applicationFilePath()).fileName();
    m_instanceLock = std::make_unique<InstanceLock>(QFile::encodeName(program));
    if (m_instanceLock->isHeldElsewhere())
        std::exit(EXIT_SUCCESS);
}
