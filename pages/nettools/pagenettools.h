#pragma once

#include "pages/nettools/addressvalidator.h"

#include <QProcess>
#include <QWidget>

class DnsLookupPanel;
class PingPanel;
class QBoxLayout;
class QButtonGroup;
class QPushButton;
class QRadioButton;
class QStackedLayout;
class QTextEdit;
class TraceRoutePanel;

/// The "Net Tools" tab: runs ping, host or traceroute with the options of a panel and shows what it prints,
/// and has a script write a diagnostic archive. One tool runs at a time; it ends with the page.
class pageNetTools : public QWidget {
    Q_OBJECT

public:
    explicit pageNetTools(QWidget *parent);
    ~pageNetTools() override;

private Q_SLOTS:
    void handleProcessAction();
    void readStandardError();
    void readStandardOutput();
    void handleProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void diagnosticDialog();

private:
    void endTool();
    void createLayout();
    QBoxLayout *createDiagnosticRow();
    QBoxLayout *createToolRow();
    QBoxLayout *createToolColumn();
    QStackedLayout *createOptionStack();
    QTextEdit *createLogView();
    QBoxLayout *createButtonRow();
    QWidget *createPingPanel();
    QWidget *createDnsLookupPanel();
    QWidget *createTraceRoutePanel();
    void connectSignals();

    void startPing();
    void startDnsLookup();
    void startTraceRoute();
    void executeCommand(const QString &program, const QStringList &arguments);

    void moveToEndOfLog();
    void appendLogNotice(const QString &text);
    void insertIntoLog(const QString &text);
    void deselectLog();

    QTextEdit *logView;
    QPushButton *processButton;
    QPushButton *clearLogButton;
    QPushButton *diagnosticButton;
    QButtonGroup *toolGroup;
    QStackedLayout *optionStack;
    QRadioButton *pingButton;
    QRadioButton *dnsLookupButton;
    QRadioButton *traceRouteButton;
    AddressValidator addressValidator;
    /// Those that there were when the page was made, separated by single blanks.
    QString nameServers;
    PingPanel *pingPanel;
    DnsLookupPanel *dnsLookupPanel;
    TraceRoutePanel *traceRoutePanel;
    QProcess toolProcess;
};
