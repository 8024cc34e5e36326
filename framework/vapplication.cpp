#include "framework/vapplication.h"

#include "framework/instancelock.h"

#include <QFileInfo>

#include <cstdlib>

VApplication::VApplication(int &argc, char **argv, bool, bool, bool)
    : QApplication(argc, argv)
{
}

VApplication::~VApplication() = default;

void VApplication::exitIfRunning()
{
    const QString program = QFileInfo(applicationFilePath()).fileName();
    m_instanceLock = std::make_unique<InstanceLock>(QFile::encodeName(program));
    if (m_instanceLock->isHeldElsewhere())
        std::exit(EXIT_SUCCESS);
}
