#pragma once

#include <Qt>

class QFrame;
class QLabel;

/// Frames the widget as a raised box and names it "valueBox", which the style sheet selects.
void applyValueBoxStyle(QFrame *frame);

/// Aligns the text of a value label, frames the label as a value box and makes it at least 25 pixels high.
void setupValueLabel(QLabel *label, Qt::Alignment alignment);
