#include "tests/markingtranslator.h"
#include "tests/unit/nettoolsuser.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <memory>

namespace {

/// A notice as the log shows it: demi-bold.
QString notice(const QString &shown)
{
    return QChar(0xAB) + shown + QChar(0xBB);
}

QString executing(const QString &command)
{
    return notice(QStringLiteral("\n> Executing: \"") + command + QStringLiteral("\"\n\n"));
}

/// Parts of a log one after the other; there is nothing between two notices.
QString looks(QString log)
{
    return log.remove(QStringLiteral(u"\u00bb\u00ab"));
}

QString finished(int code)
{
    return notice(QStringLiteral("> Finished. ( Exit Code = ") + QString::number(code)
                  + QStringLiteral(" )\n"));
}

const QString terminating = notice(QStringLiteral("> Terminating...\n"));

QStringList *warnings = nullptr;

void collectWarning(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &message)
{
    warnings->append(message);
}

/// What Qt warned of while this lived.
class Warnings {
public:
    Warnings()
    {
        warnings = &m_messages;
        m_before = qInstallMessageHandler(collectWarning);
    }
    ~Warnings() { qInstallMessageHandler(m_before); }
    QStringList messages() const { return m_messages; }

private:
    QStringList m_messages;
    QtMessageHandler m_before = nullptr;
};

} // namespace

class tst_PageNetToolsProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsOutputBetweenTheNotices();
    void writesTheSameInASecondRun();
    void runsTheChosenTool_data();
    void runsTheChosenTool();
    void runsNothingWhenNoToolIsChosen();
    void noticeShowsArgumentsAsTyped_data();
    void noticeShowsArgumentsAsTyped();
    void givesNoInputAndTheOwnSurroundings();

    void showsOutput_data();
    void showsOutput();
    void looksTheSameOnBothChannels();
    void cutsEachReadAtAZeroByte();
    void showsAPartialLineAtOnce();
    void translatesTheNotices();
    void reportsTheExitCode_data();
    void reportsTheExitCode();
    void finishesWhenAnotherProcessHoldsTheOutput();

    void stopLetsTheToolClose();
    void stopOfAToolThatDoesNotCare();
    void toolThatIgnoresTheRequestIsAskedAgain();
    void eachPressAsksTheTool();
    void stopOfAToolThatIsJustStarting();
    void buttonStopsWhateverIsChosen();
    void cannotStart_data();
    void cannotStart();

    void clickMovesWhereOutputGoes();
    void buttonMovesToTheEnd();
    void clickIntoANoticeLeavesTheWeightOfTheNextRun();
    void selectedTextStays();
    void scrollsToNewOutput();
    void clearsTheLogOfARunningTool();
    void clearsTheLogBetweenRuns();

    void pageEndsItsTool_data();
    void pageEndsItsTool();
    void keepsALargeLogAndAnswers();
    void leavesNothingBehind();

private:
    void start(const QString &steps);
    void run(const QString &steps);
    void goOn() const;

    std::unique_ptr<QWidget> m_page;
    std::unique_ptr<NetToolsUser> m_user;
    std::unique_ptr<SearchPath> m_path;
};

void tst_PageNetToolsProcess::init()
{
    m_page = std::make_unique<pageNetTools>(nullptr);
    m_user = std::make_unique<NetToolsUser>(*m_page);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    m_path = std::make_unique<SearchPath>();
    for (const char *tool : {"ping", "host", "traceroute"})
        m_path->link(tool, QStringLiteral(STEPTOOL));
}

void tst_PageNetToolsProcess::cleanup()
{
    m_path.reset();
    m_user.reset();
    m_page.reset();
    QCOMPARE(childProcesses(), QList<qint64>());
}

void tst_PageNetToolsProcess::start(const QString &steps)
{
    m_user->lineEdit("Target Host:")->setText(steps);
    m_user->pressProcessButton();
}

