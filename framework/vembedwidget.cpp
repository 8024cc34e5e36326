#include "framework/vembedwidget.h"

#include "framework/hostwindow.h"

#include <QWidget>

QWidget *VEmbedWidget::sGetMainWidget(QWidget *widget, const QStringList &arguments)
{
    const int option = static_cast<int>(arguments.lastIndexOf(QStringLiteral("--embed")));
    if (option < 1)
        return widget;
    bool isNumber = false;
    const quint32 id = arguments.value(option + 1).toUInt(&isNumber, 0);
    if (!isNumber)
        return nullptr;
    auto *host = new HostWindow(id, widget);
    if (!host->exists())
        return nullptr;
    host->takeIn();
    return widget;
}
