#include "pages/nettools/optioninputs.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

NumberOption::NumberOption(const QString &label, const NumberRange &range)
    : m_box(new QCheckBox(label))
    , m_number(new QSpinBox)
{
    m_number->setRange(range.minimum, range.maximum);
    m_number->setSingleStep(range.step);
    m_number->setValue(range.initial);
    m_number->setAccessibleName(label);
    addWidget(m_box);
    addWidget(m_number);
}

std::optional<int> NumberOption::value() const
{
    return m_box->isChecked() ? std::optional(m_number->value()) : std::nullopt;
}

TextOption::TextOption(const QString &label, const QString &initial)
    : m_box(new QCheckBox(label))
    , m_text(new QLineEdit(initial))
{
    m_text->setAccessibleName(label);
    addWidget(m_box);
    addWidget(m_text);
}

std::optional<QString> TextOption::value() const
{
    return m_box->isChecked() ? std::optional(m_text->text()) : std::nullopt;
}

QLineEdit *addLabelledEdit(QBoxLayout *layout, const QString &label)
{
    auto *caption = new QLabel(label);
    auto *edit = new QLineEdit;
    caption->setBuddy(edit);

    auto *row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(edit, 1);
    layout->addLayout(row);
    return edit;
}