void tst_PageNetToolsProcess::run(const QString &steps)
{
    start(steps);
    QVERIFY(m_user->waitUntilFinished());
}

/// Lets the tool go on with its steps after a pause.
void tst_PageNetToolsProcess::goOn() const
{
    const QList<qint64> children = childProcesses();
    QCOMPARE(children.size(), 1);
    kill(static_cast<pid_t>(children.constFirst()), SIGUSR1);
}

void tst_PageNetToolsProcess::showsOutputBetweenTheNotices()
{
    QCOMPARE(m_user->processButton()->text(), text("Start Process"));
    start(text("out:one\\n out:two\\n pause"));
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    const QString head = executing(text("ping out:one\\n out:two\\n pause"));
    QCOMPARE(m_user->logWithNotices(), head);

    QVERIFY(m_user->waitForLog(text("one\ntwo\n")));
    QCOMPARE(m_user->logWithNotices(), head + text("one\ntwo\n"));
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(), head + text("one\ntwo\n") + finished(0));
}

void tst_PageNetToolsProcess::writesTheSameInASecondRun()
{
    run(text("out:one\\n"));
    run(text("out:two\\n"));
    QCOMPARE(m_user->logWithNotices(),
             looks(executing(text("ping out:one\\n")) + text("one\n") + finished(0)
                   + executing(text("ping out:two\\n")) + text("two\n") + finished(0)));
}

void tst_PageNetToolsProcess::runsTheChosenTool_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("field");
    QTest::newRow("Ping") << "ping"
                          << "Target Host:";
    QTest::newRow("DNS Lookup") << "host"
                                << "Hostname:";
    QTest::newRow("Trace Route") << "traceroute"
                                 << "Target Host:";
}

void tst_PageNetToolsProcess::runsTheChosenTool()
{
    QFETCH(QString, program);
    QFETCH(QString, field);
    for (const char *tool : {"ping", "host", "traceroute"}) {
        QFile::remove(m_path->path(tool));
        m_path->install(tool, "echo \"${0##*/} runs\"\n");
    }
    m_user->click(QTest::currentDataTag());
    m_user->type(field.toLatin1().constData(), text("gw"));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(),
             executing(program + text(" gw")) + program + text(" runs\n") + finished(0));
}

void tst_PageNetToolsProcess::runsNothingWhenNoToolIsChosen()
{
    auto *ping = qobject_cast<QRadioButton *>(m_user->button("Ping"));
    ping->group()->setExclusive(false);
    ping->setChecked(false);
    m_user->pressProcessButton();
    QTest::qWait(50);
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    QCOMPARE(m_user->logText(), QString());
    QVERIFY(childProcesses().isEmpty());

    ping->setChecked(true);
    run(text("out:now\\n"));
    QCOMPARE(m_user->logWithNotices(), executing(text("ping out:now\\n")) + text("now\n") + finished(0));
}

void tst_PageNetToolsProcess::noticeShowsArgumentsAsTyped_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("command");
    QTest::newRow("nothing: a blank is left") << ""
                                              << "host ";
    QTest::newRow("place holders") << "%1 %2 %3 %4"
                                   << "host %1 %2 %3 %4";
    QTest::newRow("place holders that are escaped") << "%%1 %L2"
                                                    << "host %%1 %L2";
    QTest::newRow("quotes and blanks") << " \"a  b\" "
                                       << "host  \"a  b\" ";
    QTest::newRow("markup") << "<b>&amp;</b>"
                            << "host <b>&amp;</b>";
}

void tst_PageNetToolsProcess::noticeShowsArgumentsAsTyped()
{
    QFETCH(QString, target);
    QFETCH(QString, command);
    m_path->link("host", QStringLiteral("/bin/true"));
    m_user->click("DNS Lookup");
    m_user->lineEdit("Hostname:")->setText(target);
    m_user->pressProcessButton();
    QCOMPARE(m_user->logWithNotices(), executing(command));
    QVERIFY(m_user->waitUntilFinished());

    // An empty argument between others is a doubled blank.
    m_path->link("traceroute", QStringLiteral("/bin/true"));
    m_user->click("Trace Route");
    m_user->click("Clear Log");
    m_user->click("Set source IP");
    m_user->type("Set source IP", QString());
    m_user->lineEdit("Target Host:")->setText(target);
    m_user->pressProcessButton();
    QCOMPARE(m_user->logWithNotices(), executing(text("traceroute -s  ") + target));
    QVERIFY(m_user->waitUntilFinished());
}

