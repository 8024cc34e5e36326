#include "resources/qss/stylesheet.h"

#include <QFile>
#include <QString>

QString applicationStyleSheet()
{
    // Naming the resource keeps the linker from dropping its self-registering object out of the static
    // library.
    Q_INIT_RESOURCE(default);
    QFile file(QStringLiteral(":/qss/default.qss"));
    file.open(QIODevice::ReadOnly);
    return QString::fromLatin1(file.readAll());
}
