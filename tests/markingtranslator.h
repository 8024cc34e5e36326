#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// Translates every text to itself with its context before it: "[context]text", while it lives.
class MarkingTranslator : public QTranslator {
public:
    MarkingTranslator() { QCoreApplication::installTranslator(this); }
    ~MarkingTranslator() override { QCoreApplication::removeTranslator(this); }
    Q_DISABLE_COPY(MarkingTranslator)

    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *text, const char * /*comment*/,
                      int /*n*/) const override
    {
        return QLatin1Char('[') + QString::fromUtf8(context) + QLatin1Char(']') + QString::fromUtf8(text);
    }
};