void tst_PageNetToolsProcess::givesNoInputAndTheOwnSurroundings()
{
    qputenv("SYSINFO_TEST_VARIABLE", "kept");
    run(text("stdin cwd out:\\n env:SYSINFO_TEST_VARIABLE"));
    qunsetenv("SYSINFO_TEST_VARIABLE");
    const QString expected = text("a pipe, open and empty\n") + QDir::currentPath()
        + text("\nkept> Finished. ( Exit Code = 0 )\n");
    QVERIFY2(m_user->logText().endsWith(expected), qPrintable(m_user->logText()));
}

void tst_PageNetToolsProcess::showsOutput_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("shown");
    QTest::newRow("silent") << "exit:0"
                            << "";
    QTest::newRow("standard error only") << "err:failed\\n"
                                         << "failed\n";
    QTest::newRow("no final newline") << "out:end"
                                      << "end";
    QTest::newRow("markup is text") << "out:<b>&lt;</b><img\\ssrc=x>\\n"
                                    << "<b>&lt;</b><img src=x>\n";
    QTest::newRow("Latin-1") << "out:\\xe9\\xff\\xa0\\x80\\n"
                             << QStringLiteral(u"\u00e9\u00ff\u00a0\u0080\n");
    QTest::newRow("UTF-8 is not decoded") << "out:\\xc3\\xa9\\n" << QStringLiteral(u"\u00c3\u00a9\n");
    QTest::newRow("zero byte first") << "out:\\x00hidden\\n"
                                     << "";
    QTest::newRow("place holders") << "out:%1\\s%2\\n"
                                   << "%1 %2\n";
}

void tst_PageNetToolsProcess::showsOutput()
{
    QFETCH(QString, steps);
    QFETCH(QString, shown);
    run(steps);
    QCOMPARE(m_user->logWithNotices(), looks(executing(text("ping ") + steps) + shown + finished(0)));
    if (shown.isEmpty())
        QVERIFY(!m_user->logText().contains(QChar(0)));
}

void tst_PageNetToolsProcess::looksTheSameOnBothChannels()
{
    start(text("out:out\\n pause err:err\\n pause out:out\\n"));
    QVERIFY(m_user->waitForLog(text("\n\nout\n")));
    goOn();
    QVERIFY(m_user->waitForLog(text("out\nerr\n")));
    goOn();
    QVERIFY(m_user->waitUntilFinished());

    QStringList parts;
    for (QTextBlock block = m_user->log()->document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); it != block.end(); ++it) {
            parts << it.fragment().text();
            // Only the weight tells notices from output, and nothing the channels from each other; the font
            // is that of the log.
            QTextCharFormat format = it.fragment().charFormat();
            format.clearProperty(QTextFormat::FontWeight);
            QVERIFY2(format.propertyCount() == 0, qPrintable(parts.constLast()));
        }
    }
    QCOMPARE(parts.filter(QRegularExpression(QStringLiteral("^(out|err)$"))),
             (QStringList{text("out"), text("err"), text("out")}));
}

void tst_PageNetToolsProcess::translatesTheNotices()
{
    start(text("out:ready\\n pause"));
    QVERIFY(m_user->waitForLog(text("ready\n")));
    const MarkingTranslator translator;
    m_user->pressProcessButton();
    QTRY_COMPARE_WITH_TIMEOUT(m_user->processButton()->text(), text("[pageNetTools]Start Process"), 10000);
    const QString notices = text("ready\n> [pageNetTools]Terminating...\n"
                                 "> [pageNetTools]Finished. ( [pageNetTools]Exit Code = 15 )\n");
    QVERIFY2(m_user->logText().endsWith(notices), qPrintable(m_user->logText()));
}

