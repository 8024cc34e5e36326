#pragma once

#include <QDialog>

class QTabWidget;
class WaitingWork;

/// The program's one window, "About this thin client": four pages in tabs.
class SysInfoHelper : public QDialog {
    Q_OBJECT
    /// Whether the user administers the device; the style sheet colours the window by it.
    Q_PROPERTY(bool isAdmin READ isAdmin) // clazy:exclude=qproperty-without-notify

public:
    /// Opens on the tab with the given 1-based number, or on the first one when there is no such tab.
    explicit SysInfoHelper(int page);

    bool isAdmin() const;

private Q_SLOTS:
    void doNothing();

private:
    void createTabs();
    void createPages();
    template <typename Page>
    void createPage(WaitingWork &work, const QString &label);
    void addPage(QWidget *page, const QString &label);

    QTabWidget *m_tabs = nullptr;
};
