#pragma once

#include <QStringList>

class QWidget;

/// Decides which widget a program shows as its top-level window.
class VEmbedWidget {
public:
    /// Returns the widget to show: the given one, as nothing in the arguments asks for embedding.
    /// Null when no widget can be provided.
    static QWidget *sGetMainWidget(QWidget *widget, const QStringList &arguments);
};
