#include "pages/nettools/pagenettools.h"

#include "app/asciitext.h"
#include "app/nameservers.h"
#include "app/waitingwork.h"
#include "pages/nettools/diagnosticarchive.h"
#include "pages/nettools/dnslookuppanel.h"
#include "pages/nettools/pingpanel.h"
#include "pages/nettools/traceroutepanel.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFrame>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedLayout>
#include <QTextDocument>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

enum Tool { Ping, DnsLookup, TraceRoute };

QFont logFont()
{
    QFont font(QStringLiteral("Courier"), 10, QFont::Normal, false);
    font.setFixedPitch(true);
    return font;
}

} // namespace

pageNetTools::pageNetTools(QWidget *parent)
    : QWidget(parent)
    , nameServers(readNameServers())
{
    // The widgets can wait until the next page asks for the packages, which takes longer.
    WaitingWork::addOrDo([this] {
        createLayout();
        connectSignals();
        pingButton->click();
    });
}

pageNetTools::~pageNetTools()
{
    endTool();
}

void pageNetTools::endTool()
{
    // The process reports the end of a tool that it kills, and the page can no longer take that report.
    toolProcess.disconnect(this);
    toolProcess.kill();
    toolProcess.waitForFinished();
}

void pageNetTools::createLayout()
{
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(createDiagnosticRow());
    layout->addLayout(createToolRow());
    layout->addWidget(createLogView(), 1);
    layout->addLayout(createButtonRow());
}

QBoxLayout *pageNetTools::createDiagnosticRow()
{
    diagnosticButton = new QPushButton(tr("Diagnostic"), this);
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Generate a diagnostic:"), this));
    row->addWidget(diagnosticButton, 0, Qt::AlignLeft);
    return row;
}

QBoxLayout *pageNetTools::createToolRow()
{
    auto *row = new QHBoxLayout;
    row->addLayout(createToolColumn());
    auto *separator = new QFrame(this);
    separator->setFrameStyle(QFrame::VLine | QFrame::Sunken);
    row->addWidget(separator);
    row->addLayout(createOptionStack(), 1);
    return row;
}

QBoxLayout *pageNetTools::createToolColumn()
{
    pingButton = new QRadioButton(tr("Ping"), this);
    dnsLookupButton = new QRadioButton(tr("DNS Lookup"), this);
    traceRouteButton = new QRadioButton(tr("Trace Route"), this);

    toolGroup = new QButtonGroup(this);
    toolGroup->addButton(pingButton, Ping);
    toolGroup->addButton(dnsLookupButton, DnsLookup);
    toolGroup->addButton(traceRouteButton, TraceRoute);

    auto *column = new QVBoxLayout;
    column->addWidget(new QLabel(tr("Select Tool:"), this));
    column->addWidget(pingButton, 1);
    column->addWidget(dnsLookupButton, 1);
    column->addWidget(traceRouteButton, 1);
    return column;
}

QStackedLayout *pageNetTools::createOptionStack()
{
    optionStack = new QStackedLayout;
    optionStack->insertWidget(Ping, createPingPanel());
    optionStack->insertWidget(DnsLookup, createDnsLookupPanel());
    optionStack->insertWidget(TraceRoute, createTraceRoutePanel());
    return optionStack;
}

QTextEdit *pageNetTools::createLogView()
{
    logView = new QTextEdit(this);
    logView->setFontWeight(QFont::Light);
    logView->setReadOnly(true);
    logView->setAccessibleName(tr("Log"));
    // Without an undo history of everything that a tool has ever printed.
    logView->setUndoRedoEnabled(false);
    logView->setLineWrapMode(QTextEdit::NoWrap);
    // Again the size with which the view began, which keeps the text from being laid out, and the log's font
    // from being loaded for that, until the view is shown.
    logView->document()->setPageSize(QSizeF(0, 0));
    logView->setFrameStyle(QFrame::Box | QFrame::Sunken);
    logView->setFont(logFont());
    return logView;
}

QBoxLayout *pageNetTools::createButtonRow()
{
    processButton = new QPushButton(tr("Start Process"), this);
    // Or Return in an input would press the dialog's first button, "Diagnostic".
    processButton->setDefault(true);
    clearLogButton = new QPushButton(tr("Clear Log"), this);
    auto *row = new QHBoxLayout;
    row->setSpacing(30);
    row->addWidget(processButton);
    row->addWidget(clearLogButton);
    return row;
}

QWidget *pageNetTools::createPingPanel()
{
    pingPanel = new PingPanel(this);
    return pingPanel;
}

