#pragma once

class QLabel;
class QWidget;

/// A new, empty label for a fact about the device, which shows whatever text it gets as plain text. A screen
/// reader finds it by the caption whose buddy it is, or by its accessible name, and reads the shown text.
QLabel *createFactLabel(QWidget *parent);
