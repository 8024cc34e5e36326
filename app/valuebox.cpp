#include "app/valuebox.h"

#include <QLabel>

void applyValueBoxStyle(QFrame *frame)
{
    frame->setFrameStyle(QFrame::Box | QFrame::Raised);
    frame->setLineWidth(1);
    frame->setMidLineWidth(1);
    frame->setObjectName(QStringLiteral("valueBox"));
}

void setupValueLabel(QLabel *label, Qt::Alignment alignment)
{
    label->setAlignment(alignment);
    applyValueBoxStyle(label);
    label->setMinimumHeight(25);
}