void tst_PageNetToolsProcess::cutsEachReadAtAZeroByte()
{
    const QString steps = text("out:abc\\x00def\\n pause err:ghi\\x00jkl\\n pause out:mno\\n");
    start(steps);
    QVERIFY(m_user->waitForLog(text("abc")));
    goOn();
    QVERIFY(m_user->waitForLog(text("ghi")));
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(), executing(text("ping ") + steps) + text("abcghimno\n") + finished(0));
}

void tst_PageNetToolsProcess::showsAPartialLineAtOnce()
{
    start(text("out:half pause out:\\sline\\n"));
    QVERIFY(m_user->waitForLog(text("\n\nhalf")));
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(m_user->logWithNotices().endsWith(text("half line\n") + finished(0)));
}

void tst_PageNetToolsProcess::reportsTheExitCode_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("code");
    QTest::newRow("success") << "exit:0" << 0;
    QTest::newRow("no reply to ping") << "exit:1" << 1;
    QTest::newRow("bad arguments") << "exit:2" << 2;
    QTest::newRow("largest") << "exit:255" << 255;
    // Of a tool that a signal ended, the kernel gives the signal's number in the place of an exit code.
    QTest::newRow("crash") << "raise:11" << 11;
    QTest::newRow("killed") << "raise:9" << 9;
}

void tst_PageNetToolsProcess::reportsTheExitCode()
{
    QFETCH(QString, steps);
    QFETCH(int, code);
    run(text("out:said\\n ") + steps);
    QCOMPARE(m_user->logWithNotices(),
             executing(text("ping out:said\\n ") + steps) + text("said\n") + finished(code));
}

void tst_PageNetToolsProcess::finishesWhenAnotherProcessHoldsTheOutput()
{
    run(text("hold exit:3"));
    const QString head = executing(text("ping hold exit:3"));
    const QString log = m_user->logWithNotices();
    QVERIFY(log.startsWith(head));
    const QString holder = log.mid(head.size()).section(QLatin1Char('\n'), 0, 0);
    QVERIFY(holder.toInt() > 0);
    const auto endHolder = qScopeGuard([&] { kill(holder.toInt(), SIGKILL); });
    QCOMPARE(log, head + holder + QLatin1Char('\n') + finished(3));
    QVERIFY(isAlive(holder.toLongLong()));
    m_user->click("Clear Log");
    run(text("out:next\\n"));
    QCOMPARE(m_user->logWithNotices(), executing(text("ping out:next\\n")) + text("next\n") + finished(0));
}

void tst_PageNetToolsProcess::stopLetsTheToolClose()
{
    const QString steps = text("on-term:7:closing\\n out:ready\\n pause");
    start(steps);
    QVERIFY(m_user->waitForLog(text("ready\n")));
    m_user->pressProcessButton();
    QCOMPARE(m_user->logWithNotices(), executing(text("ping ") + steps) + text("ready\n") + terminating);
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(),
             executing(text("ping ") + steps) + text("ready\n") + terminating + text("closing\n")
                 + finished(7));
}

void tst_PageNetToolsProcess::stopOfAToolThatDoesNotCare()
{
    start(text("out:ready\\n pause"));
    QVERIFY(m_user->waitForLog(text("ready\n")));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    // SIGTERM
    QCOMPARE(m_user->logWithNotices(),
             executing(text("ping out:ready\\n pause")) + text("ready\n")
                 + looks(terminating + finished(15)));
}

