#pragma once

#include <QObject>
#include <QStringList>

/// Keeps Qt from looking for plugins between its making and the first painting: to draw a group box, Qt would
/// load those of all image formats. What is loaded already stays in use.
class LatePlugins : public QObject {
    Q_OBJECT

public:
    LatePlugins();

protected:
    bool eventFilter(QObject *widget, QEvent *event) override;

private:
    void allowPlugins();

    QStringList m_paths;
};
