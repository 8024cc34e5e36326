#include "app/commandline.h"

int pageNumber(const QStringList &arguments)
{
    int page = 1;
    for (int i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments.at(i) == QLatin1String("--page"))
            page = arguments.at(++i).toInt();
    }
    return page;
}
