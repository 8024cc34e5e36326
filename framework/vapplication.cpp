#include "framework/vapplication.h"

#include "framework/closerequestfilter.h"
#include "framework/instancelock.h"

#include <QFileInfo>

#include <cstdlib>

VApplication::VApplication(int &argc, char **argv, bool, bool, bool)
    : QApplication(argc, argv)
{
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