QWidget *pageNetTools::createDnsLookupPanel()
{
    dnsLookupPanel = new DnsLookupPanel(nameServers, &addressValidator, this);
    return dnsLookupPanel;
}

QWidget *pageNetTools::createTraceRoutePanel()
{
    traceRoutePanel = new TraceRoutePanel(&addressValidator, this);
    return traceRoutePanel;
}

void pageNetTools::connectSignals()
{
    connect(clearLogButton, &QPushButton::clicked, logView, &QTextEdit::clear);
    connect(toolGroup, &QButtonGroup::idClicked, optionStack, &QStackedLayout::setCurrentIndex);
    connect(&toolProcess, &QProcess::readyReadStandardError, this, &pageNetTools::readStandardError);
    connect(&toolProcess, &QProcess::readyReadStandardOutput, this, &pageNetTools::readStandardOutput);
    connect(&toolProcess, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &pageNetTools::handleProcessFinished);
    connect(processButton, &QPushButton::clicked, this, &pageNetTools::handleProcessAction);
    connect(diagnosticButton, &QPushButton::clicked, this, &pageNetTools::diagnosticDialog);
    // The program ends without deleting its window.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &pageNetTools::endTool);
}

void pageNetTools::startPing()
{
    executeCommand(QStringLiteral("ping"), pingArguments(pingPanel->options()));
}

void pageNetTools::startDnsLookup()
{
    executeCommand(QStringLiteral("host"), dnsLookupArguments(dnsLookupPanel->options()));
}

void pageNetTools::startTraceRoute()
{
    executeCommand(QStringLiteral("traceroute"), traceRouteArguments(traceRoutePanel->options()));
}

void pageNetTools::executeCommand(const QString &program, const QStringList &arguments)
{
    // The arguments come last: nothing that the user typed is taken for a place to fill.
    appendLogNotice(QStringLiteral("\n> %1: \"%2 %3\"\n\n")
                        .arg(tr("Executing"))
                        .arg(program)
                        .arg(arguments.join(QLatin1Char(' '))));
    toolProcess.start(program, arguments);
}

void pageNetTools::handleProcessAction()
{
    moveToEndOfLog();
    if (toolProcess.state() != QProcess::NotRunning) {
        appendLogNotice(QStringLiteral("> %1...\n").arg(tr("Terminating")));
        toolProcess.terminate();
        return;
    }
    processButton->setText(tr("Stop Process"));
    switch (toolGroup->checkedId()) {
    case Ping:
        startPing();
        break;
    case DnsLookup:
        startDnsLookup();
        break;
    case TraceRoute:
        startTraceRoute();
        break;
    default:
        break;
    }
}

void pageNetTools::readStandardError()
{
    insertIntoLog(asciiText(toolProcess.readAllStandardError()));
}

void pageNetTools::readStandardOutput()
{
    insertIntoLog(asciiText(toolProcess.readAllStandardOutput()));
}

void pageNetTools::handleProcessFinished(int exitCode, QProcess::ExitStatus /*exitStatus*/)
{
    appendLogNotice(
        QStringLiteral("> %1. ( %2 = %3 )\n").arg(tr("Finished")).arg(tr("Exit Code")).arg(exitCode));
    processButton->setText(tr("Start Process"));
}

void pageNetTools::moveToEndOfLog()
{
    logView->moveCursor(QTextCursor::End);
    // A cursor that moves takes on the weight of the text before it, which may be a notice.
    logView->setFontWeight(QFont::Light);
}

void pageNetTools::appendLogNotice(const QString &text)
{
    deselectLog();
    const int weight = logView->fontWeight();
    logView->setFontWeight(QFont::DemiBold);
    insertIntoLog(text);
    logView->setFontWeight(weight);
}

void pageNetTools::insertIntoLog(const QString &text)
{
    deselectLog();
    logView->insertPlainText(text);
    logView->ensureCursorVisible();
}

void pageNetTools::deselectLog()
{
    // Inserted text would replace a selection, and the log loses nothing until it is cleared.
    QTextCursor cursor = logView->textCursor();
    if (!cursor.hasSelection())
        return;
    cursor.clearSelection();
    logView->setTextCursor(cursor);
}

void pageNetTools::diagnosticDialog()
{
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Save the diagnostic archive"),
                                     QStringLiteral("/tmp/Diagnostic.tgz"), tr("Archives (*.tgz *.tar.gz)"));
    if (path.isEmpty())
        return;
    const bool created = writeDiagnosticArchive(path);
    QMessageBox::information(this, tr("Save the diagnostic"),
                             created ? tr("Diagnostic was successfully created")
                                     : tr("Error: no diagnostic created"));
}