void tst_PageNetToolsProcess::toolThatIgnoresTheRequestIsAskedAgain()
{
    start(text("ignore-term out:ready\\n pause out:still\\shere\\n pause exit:4"));
    QVERIFY(m_user->waitForLog(text("ready\n")));
    const QString log = m_user->logWithNotices();
    m_user->pressProcessButton();
    QCOMPARE(m_user->logWithNotices(), log + terminating);
    goOn();
    QVERIFY(m_user->waitForLog(text("still here\n")));
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    m_user->pressProcessButton();
    QCOMPARE(m_user->logWithNotices(), log + terminating + text("still here\n") + terminating);
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(
        m_user->logText().endsWith(text("still here\n> Terminating...\n> Finished. ( Exit Code = 4 )\n")));
}

void tst_PageNetToolsProcess::eachPressAsksTheTool()
{
    start(text("echo-term out:ready\\n pause exit:6"));
    QVERIFY(m_user->waitForLog(text("ready\n")));
    const QString log = m_user->logWithNotices();
    m_user->pressProcessButton();
    QVERIFY(m_user->waitForLog(text("asked\n")));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitForLog(text("asked\n> Terminating...\nasked\n")));
    QCOMPARE(m_user->logWithNotices(), log + terminating + text("asked\n") + terminating + text("asked\n"));
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(m_user->logText().endsWith(text("asked\n> Finished. ( Exit Code = 6 )\n")));
}

void tst_PageNetToolsProcess::stopOfAToolThatIsJustStarting()
{
    // Until the child has become the tool it would handle the signal as this test program does.
    const auto before = std::signal(SIGTERM, SIG_DFL);
    const auto restore = qScopeGuard([=] { std::signal(SIGTERM, before); });
    m_user->lineEdit("Target Host:")->setText(text("pause"));
    // Nothing comes between the two, not even the news that the tool has started.
    m_user->processButton()->click();
    m_user->processButton()->click();
    QCOMPARE(m_user->logWithNotices(), looks(executing(text("ping pause")) + terminating));
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(), looks(executing(text("ping pause")) + terminating + finished(15)));
}

void tst_PageNetToolsProcess::buttonStopsWhateverIsChosen()
{
    start(text("on-term:0:closing\\n out:ready\\n pause"));
    QVERIFY(m_user->waitForLog(text("ready\n")));
    m_user->click("DNS Lookup");
    m_user->type("Hostname:", text("out:looked\\sup\\n"));
    QCOMPARE(childProcesses().size(), 1);
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(m_user->logText().endsWith(
        text("ready\n> Terminating...\nclosing\n> Finished. ( Exit Code = 0 )\n")));

    m_user->click("Clear Log");
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(),
             executing(text("host out:looked\\sup\\n")) + text("looked up\n") + finished(0));
}

void tst_PageNetToolsProcess::cannotStart_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("executable");
    QTest::newRow("not installed") << QByteArray() << false;
    QTest::newRow("not executable") << QByteArray("#!/bin/sh\necho wrong\n") << false;
    QTest::newRow("interpreter missing") << QByteArray("#!/there/is/no/such/program\n") << true;
    QTest::newRow("no program") << QByteArray("\x7f"
                                              "ELF")
                                << true;
}

