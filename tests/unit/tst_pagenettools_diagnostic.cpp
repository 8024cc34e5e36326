#include "pages/nettools/diagnosticarchive.h"
#include "tests/markingtranslator.h"
#include "tests/unit/nettoolsuser.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <memory>

namespace {

/// Clicks when the caller has returned: a click may open another dialog, and a timer whose handler waits for
/// that one would not look at it.
void clickLater(QAbstractButton *button)
{
    QMetaObject::invokeMethod(
        button, [button] { QTest::mouseClick(button, Qt::LeftButton); }, Qt::QueuedConnection);
}

void clickIn(QWidget *dialog, QDialogButtonBox::StandardButton button)
{
    clickLater(dialog->findChild<QDialogButtonBox *>()->button(button));
}

/// A person in front of the dialogs of one press on "Diagnostic": answers each and remembers what it showed.
class DialogUser : public QObject {
public:
    /// Puts the name into the file dialog and saves; a null name keeps the proposed one.
    explicit DialogUser(const QString &name = QString(), bool cancels = false)
        : m_name(name)
        , m_cancels(cancels)
    {
        connect(&m_look, &QTimer::timeout, this, [this] { answer(QApplication::activeModalWidget()); });
        m_look.start(20);
    }

    QString caption;
    QStringList filters;
    QString proposedFile;
    QWidget *fileDialogParent = nullptr;
    QStringList boxes;
    QWidget *boxParent = nullptr;
    int otherDialogs = 0;

private:
    void answer(QWidget *dialog)
    {
        if (dialog == m_answered)
            return;
        m_answered = dialog;
        if (auto *file = qobject_cast<QFileDialog *>(dialog))
            answerFileDialog(file);
        else if (auto *box = qobject_cast<QMessageBox *>(dialog))
            answerBox(box);
        else if (dialog)
            ++otherDialogs;
    }

    void answerFileDialog(QFileDialog *dialog)
    {
        auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        caption = dialog->windowTitle();
        filters = dialog->nameFilters();
        proposedFile = dialog->directory().path() + QLatin1Char('|') + name->text();
        fileDialogParent = dialog->parentWidget();
        QVERIFY(dialog->isModal());
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        if (m_cancels)
            return clickIn(dialog, QDialogButtonBox::Cancel);
        // Not key by key, which would open a list of completions in front of the dialog.
        if (!m_name.isNull())
            name->setText(m_name);
        clickIn(dialog, QDialogButtonBox::Save);
    }

    void answerBox(QMessageBox *box)
    {
        // A file of that name exists: it may be replaced.
        if (box->standardButtons().testFlag(QMessageBox::Yes))
            return clickLater(box->button(QMessageBox::Yes));
        boxes << box->windowTitle() + QLatin1Char('|') + box->text();
        boxParent = box->parentWidget();
        QCOMPARE(box->icon(), QMessageBox::Information);
        QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
        QVERIFY(box->isModal());
        clickLater(box->button(QMessageBox::Ok));
    }

    QString m_name;
    bool m_cancels;
    QTimer m_look;
    QPointer<QWidget> m_answered;
};

const QString successBox = QStringLiteral("Save the diagnostic|Diagnostic was successfully created");
const QString errorBox = QStringLiteral("Save the diagnostic|Error: no diagnostic created");

int warnings = 0;

void countWarning(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &message)
{
    if (message.contains(QLatin1String("QProcess")))
        ++warnings;
}

} // namespace

class tst_PageNetToolsDiagnostic : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void proposesAFileAndRunsTheScriptWithIt();
    void asksBeforeAnArchiveIsReplaced();
    void cancelRunsNothing();
    void commandLineIsSplit_data();
    void commandLineIsSplit();
    void quotesKeepTextTogether_data();
    void quotesKeepTextTogether();
    void showsTheOutcome_data();
    void showsTheOutcome();
    void outputIsDiscarded();
    void killsAScriptThatTakesTooLong();
    void isIndependentOfARunningTool();
    void outputOfAToolIsShownAfterTheWait();
    void translatesItsTexts_data();
    void translatesItsTexts();
    void givesTheScriptTheOwnSurroundings();
    void leavesNothingBehind();

