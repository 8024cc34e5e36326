#pragma once

#include <QStringList>

class QWidget;

/// Decides which widget a program shows as its top-level window.
class VEmbedWidget {
public:
    /// Returns the widget to show: the given one. With "--embed WINDOW" among the arguments it becomes a
    /// child of that window, a decimal or 0x hexadecimal id of a window of the same X server: it fills the
    /// window, follows its size and takes its keyboard, and the program ends when the window is gone.
    /// Null when WINDOW is missing, no number or no window.
    static QWidget *sGetMainWidget(QWidget *widget, const QStringList &arguments);
};
