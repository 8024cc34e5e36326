#pragma once

#include <QWidget>

class pageNetwork : public QWidget {
    Q_OBJECT

public:
    explicit pageNetwork(QWidget *parent);
};