void tst_PageNetToolsProcess::cannotStart()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, executable);
    QFile::remove(m_path->path("ping"));
    if (!content.isEmpty()) {
        QFile file(m_path->path("ping"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        file.setPermissions(executable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
    }

    const QString notStarted = text("\n> Executing: \"ping out:now\\n\"\n\n");
    for (const QString &log : {notStarted, notStarted + notStarted}) {
        start(text("out:now\\n"));
        QTRY_VERIFY(childProcesses().isEmpty());
        QTest::qWait(100);
        QCOMPARE(m_user->logWithNotices(), notice(log));
        QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    }

    m_path->link("ping", QStringLiteral(STEPTOOL));
    run(text("out:now\\n"));
    QCOMPARE(m_user->logWithNotices(),
             notice(notStarted + notStarted + notStarted) + text("now\n") + finished(0));
}

void tst_PageNetToolsProcess::clickMovesWhereOutputGoes()
{
    start(text("out:first\\nthird\\n pause out:second\\n pause out:more\\n"));
    QVERIFY(m_user->waitForLog(text("first\nthird\n")));
    m_user->clickIntoLog(m_user->logText().lastIndexOf(text("third")));
    goOn();
    QVERIFY(m_user->waitForLog(text("first\nsecond\nthird\n")));
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    // The notice as well goes there.
    QVERIFY2(m_user->logWithNotices().endsWith(text("first\nsecond\nmore\n") + finished(0) + text("third\n")),
             qPrintable(m_user->logWithNotices()));
}

void tst_PageNetToolsProcess::buttonMovesToTheEnd()
{
    start(text("on-term:0:closing\\n out:first\\nlast\\n pause"));
    QVERIFY(m_user->waitForLog(text("last\n")));
    m_user->clickIntoLog(m_user->logText().lastIndexOf(text("last")));
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(m_user->logWithNotices().endsWith(text("first\nlast\n") + terminating + text("closing\n")
                                              + finished(0)));

    m_user->clickIntoLog(m_user->logText().lastIndexOf(text("last")));
    run(text("out:again\\n"));
    QVERIFY(m_user->logText().endsWith(
        text("> Finished. ( Exit Code = 0 )\n\n> Executing: \"ping out:again\\n\"\n\nagain\n"
             "> Finished. ( Exit Code = 0 )\n")));
}

void tst_PageNetToolsProcess::clickIntoANoticeLeavesTheWeightOfTheNextRun()
{
    run(text("out:one\\n"));
    m_user->clickIntoLog(m_user->logText().indexOf(text("inished")));
    m_user->click("Clear Log");
    run(text("out:two\\n"));
    QCOMPARE(m_user->logWithNotices(), executing(text("ping out:two\\n")) + text("two\n") + finished(0));
}

void tst_PageNetToolsProcess::selectedTextStays()
{
    start(text("out:one\\s pause out:two\\s pause"));
    QVERIFY(m_user->waitForLog(text("one ")));
    const QString before = m_user->logWithNotices();
    QTest::keySequence(m_user->log(), QKeySequence::SelectAll);
    QVERIFY(m_user->log()->textCursor().hasSelection());
    goOn();
    QVERIFY(m_user->waitForLog(text("one two ")));
    QTest::keySequence(m_user->log(), QKeySequence::SelectAll);
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(), before + text("two ") + finished(0));
}

void tst_PageNetToolsProcess::scrollsToNewOutput()
{
    const QTextEdit *log = m_user->log();
    const auto endCanBeSeen = [&] {
        QTextCursor end(log->document());
        end.movePosition(QTextCursor::End);
        return log->viewport()->rect().contains(log->cursorRect(end));
    };
    start(text("flood:500:20 pause"));
    QVERIFY(m_user->waitForLog(text("499 xxxxxxxxxxxxxxx\n")));
    QVERIFY(endCanBeSeen());
    log->verticalScrollBar()->setValue(0);
    QVERIFY(!endCanBeSeen());
    goOn();
    QVERIFY(m_user->waitUntilFinished());
    QVERIFY(endCanBeSeen());
}

void tst_PageNetToolsProcess::clearsTheLogOfARunningTool()
{
    start(text("on-term:0:closing\\n out:one\\n pause out:two\\n pause"));
    QVERIFY(m_user->waitForLog(text("one\n")));
    m_user->click("Clear Log");
    QCOMPARE(m_user->logText(), QString());
    QCOMPARE(m_user->processButton()->text(), text("Stop Process"));
    goOn();
    QVERIFY(m_user->waitForLog(text("two\n")));
    QCOMPARE(m_user->logWithNotices(), text("two\n"));
    m_user->click("Clear Log");
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->logWithNotices(), terminating + text("closing\n") + finished(0));
}

