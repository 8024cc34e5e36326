#pragma once

#include <QAbstractNativeEventFilter>
#include <QtGlobal>

/// Obeys the window manager's request to close a window also while a message box or another modal dialog of
/// the program is open, where the toolkit would ignore it: the dialogs are dismissed first.
class CloseRequestFilter : public QAbstractNativeEventFilter {
public:
    CloseRequestFilter();

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    using Result = qintptr;
#else
    using Result = long;
#endif
    bool nativeEventFilter(const QByteArray &eventType, void *message, Result *result) override;

private:
    quint32 m_protocols = 0;
    quint32 m_deleteWindow = 0;
};
