#include "pages/software/pagesoftware.h"

pageSoftware::pageSoftware(QWidget *parent)
    : QWidget(parent)
{
}