void tst_PageNetToolsProcess::clearsTheLogBetweenRuns()
{
    run(text("out:one\\n"));
    m_user->click("Clear Log");
    QCOMPARE(m_user->logText(), QString());
    run(text("out:two\\n"));
    QCOMPARE(m_user->logWithNotices(), executing(text("ping out:two\\n")) + text("two\n") + finished(0));
}

void tst_PageNetToolsProcess::pageEndsItsTool_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("waitFor");
    QTest::newRow("waiting") << "out:ready\\n pause"
                             << "ready\n";
    QTest::newRow("ignores SIGTERM") << "ignore-term out:ready\\n pause"
                                     << "ready\n";
    QTest::newRow("would say something on SIGTERM") << "on-term:0:closing\\n out:ready\\n pause"
                                                    << "ready\n";
    QTest::newRow("just started") << "out:ready\\n flood:10000:100 pause"
                                  << "";
    QTest::newRow("in the middle of its output") << "out:ready\\n flood:100000:100 pause"
                                                 << "";
    QTest::newRow("ended, not noticed yet") << "out:ready\\n exit:0"
                                            << "";
}

void tst_PageNetToolsProcess::pageEndsItsTool()
{
    QFETCH(QString, steps);
    QFETCH(QString, waitFor);
    const Warnings during;
    start(steps);
    if (!waitFor.isEmpty())
        QVERIFY(m_user->waitForLog(waitFor));
    else if (qstrcmp(QTest::currentDataTag(), "just started") != 0)
        QTest::qSleep(50);
    QCOMPARE(childProcesses().size(), 1);

    int changes = 0;
    connect(m_user->log()->document(), &QTextDocument::contentsChange, this, [&] { ++changes; });
    m_user.reset();
    m_page.reset();
    QCOMPARE(changes, 0);
    QVERIFY(childProcesses().isEmpty());
    QCOMPARE(during.messages().filter(text("QProcess")), QStringList());
}

void tst_PageNetToolsProcess::keepsALargeLogAndAnswers()
{
    constexpr int lines = 100000;
    qint64 longestPause = 0;
    QElapsedTimer sinceAnswer;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this,
            [&] { longestPause = std::max(longestPause, sinceAnswer.restart()); });
    timer.start(1);
    sinceAnswer.start();
    start(text("flood:100000:100"));
    QVERIFY(m_user->waitUntilFinished(50000));
    // Reads of a pipe are small; even a busy machine shows one in much less than this.
    QVERIFY2(longestPause < 1500, qPrintable(QString::number(longestPause)));

    const QStringList shown = m_user->log()->toPlainText().split(QLatin1Char('\n'));
    constexpr int before = 3; // a line feed, the notice, an empty line
    QCOMPARE(shown.size(), before + lines + 2);
    for (int i = 0; i < lines; ++i) {
        const QString line = QStringLiteral("%1 ").arg(i).leftJustified(99, QLatin1Char('x'));
        if (shown.at(before + i) != line)
            QCOMPARE(shown.at(before + i), line);
    }
    QCOMPARE(shown.at(before + lines), text("> Finished. ( Exit Code = 0 )"));
    QVERIFY(!m_user->log()->document()->isUndoAvailable());
}

void tst_PageNetToolsProcess::leavesNothingBehind()
{
    // The first process sets up what Qt keeps for all of them.
    run(text("exit:0"));
    const int descriptors = openDescriptors();
    for (int cycle = 0; cycle < 200; ++cycle) {
        m_user->click("Clear Log");
        start(text("on-term:5:closing\\n out:ready\\n pause"));
        QVERIFY(m_user->waitForLog(text("ready\n")));
        m_user->pressProcessButton();
        QVERIFY(m_user->waitUntilFinished());
        QVERIFY(m_user->logText().endsWith(text("closing\n> Finished. ( Exit Code = 5 )\n")));
    }
    QCOMPARE(childProcesses(), QList<qint64>());
    QCOMPARE(openDescriptors(), descriptors);
}

QTEST_MAIN(tst_PageNetToolsProcess)
#include "tst_pagenettools_process.moc"
