#pragma once

#include <QHBoxLayout>

#include <optional>

class QBoxLayout;
class QCheckBox;
class QLineEdit;
class QSpinBox;

struct NumberRange {
    int minimum;
    int maximum;
    int initial;
    int step;
};

/// A row of a check box and a spin box, for a setting with a number. The check box alone decides whether the
/// setting is used; the spin box can always be edited.
class NumberOption : public QHBoxLayout {
public:
    NumberOption(const QString &label, const NumberRange &range);

    /// The number, or nothing while the box is not checked.
    std::optional<int> value() const;

private:
    QCheckBox *m_box;
    QSpinBox *m_number;
};

/// A row of a check box and a line edit, for a setting with a text. The check box alone decides whether the
/// setting is used; the line edit can always be edited.
class TextOption : public QHBoxLayout {
public:
    TextOption(const QString &label, const QString &initial);

    /// The text, empty or not, or nothing while the box is not checked.
    std::optional<QString> value() const;

    QLineEdit *edit() const { return m_text; }

private:
    QCheckBox *m_box;
    QLineEdit *m_text;
};

/// Appends a row of a label and a line edit, which takes the spare width, and returns the line edit.
QLineEdit *addLabelledEdit(QBoxLayout *layout, const QString &label);
