#include "pages/nettools/pagenettools.h"

pageNetTools::pageNetTools(QWidget *parent)
    : QWidget(parent)
{
}
