#include "framework/vembedwidget.h"

QWidget *VEmbedWidget::sGetMainWidget(QWidget *widget, const QStringList & /*arguments*/)
{
    return widget;
}
