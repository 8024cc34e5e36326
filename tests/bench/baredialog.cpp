// baredialog WIDTH HEIGHT: the least dialog with four tabs, nothing in them.

#include <QApplication>
#include <QDialog>
#include <QTabWidget>
#include <QVBoxLayout>

#include <cstdlib>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QDialog dialog;
    auto *tabs = new QTabWidget(&dialog);
    for (const char *label : {"General", "Network", "Net Tools", "Software Information"})
        tabs->addTab(new QWidget, QLatin1String(label));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(tabs);
    if (argc == 3)
        dialog.resize(std::atoi(argv[1]), std::atoi(argv[2]));
    dialog.show();
    return QApplication::exec();
}
