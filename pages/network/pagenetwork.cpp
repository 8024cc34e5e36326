#include "pages/network/pagenetwork.h"

pageNetwork::pageNetwork(QWidget *parent)
    : QWidget(parent)
{
}
