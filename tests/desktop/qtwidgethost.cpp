// The same as xcbhost with a window of Qt widgets, built with the other Qt version than the program.
#include <QApplication>
#include <QSocketNotifier>
#include <QWidget>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Host"));
    window.resize(700, 500);
    window.show();
    std::printf("%llu\n", static_cast<unsigned long long>(window.winId()));
    std::fflush(stdout);

    QSocketNotifier commands(0, QSocketNotifier::Read);
    const auto obey = [&window] {
        char line[100] = {};
        unsigned width = 0;
        unsigned height = 0;
        if (!std::fgets(line, sizeof(line), stdin))
            window.close();
        else if (std::sscanf(line, "resize %u %u", &width, &height) == 2)
            window.resize(static_cast<int>(width), static_cast<int>(height));
    };
    QObject::connect(&commands, &QSocketNotifier::activated, &window, obey);
    return QApplication::exec();
}
