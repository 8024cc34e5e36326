#include "app/factlabel.h"

#include <QAccessibleWidget>
#include <QLabel>

namespace {

/// A label that a screen reader finds under its caption's name, the shown fact being its text.
class FactLabel : public QLabel {
    Q_OBJECT

public:
    explicit FactLabel(QWidget *parent)
        : QLabel(parent)
    {
        setTextFormat(Qt::PlainText);
    }
};

/// The name is the text of the caption that has the label as its buddy, which is what the base class gives.
class AccessibleFactLabel : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessibleFactLabel(QLabel *label)
        : QAccessibleWidget(label, QAccessible::StaticText)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(int start, int end) const override { return fact().mid(start, end - start); }
    int characterCount() const override { return static_cast<int>(fact().size()); }

    // Nothing can be selected, and there is no cursor.
    void selection(int /*index*/, int *start, int *end) const override { *start = *end = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int /*start*/, int /*end*/) override { }
    void removeSelection(int /*index*/) override { }
    void setSelection(int /*index*/, int /*start*/, int /*end*/) override { }
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int /*position*/) override { }
    QRect characterRect(int /*offset*/) const override { return rect(); }
    int offsetAtPoint(const QPoint & /*point*/) const override { return 0; }
    void scrollToSubstring(int /*start*/, int /*end*/) override { }

    QString attributes(int /*offset*/, int *start, int *end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }

    using QAccessibleWidget::text;

private:
    QString fact() const { return static_cast<QLabel *>(widget())->text(); }
};

QAccessibleInterface *createAccessible(const QString & /*className*/, QObject *object)
{
    auto *label = qobject_cast<FactLabel *>(object);
    return label ? new AccessibleFactLabel(label) : nullptr;
}

} // namespace

QLabel *createFactLabel(QWidget *parent)
{
    static const bool installed = (QAccessible::installFactory(createAccessible), true);
    Q_UNUSED(installed)
    return new FactLabel(parent);
}

#include "factlabel.moc"
