#pragma once

#include <QObject>
#include <QStringList>

/// Keeps Qt from looking for plugins between its making and the first painting: to draw a group box, Qt would
/// load those of all image formats. What is loaded already stays in use. Kinds of plugins that Qt asks for
/// only once, and before that painting, are not found at all; of these it has built in what is needed
/// (accessibility).
class LatePlugins : public QObject {
    Q_OBJECT

public:
    LatePlugins();
    ~LatePlugins() override;
    Q_DISABLE_COPY(LatePlugins)

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void allowPlugins();

    QStringList m_paths;
};
