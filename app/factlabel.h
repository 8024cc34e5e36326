#pragma once

class QLabel;
class QWidget;

/// A new, empty label for a fact about the device, which shows whatever text it gets as plain text.
QLabel *createFactLabel(QWidget *parent);