private:
    void installScript(const QByteArray &commands);
    QStringList callsOfScript() const;

    std::unique_ptr<QWidget> m_page;
    std::unique_ptr<NetToolsUser> m_user;
    std::unique_ptr<SearchPath> m_path;
    std::unique_ptr<QTemporaryDir> m_target;
};

void tst_PageNetToolsDiagnostic::init()
{
    m_page = std::make_unique<pageNetTools>(nullptr);
    m_user = std::make_unique<NetToolsUser>(*m_page);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    m_path = std::make_unique<SearchPath>();
    m_target = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/diagnostic-XXXXXX"));
}

void tst_PageNetToolsDiagnostic::cleanup()
{
    m_target.reset();
    m_path.reset();
    m_user.reset();
    m_page.reset();
    QCOMPARE(childProcesses(), QList<qint64>());
}

/// A script that notes each call's arguments in brackets, a line a call, and goes on with the commands.
void tst_PageNetToolsDiagnostic::installScript(const QByteArray &commands)
{
    const QByteArray calls = QFile::encodeName(m_path->path("calls"));
    m_path->install("generateDiagnostic.sh",
                    "{ printf '[%s]' \"$@\"; echo; } >>'" + calls + "'\n" + commands + '\n');
}

QStringList tst_PageNetToolsDiagnostic::callsOfScript() const
{
    QFile calls(m_path->path("calls"));
    if (!calls.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(calls.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void tst_PageNetToolsDiagnostic::proposesAFileAndRunsTheScriptWithIt()
{
    installScript("exit 0");
    const DialogUser dialogs;
    m_user->click("Diagnostic");
    QCOMPARE(dialogs.caption, text("Save the diagnostic archive"));
    QCOMPARE(dialogs.filters, QStringList{text("Archives (*.tgz *.tar.gz)")});
    QCOMPARE(dialogs.proposedFile, text("/tmp|Diagnostic.tgz"));
    QCOMPARE(dialogs.fileDialogParent, m_page.get());
    QCOMPARE(callsOfScript(), QStringList{text("[/tmp/Diagnostic.tgz]")});
    QCOMPARE(dialogs.boxes, QStringList{successBox});
    QCOMPARE(dialogs.boxParent, m_page.get());
    QCOMPARE(dialogs.otherDialogs, 0);
}

void tst_PageNetToolsDiagnostic::asksBeforeAnArchiveIsReplaced()
{
    installScript("exit 0");
    const QString archive = m_target->filePath(QStringLiteral("a.tgz"));
    QFile file(archive);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const DialogUser dialogs(archive);
    m_user->click("Diagnostic");
    QCOMPARE(callsOfScript(), QStringList{QLatin1Char('[') + archive + QLatin1Char(']')});
    QCOMPARE(dialogs.boxes, QStringList{successBox});
}

void tst_PageNetToolsDiagnostic::cancelRunsNothing()
{
    installScript("exit 0");
    const DialogUser dialogs(QString(), true);
    m_user->click("Diagnostic");
    QTest::qWait(100);
    QCOMPARE(dialogs.caption, text("Save the diagnostic archive"));
    QCOMPARE(callsOfScript(), QStringList());
    QCOMPARE(dialogs.boxes, QStringList());
    QCOMPARE(dialogs.otherDialogs, 0);
}

void tst_PageNetToolsDiagnostic::commandLineIsSplit_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("plain") << "a.tgz"
                           << "[T/a.tgz]";
    QTest::newRow("blank") << "my diag.tgz"
                           << "[T/my][diag.tgz]";
    QTest::newRow("blanks in a row") << "my  own   diag.tgz"
                                     << "[T/my][own][diag.tgz]";
    QTest::newRow("single quotes mean nothing") << "'my diag'.tgz"
                                                << "[T/'my][diag'.tgz]";
    QTest::newRow("no shell") << "$(id);`id`&|>x*.tgz"
                              << "[T/$(id);`id`&|>x*.tgz]";
    QTest::newRow("place holders") << "%1%2.tgz"
                                   << "[T/%1%2.tgz]";
}

void tst_PageNetToolsDiagnostic::commandLineIsSplit()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    installScript("exit 0");
    const DialogUser dialogs(m_target->path() + QLatin1Char('/') + name);
    m_user->click("Diagnostic");
    const QString expected = arguments.replace(QLatin1Char('T'), m_target->path());
    QCOMPARE(callsOfScript(), QStringList{expected});
    QCOMPARE(dialogs.boxes, QStringList{successBox});
}

void tst_PageNetToolsDiagnostic::quotesKeepTextTogether_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("text in double quotes") << "\"my diag\".tgz"
                                           << "[my diag.tgz]";
    QTest::newRow("one double quote") << "my \"own diag.tgz"
                                      << "[my][own diag.tgz]";
    QTest::newRow("three double quotes are one") << "my\"\"\"diag.tgz"
                                                 << "[my\"diag.tgz]";
}

