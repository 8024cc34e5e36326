#pragma once

#include <QWidget>

class pageSoftware : public QWidget {
    Q_OBJECT

public:
    explicit pageSoftware(QWidget *parent);
};
