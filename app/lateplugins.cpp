#include "app/lateplugins.h"

#include <QCoreApplication>
#include <QEvent>

LatePlugins::LatePlugins()
    : m_paths(QCoreApplication::libraryPaths())
{
    QCoreApplication::setLibraryPaths({});
    qApp->installEventFilter(this);
}

bool LatePlugins::eventFilter(QObject * /*widget*/, QEvent *event)
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
    QCoreApplication::setLibraryPaths(m_paths);
}