void tst_PageNetToolsDiagnostic::quotesKeepTextTogether()
{
    // Not by way of the file dialog, to which quotes mean a list of names.
    QFETCH(QString, path);
    QFETCH(QString, arguments);
    installScript("exit 0");
    QVERIFY(writeDiagnosticArchive(path));
    QCOMPARE(callsOfScript(), QStringList{arguments});
}

void tst_PageNetToolsDiagnostic::showsTheOutcome_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("box");
    QTest::newRow("exits with 0") << QByteArray("exit 0") << successBox;
    QTest::newRow("exits with 1") << QByteArray("exit 1") << errorBox;
    QTest::newRow("exits with 255") << QByteArray("exit 255") << errorBox;
    QTest::newRow("dies of a signal") << QByteArray("kill -9 $$") << errorBox;
    QTest::newRow("exits with 0 after a while") << QByteArray("/bin/sleep 1; exit 0") << successBox;
    QTest::newRow("writes no archive, exits with 0") << QByteArray(":") << successBox;
    QTest::newRow("missing") << QByteArray() << errorBox;
    QTest::newRow("not executable") << QByteArray("not executable") << errorBox;
}

void tst_PageNetToolsDiagnostic::showsTheOutcome()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, box);
    if (!script.isEmpty())
        installScript(script);
    if (script == "not executable")
        QFile::setPermissions(m_path->path("generateDiagnostic.sh"), QFile::ReadOwner);
    QElapsedTimer timer;
    timer.start();
    const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
    m_user->click("Diagnostic");
    // At once, or after the second that one of the scripts takes; far from the limit of ten.
    QVERIFY(timer.elapsed() < 5000);
    QCOMPARE(dialogs.boxes, QStringList{box});
    QVERIFY(!QFile::exists(m_target->filePath(QStringLiteral("a.tgz"))));
    QCOMPARE(m_user->logText(), QString());
}

void tst_PageNetToolsDiagnostic::outputIsDiscarded()
{
    installScript("i=0; while [ $i -lt 20000 ]; do\n"
                  "echo 'out: a line, of which there are more than a pipe holds'\n"
                  "echo 'err: a line, of which there are more than a pipe holds' >&2\n"
                  "i=$((i+1)); done; exit 0");
    const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
    m_user->click("Diagnostic");
    QCOMPARE(dialogs.boxes, QStringList{successBox});
    QCOMPARE(m_user->logText(), QString());
}

