#include "app/commandline.h"
#include "app/lateplugins.h"
#include "app/sysinfohelper.h"
#include "framework/vapplication.h"
#include "framework/vembedwidget.h"
#include "resources/qss/stylesheet.h"

#include <cstdlib>

int main(int argc, char **argv)
{
    VApplication application(argc, argv, true, true, true);
    application.exitIfRunning();
    application.setStyleSheet(applicationStyleSheet());
    const LatePlugins latePlugins;

    auto *dialog = new SysInfoHelper(pageNumber(QCoreApplication::arguments()));
    QObject::connect(&application, &QApplication::lastWindowClosed, &application, &QApplication::quit);
    QWidget *window = VEmbedWidget::sGetMainWidget(dialog, QCoreApplication::arguments());
    if (!window)
        std::exit(EXIT_FAILURE);
    window->show();
    return QApplication::exec();
}
