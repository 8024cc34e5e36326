#include "app/lateplugins.h"

#include <QCoreApplication>
#include <QEvent>

LatePlugins::LatePlugins()
    : m_paths(QCoreApplication::libraryPaths())
{
    QCoreApplication::setLibraryPaths({});
    qApp->installEventFilter(this);
}

LatePlugins::~LatePlugins()
{
    allowPlugins();
}

bool LatePlugins::eventFilter(QObject * /*object*/, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        qApp->removeEventFilter(this);
        // Once all of the window's widgets are painted.
        QMetaObject::invokeMethod(this, &LatePlugins::allowPlugins, Qt::QueuedConnection);
    }
    return false;
}

void LatePlugins::allowPlugins()
{
    if (!m_paths.isEmpty())
        QCoreApplication::setLibraryPaths(m_paths);
    m_paths.clear();
}