void tst_PageNetToolsDiagnostic::killsAScriptThatTakesTooLong()
{
    installScript("echo $$ >\"$1\"; trap '' TERM; exec /bin/sleep 60");
    warnings = 0;
    const QtMessageHandler before = qInstallMessageHandler(countWarning);
    QElapsedTimer timer;
    timer.start();
    const DialogUser dialogs(m_target->filePath(QStringLiteral("pid")));
    m_user->click("Diagnostic");
    qInstallMessageHandler(before);
    QVERIFY2(timer.elapsed() >= 10000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(dialogs.boxes, QStringList{errorBox});
    QCOMPARE(warnings, 0);

    QFile processId(m_target->filePath(QStringLiteral("pid")));
    QVERIFY(processId.open(QIODevice::ReadOnly));
    const qint64 script = processId.readAll().trimmed().toLongLong();
    QVERIFY(script > 0);
    QVERIFY(!isAlive(script));
}

void tst_PageNetToolsDiagnostic::isIndependentOfARunningTool()
{
    m_path->link("ping", QStringLiteral(STEPTOOL));
    m_user->lineEdit("Target Host:")->setText(text("on-term:0:closing\\n out:ready\\n pause"));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitForLog(text("ready\n")));
    const QString log = m_user->logText();

    installScript("exit 0");
    const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
    m_user->click("Diagnostic");
    QCOMPARE(dialogs.boxes, QStringList{successBox});
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    QCOMPARE(m_user->logText(), log);
    QCOMPARE(childProcesses().size(), 1);

    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logText(), log + text("> Terminating...\nclosing\n> Finished. ( Exit Code = 0 )\n"));
}

void tst_PageNetToolsDiagnostic::outputOfAToolIsShownAfterTheWait()
{
    m_path->link("ping", QStringLiteral(STEPTOOL));
    m_user->lineEdit("Target Host:")->setText(text("out:ready\\n pause out:meanwhile\\n pause exit:2"));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitForLog(text("ready\n")));
    const QList<qint64> tools = childProcesses();
    QCOMPARE(tools.size(), 1);

    const QByteArray tool = QByteArray::number(tools.constFirst());
    installScript("kill -USR1 " + tool + "; /bin/sleep 0.5; exit 0");
    const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
    m_user->click("Diagnostic");
    QCOMPARE(dialogs.boxes, QStringList{successBox});
    QVERIFY(m_user->waitForLog(text("ready\nmeanwhile\n")));
    kill(static_cast<pid_t>(tools.constFirst()), SIGUSR1);
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(m_user->logText().endsWith(text("ready\nmeanwhile\n> Finished. ( Exit Code = 2 )\n")));
}

void tst_PageNetToolsDiagnostic::translatesItsTexts_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("box");
    QTest::newRow("success") << QByteArray("exit 0") << "Diagnostic was successfully created";
    QTest::newRow("failure") << QByteArray("exit 1") << "Error: no diagnostic created";
}

void tst_PageNetToolsDiagnostic::translatesItsTexts()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, box);
    installScript(script);
    const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
    {
        const MarkingTranslator translator;
        m_user->click("Diagnostic");
    }
    QCOMPARE(dialogs.caption, text("[pageNetTools]Save the diagnostic archive"));
    QCOMPARE(dialogs.filters, QStringList{text("[pageNetTools]Archives (*.tgz *.tar.gz)")});
    QCOMPARE(dialogs.boxes, QStringList{text("[pageNetTools]Save the diagnostic|[pageNetTools]") + box});
}

void tst_PageNetToolsDiagnostic::givesTheScriptTheOwnSurroundings()
{
    installScript("echo \"$SYSINFO_TEST_VARIABLE $PWD\" >\"$1\"");
    qputenv("SYSINFO_TEST_VARIABLE", "kept");
    const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
    m_user->click("Diagnostic");
    qunsetenv("SYSINFO_TEST_VARIABLE");
    QFile written(m_target->filePath(QStringLiteral("a.tgz")));
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(written.readAll()), text("kept ") + QDir::currentPath() + QLatin1Char('\n'));
}

void tst_PageNetToolsDiagnostic::leavesNothingBehind()
{
    installScript("exit 0");
    int descriptors = 0;
    for (int i = 0; i < 10; ++i) {
        const DialogUser dialogs(m_target->filePath(QStringLiteral("a.tgz")));
        m_user->click("Diagnostic");
        QCOMPARE(dialogs.boxes, QStringList{successBox});
        // The first dialog sets up what Qt keeps for all of them.
        if (i == 0)
            descriptors = openDescriptors();
    }
    QCOMPARE(openDescriptors(), descriptors);
    QVERIFY(m_page->findChildren<QDialog *>().isEmpty());
}

QTEST_MAIN(tst_PageNetToolsDiagnostic)
#include "tst_pagenettools_diagnostic.moc"
