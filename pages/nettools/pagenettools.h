#pragma once

#include <QWidget>

class pageNetTools : public QWidget {
    Q_OBJECT

public:
    explicit pageNetTools(QWidget *parent);
};
