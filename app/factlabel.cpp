#include "app/factlabel.h"

#include <QLabel>

QLabel *createFactLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}
