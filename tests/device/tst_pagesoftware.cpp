#include "pages/software/pagesoftware.h"
#include "tests/device/device.h"
#include "tests/markingtranslator.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QLayout>
#include <QProcess>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTimerEvent>
#include <QTreeView>

#include <memory>

#include <csignal>

namespace {

const QString dpkgQuery = QStringLiteral("/usr/bin/dpkg-query");
const QString fallbackQuery = QStringLiteral("/usr/share/ovpkg/.ovpkg3");
const QString ovpkg = QStringLiteral("/usr/bin/ovpkg");
const QString cat = QStringLiteral("/usr/bin/cat");
const QString packageNames = QStringLiteral("/etc/SysInfo/pkg_list.conf");
const QString mainTitle = QStringLiteral("Main software installed");
const QString addonTitle = QStringLiteral("Addons installed");

QGroupBox *groupOf(const QWidget &page, const QString &title)
{
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    for (QGroupBox *group : groups) {
        if (group->title() == title)
            return group;
    }
    return nullptr;
}

QTreeView *viewOf(const QWidget &page, const QString &title)
{
    const QGroupBox *group = groupOf(page, title);
    return group ? group->findChild<QTreeView *>() : nullptr;
}

QStandardItemModel *modelOf(const QWidget &page, const QString &title)
{
    return qobject_cast<QStandardItemModel *>(viewOf(page, title)->model());
}

/// The rows of the model: items between "|", rows between " / ".
QString rowsOf(const QStandardItemModel *model)
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < model->columnCount(); ++column) {
            if (model->item(row, column))
                texts.append(model->index(row, column).data().toString());
        }
        rows.append(texts.join(QLatin1Char('|')));
    }
    return rows.join(QLatin1String(" / "));
}

QString mainRows(const QWidget &page)
{
    return rowsOf(modelOf(page, mainTitle));
}

QString addonRows(const QWidget &page)
{
    return rowsOf(modelOf(page, addonTitle));
}

QStringList headersOf(const QAbstractItemModel *model)
{
    QStringList texts;
    for (int section = 0; section < model->columnCount(); ++section)
        texts.append(model->headerData(section, Qt::Horizontal).toString());
    return texts;
}

void tick(QWidget &page)
{
    QTimerEvent event(1);
    QCoreApplication::sendEvent(&page, &event);
}

/// The recorded calls, one a line, arguments in brackets.
QString recordedCalls()
{
    QStringList lines;
    const QList<QStringList> calls = Device::calls();
    for (const QStringList &call : calls) {
        QString line = call.constFirst();
        for (const QString &argument : call.mid(1))
            line += QLatin1String(" [") + argument + QLatin1Char(']');
        lines.append(line);
    }
    return lines.join(QLatin1Char('\n'));
}

/// A script that prints the bytes, given as printf takes them.
QByteArray printing(const QByteArray &format)
{
    return "printf '" + format + "'";
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

/// The file in which a stand-in leaves its process id with leavePid.
QString pidFile()
{
    return qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/pid");
}
const QByteArray leavePid = "echo $$ >\"$SYSINFO_RIG/pid\"\n";

bool runs(const QString &pid)
{
    return kill(pid.toInt(), 0) == 0;
}

/// Short enough for a test to wait for, long enough for a stand-in to print.
PackageToolLimits shortLimits()
{
    return {700, 700};
}

QList<QProcess *> processesOf(const QObject *page)
{
    return page->findChildren<QProcess *>(QString(), Qt::FindDirectChildrenOnly);
}

/// Runs the machine's own dpkg-query, apart from the page.
QStringList dpkgQueryLines(const QStringList &arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/dpkg-query"), arguments);
    process.waitForFinished();
    return QString::fromLatin1(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class tst_pageSoftware : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsTheInventoryOfTheDevice();
    void hasTwoReadOnlyLists();
    void hasNoMembersInItsMetaObject();
    void waitsAsLongAsTheToolsMayTake();

    void asksForTheNamesInTheFile_data();
    void asksForTheNamesInTheFile();
    void asksForEverythingWithoutNames_data();
    void asksForEverythingWithoutNames();
    void readsTheNamesAtEachRefresh();

    void asksTheFallbackProgram();
    void runsNothingWithoutAProgram();
    void keepsTheMainListWhenItsProgramsVanish();
    void choosesTheProgramAtEachRefresh();

    void hasNoAddonBoxWithoutTheTool();
    void keepsTheAddonBoxAwayWhenTheToolComesLater();
    void keepsTheAddonsWhenTheToolVanishes();

    void readsTheMainSoftware_data();
    void readsTheMainSoftware();
    void readsTheAddons_data();
    void readsTheAddons();
    void survivesFailingTools_data();
    void survivesFailingTools();
    void drainsFloods();
    void leavesStandardInputOpen();

    void listsTheRealPackages();
    void listsTheRealPackagesThatAreNamed();
    void showsArchitectures();

    void waitsForEachToolByItsOwnLimit();
    void listsWhatAHangingQueryPrinted();
    void listsWhatAHangingAddonToolPrinted();
    void forgetsWhatAKilledToolPrintedLater();
    void usesTheNamesThatAHangingReaderPrinted();
    void replacesAReaderThatDoesNotTerminate();

    void refreshesEveryThreeSeconds();
    void doesNotDoubleRows();
    void losesSelectionAndPosition();
    void fitsTheColumnsToTheRows();
    void reportsRowsAtOnce();
    void keepsModelsConsistent();
    void keepsHeadersBesideLongerRows();
    void marksItsTextsForTranslation();

    void sharesTheNamesProcess();
    void outlivesTheFirstPage();
    void deletesViewsThenProcess();
    void leavesNothingBehind();
};

void tst_pageSoftware::init()
{
    QFile::remove(pidFile());
    Device::clearCalls();
}

void tst_pageSoftware::cleanup()
{
    Device::restore();
}

void tst_pageSoftware::showsTheInventoryOfTheDevice()
{
    const bool arm = Device::name() == QLatin1String("arm");
    const pageSoftware page(nullptr);
    QCOMPARE(mainRows(page),
             arm ? QStringLiteral("terminal-client|7.2.4-1 / xserver-common|1.7.7-18"
                                  " / kernel-image|2.6.35-tc50-r118")
                 : QStringLiteral("terminal-client|8.0.1-2 / xserver-common|1.12.4-6"));
    QCOMPARE(addonRows(page),
             arm ? QStringLiteral("remote-desktop 6.3-12 / serial-redirection 2.1")
                 : QStringLiteral("remote-desktop 7.0-3"));
    const QString names = arm ? QStringLiteral("[terminal-client] [xserver-common] [kernel-image] []")
                              : QStringLiteral("[terminal-client] [xserver-common] []");
    QCOMPARE(recordedCalls(),
             QStringLiteral("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]\n"
                            "/usr/bin/dpkg-query [-W] %1\n"
                            "/usr/bin/ovpkg [-l]")
                 .arg(names));
}

void tst_pageSoftware::hasTwoReadOnlyLists()
{
    const pageSoftware page(nullptr);
    QVERIFY(qobject_cast<QVBoxLayout *>(page.layout()));
    QCOMPARE(page.layout()->count(), 2);
    QCOMPARE(page.layout()->itemAt(0)->widget(), groupOf(page, mainTitle));
    QCOMPARE(page.layout()->itemAt(1)->widget(), groupOf(page, addonTitle));
    for (const QString &title : {mainTitle, addonTitle}) {
        const QTreeView *view = viewOf(page, title);
        QVERIFY(qobject_cast<QHBoxLayout *>(groupOf(page, title)->layout()));
        QVERIFY(!view->rootIsDecorated());
        QVERIFY(view->alternatingRowColors());
        QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(!view->isSortingEnabled());
        QVERIFY(qobject_cast<QStandardItemModel *>(view->model()));
        QCOMPARE(view->model()->QObject::parent(), &page);
    }
    QCOMPARE(page.findChildren<QStandardItemModel *>().size(), 2);

    const QTreeView *mainView = viewOf(page, mainTitle);
    QCOMPARE(headersOf(mainView->model()), (QStringList{QStringLiteral("Name"), QStringLiteral("Version")}));
    QCOMPARE(mainView->header()->sectionResizeMode(0), QHeaderView::ResizeToContents);
    QCOMPARE(mainView->header()->sectionResizeMode(1), QHeaderView::ResizeToContents);
    const QTreeView *addonView = viewOf(page, addonTitle);
    QCOMPARE(headersOf(addonView->model()), QStringList{QStringLiteral("Orvo Package Name")});
    QCOMPARE(addonView->header()->sectionResizeMode(0), QHeaderView::Interactive);
}

void tst_pageSoftware::hasNoMembersInItsMetaObject()
{
    const QMetaObject &metaObject = pageSoftware::staticMetaObject;
    QCOMPARE(metaObject.className(), "pageSoftware");
    QCOMPARE(metaObject.methodCount(), metaObject.methodOffset());
    QCOMPARE(metaObject.propertyCount(), metaObject.propertyOffset());
}

void tst_pageSoftware::waitsAsLongAsTheToolsMayTake()
{
    QCOMPARE(PackageToolLimits().packageNames, 3000);
    QCOMPARE(PackageToolLimits().query, 30000);
}

void tst_pageSoftware::asksForTheNamesInTheFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("call");
    QTest::newRow("two names") << QByteArray("bash\nzsh") << "[-W] [bash] [zsh]";
    QTest::newRow("final newline") << QByteArray("bash\n") << "[-W] [bash] []";
    QTest::newRow("blank lines") << QByteArray("\nbash\n\nzsh") << "[-W] [] [bash] [] [zsh]";
    QTest::newRow("a newline alone") << QByteArray("\n") << "[-W] [] []";
    QTest::newRow("blanks in a name") << QByteArray(" a b ") << "[-W] [ a b ]";
    QTest::newRow("quotes and dollars") << QByteArray("\"a b\" '$HOME' \\") << "[-W] [\"a b\" '$HOME' \\]";
    QTest::newRow("an option") << QByteArray("-f=x") << "[-W] [-f=x]";
    QTest::newRow("a zero byte") << QByteArray("bash\nz\0sh\na", 11) << "[-W] [bash] [z]";
}

void tst_pageSoftware::asksForTheNamesInTheFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, call);
    Device::write(packageNames, file);
    const pageSoftware page(nullptr);
    QCOMPARE(recordedCalls().section(QLatin1Char('\n'), 1, 1), dpkgQuery + QLatin1Char(' ') + call);
}

void tst_pageSoftware::asksForEverythingWithoutNames_data()
{
    QTest::addColumn<QString>("trouble");
    for (const char *trouble : {"empty file", "no file", "unreadable file", "no cat", "cat not executable"})
        QTest::newRow(trouble) << QString::fromLatin1(trouble);
}

void tst_pageSoftware::asksForEverythingWithoutNames()
{
    QFETCH(QString, trouble);
    if (trouble == QLatin1String("empty file"))
        Device::write(packageNames, "");
    else if (trouble == QLatin1String("no file"))
        Device::remove(packageNames);
    else if (trouble == QLatin1String("unreadable file"))
        Device::makeUnreadable(packageNames);
    else if (trouble == QLatin1String("no cat"))
        Device::remove(cat);
    else if (trouble == QLatin1String("cat not executable"))
        QVERIFY(QFile::setPermissions(cat, QFile::ReadOwner));
    const pageSoftware page(nullptr);
    QFile::setPermissions(cat, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QStringList expected{dpkgQuery, QStringLiteral("-W")};
    QVERIFY2(Device::calls().contains(expected), qPrintable(recordedCalls()));
    QVERIFY(!mainRows(page).isEmpty());
}

void tst_pageSoftware::readsTheNamesAtEachRefresh()
{
    Device::write(packageNames, "bash");
    pageSoftware page(nullptr);
    Device::write(packageNames, "zsh");
    Device::clearCalls();
    tick(page);
    QCOMPARE(recordedCalls(),
             QStringLiteral("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]\n"
                            "/usr/bin/dpkg-query [-W] [zsh]\n"
                            "/usr/bin/ovpkg [-l]"));
}

void tst_pageSoftware::asksTheFallbackProgram()
{
    Device::remove(dpkgQuery);
    Device::write(packageNames, "bash\n");
    Device::installTool(fallbackQuery, printing("fallback 1\\n"));
    const pageSoftware page(nullptr);
    QCOMPARE(mainRows(page), QStringLiteral("fallback|1"));
    QCOMPARE(recordedCalls(),
             QStringLiteral("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]\n"
                            "/usr/share/ovpkg/.ovpkg3 [-W] [bash] []\n"
                            "/usr/bin/ovpkg [-l]"));
}

void tst_pageSoftware::runsNothingWithoutAProgram()
{
    Device::remove(dpkgQuery);
    Device::remove(fallbackQuery);
    Device::remove(ovpkg);
    pageSoftware page(nullptr);
    tick(page);
    QCOMPARE(mainRows(page), QString());
    QCOMPARE(recordedCalls(), QString());
}

void tst_pageSoftware::keepsTheMainListWhenItsProgramsVanish()
{
    Device::installTool(dpkgQuery, printing("a 1\\n"));
    pageSoftware page(nullptr);
    Device::remove(dpkgQuery);
    Device::remove(fallbackQuery);
    Device::clearCalls();
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("a|1"));
    QCOMPARE(recordedCalls(), QStringLiteral("/usr/bin/ovpkg [-l]"));
}

void tst_pageSoftware::choosesTheProgramAtEachRefresh()
{
    Device::installTool(dpkgQuery, printing("first 1\\n"));
    Device::installTool(fallbackQuery, printing("second 2\\n"));
    pageSoftware page(nullptr);
    QCOMPARE(mainRows(page), QStringLiteral("first|1"));
    Device::remove(dpkgQuery);
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("second|2"));
    Device::installTool(dpkgQuery, printing("third 3\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("third|3"));
}

void tst_pageSoftware::hasNoAddonBoxWithoutTheTool()
{
    Device::remove(ovpkg);
    const qsizetype before = QApplication::topLevelWidgets().size();
    {
        pageSoftware page(nullptr);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        QCOMPARE(groupOf(page, addonTitle), nullptr);
        QCOMPARE(page.findChildren<QTreeView *>().size(), 1);
        QCOMPARE(page.layout()->count(), 1);
        QVERIFY(!mainRows(page).isEmpty());
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (const QWidget *window : windows)
            QVERIFY(window == &page || !window->isVisible());
        QVERIFY(!recordedCalls().contains(ovpkg));
    }
    QCOMPARE(QApplication::topLevelWidgets().size(), before);
}

void tst_pageSoftware::keepsTheAddonBoxAwayWhenTheToolComesLater()
{
    Device::remove(ovpkg);
    pageSoftware page(nullptr);
    page.show();
    Device::installTool(ovpkg, printing("a\\n"));
    tick(page);
    QCOMPARE(groupOf(page, addonTitle), nullptr);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows)
        QVERIFY(window == &page || !window->isVisible());
    QVERIFY(recordedCalls().endsWith(QLatin1String("/usr/bin/ovpkg [-l]")));
}

void tst_pageSoftware::keepsTheAddonsWhenTheToolVanishes()
{
    Device::installTool(ovpkg, printing("a 1\\n"));
    pageSoftware page(nullptr);
    Device::remove(ovpkg);
    tick(page);
    QVERIFY(groupOf(page, addonTitle));
    QCOMPARE(addonRows(page), QStringLiteral("a 1"));
}

void tst_pageSoftware::readsTheMainSoftware_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("rows");
    QTest::newRow("a tab between") << QByteArray("bash\\t5.2\\nzsh\\t5.9\\n") << "bash|5.2 / zsh|5.9";
    QTest::newRow("blanks around and between") << QByteArray("  bash \\t  5.2  \\n") << "bash|5.2";
    QTest::newRow("more than two fields") << QByteArray("a 1 x y\\nb 2\\n") << "a|1|x|y / b|2";
    QTest::newRow("no version") << QByteArray("a\\t\\n") << "a";
    QTest::newRow("with architectures") << QByteArray("libc6:armhf\\t2.36\\n") << "libc6:armhf|2.36";
    QTest::newRow("Latin-1") << QByteArray("caf\\351\\t1\\n") << QString::fromLatin1("caf\xe9|1");
    QTest::newRow("a zero byte") << QByteArray("a\\t1\\nb\\t2\\000\\nc\\t3\\n") << "a|1 / b|2";
    QTest::newRow("markup") << QByteArray("<b>a</b>\\t1\\n") << "<b>a</b>|1";
    QTest::newRow("no final newline") << QByteArray("a 1\\nb 2") << "a|1 / b|2";
    QTest::newRow("nothing") << QByteArray("") << "";
}

void tst_pageSoftware::readsTheMainSoftware()
{
    QFETCH(QByteArray, format);
    Device::installTool(dpkgQuery, printing(format));
    const pageSoftware page(nullptr);
    QTEST(mainRows(page), "rows");
}

void tst_pageSoftware::readsTheAddons_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("rows");
    QTest::newRow("heading, package, empty line")
        << QByteArray("The Orvo packages are:\\n  a  1.0 \\n\\n") << "a  1.0";
    QTest::newRow("no heading") << QByteArray("a\\nb\\n") << "a / b";
    QTest::newRow("another heading") << QByteArray("Orvo packages:\\n") << "Orvo packages:";
    QTest::newRow("Latin-1") << QByteArray("caf\\351\\n") << QString::fromLatin1("caf\xe9");
    QTest::newRow("a zero byte") << QByteArray("a\\nb\\000c\\nd\\n") << "a / b";
    QTest::newRow("nothing") << QByteArray("") << "";
}

void tst_pageSoftware::readsTheAddons()
{
    QFETCH(QByteArray, format);
    Device::installTool(ovpkg, printing(format));
    const pageSoftware page(nullptr);
    QTEST(addonRows(page), "rows");
}

void tst_pageSoftware::survivesFailingTools_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("rows");
    const QByteArray print = printing("a\\n");
    QTest::newRow("exits 1") << print + "; exit 1"
                             << "a";
    QTest::newRow("exits 1 and prints nothing") << QByteArray("exit 1") << "";
    QTest::newRow("complains") << "echo trouble >&2; " + print << "a";
    QTest::newRow("is killed") << print + "; kill -9 $$"
                               << "a";
    QTest::newRow("crashes") << print + "; kill -SEGV $$"
                             << "a";
    QTest::newRow("not executable") << QByteArray() << "";
}

void tst_pageSoftware::survivesFailingTools()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, rows);
    Device::installTool(dpkgQuery, printing("before\\n"));
    Device::installTool(ovpkg, printing("before\\n"));
    pageSoftware page(nullptr);
    for (const QString &tool : {dpkgQuery, ovpkg}) {
        Device::installTool(tool, script);
        if (script.isEmpty())
            QVERIFY(QFile::setPermissions(tool, QFile::ReadOwner));
    }
    tick(page);
    QCOMPARE(mainRows(page), rows);
    QCOMPARE(addonRows(page), rows);

    for (const QString &tool : {dpkgQuery, ovpkg})
        Device::installTool(tool, printing("after\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("after"));
    QCOMPARE(addonRows(page), QStringLiteral("after"));
}

void tst_pageSoftware::drainsFloods()
{
    // Far more than a pipe holds, on both channels in turn.
    const QByteArray flood = "i=0\n"
                             "while [ $i -lt 200 ]; do\n"
                             "    printf '%05000d\\n' $i\n"
                             "    printf '%05000d\\n' $i >&2\n"
                             "    i=$((i + 1))\n"
                             "done\n";
    for (const QString &tool : {dpkgQuery, ovpkg, cat})
        Device::installTool(tool, flood);
    const pageSoftware page(nullptr);
    for (const QString &title : {mainTitle, addonTitle}) {
        const QStandardItemModel *model = modelOf(page, title);
        QCOMPARE(model->rowCount(), 200);
        const QString last = model->index(199, 0).data().toString();
        QCOMPARE(last, QString(4997, QLatin1Char('0')) + QStringLiteral("199"));
    }
    const QStringList arguments = Device::calls().at(1);
    QCOMPARE(arguments.size(), 1 + 1 + 200 + 1);
    QCOMPARE(arguments.constLast(), QString());
}

void tst_pageSoftware::leavesStandardInputOpen()
{
    // A tool that reads its input to the end waits for an end that does not come.
    const QByteArray reader =
        printing("before\\n") + "\n\"$SYSINFO_REAL_BIN/cat\" >/dev/null\n" + printing("after\\n");
    Device::installTool(dpkgQuery, reader);
    Device::installTool(ovpkg, reader);
    const pageSoftware page(nullptr, shortLimits());
    QCOMPARE(mainRows(page), QStringLiteral("before"));
    QCOMPARE(addonRows(page), QStringLiteral("before"));
}

#define REQUIRE_REAL_DPKG_QUERY()                                                                            \
    if (!QFile::exists(qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/dpkg-query")))            \
        QSKIP("this machine has no dpkg-query");                                                             \
    Device::installTool(dpkgQuery, "exec \"$SYSINFO_REAL_BIN/dpkg-query\" \"$@\"")

void tst_pageSoftware::listsTheRealPackages()
{
    REQUIRE_REAL_DPKG_QUERY();
    Device::remove(packageNames);
    const QStringList expected =
        dpkgQueryLines({QStringLiteral("-W"), QStringLiteral("-f=${binary:Package}|${Version}\\n")});
    QVERIFY(expected.size() > 50);
    const pageSoftware page(nullptr);
    QStringList shown;
    const QStandardItemModel *model = modelOf(page, mainTitle);
    for (int row = 0; row < model->rowCount(); ++row)
        shown.append(model->index(row, 0).data().toString() + QLatin1Char('|')
                     + model->index(row, 1).data().toString());
    QCOMPARE(shown, expected);
}

void tst_pageSoftware::listsTheRealPackagesThatAreNamed()
{
    REQUIRE_REAL_DPKG_QUERY();
    Device::write(packageNames, "coreutils\nthere-is-no-such-package\nbash\n");
    const QStringList expected =
        dpkgQueryLines({QStringLiteral("-W"), QStringLiteral("-f=${binary:Package}|${Version}\\n"),
                        QStringLiteral("coreutils"), QStringLiteral("bash")});
    QCOMPARE(expected.size(), 2);
    const pageSoftware page(nullptr);
    QCOMPARE(mainRows(page), expected.join(QStringLiteral(" / ")));
}

void tst_pageSoftware::showsArchitectures()
{
    REQUIRE_REAL_DPKG_QUERY();
    Device::write(packageNames, "libc6");
    const QStringList architecture = dpkgQueryLines(
        {QStringLiteral("-W"), QStringLiteral("-f=${Architecture}\\n"), QStringLiteral("libc6")});
    QVERIFY(!architecture.isEmpty());
    const pageSoftware page(nullptr);
    QVERIFY2(
        mainRows(page).startsWith(QStringLiteral("libc6:") + architecture.constFirst() + QLatin1Char('|')),
        qPrintable(mainRows(page)));
}

void tst_pageSoftware::waitsForEachToolByItsOwnLimit()
{
    const QByteArray slowly = "sleep 0.6; ";
    PackageToolLimits limits;
    limits.packageNames = 200;
    {
        Device::installTool(dpkgQuery, slowly + printing("a 1\\n"));
        Device::installTool(ovpkg, slowly + printing("b\\n"));
        const pageSoftware page(nullptr, limits);
        QCOMPARE(mainRows(page), QStringLiteral("a|1"));
        QCOMPARE(addonRows(page), QStringLiteral("b"));
    }
    Device::restore();
    limits = PackageToolLimits();
    limits.query = 200;
    Device::installTool(cat, slowly + printing("bash"));
    const pageSoftware page(nullptr, limits);
    QVERIFY2(Device::calls().contains({dpkgQuery, QStringLiteral("-W"), QStringLiteral("bash")}),
             qPrintable(recordedCalls()));
}

void tst_pageSoftware::listsWhatAHangingQueryPrinted()
{
    Device::installTool(dpkgQuery, leavePid + printing("a 1\\nb") + "\nexec sleep 60");
    QElapsedTimer time;
    time.start();
    pageSoftware page(nullptr, shortLimits());
    QVERIFY(time.elapsed() >= 700);
    QVERIFY(time.elapsed() < 3000);
    QCOMPARE(mainRows(page), QStringLiteral("a|1 / b"));
    QVERIFY(!addonRows(page).isEmpty());
    const QString pid = contentOf(pidFile());
    QVERIFY(pid.toInt() > 0);
    QVERIFY(!runs(pid));

    Device::installTool(dpkgQuery, printing("c 3\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("c|3"));
}

void tst_pageSoftware::listsWhatAHangingAddonToolPrinted()
{
    Device::installTool(ovpkg, leavePid + printing("The Orvo packages:\\na\\nb") + "\nexec sleep 60");
    pageSoftware page(nullptr, shortLimits());
    QCOMPARE(addonRows(page), QStringLiteral("a / b"));
    const QString pid = contentOf(pidFile());
    QVERIFY(pid.toInt() > 0);
    QVERIFY(!runs(pid));

    const QString rows = mainRows(page);
    tick(page);
    QCOMPARE(mainRows(page), rows);
    QCOMPARE(addonRows(page), QStringLiteral("a / b"));
}

void tst_pageSoftware::forgetsWhatAKilledToolPrintedLater()
{
    Device::installTool(dpkgQuery, "while :; do printf 'query 1\\n'; done");
    Device::installTool(ovpkg, printing("addon\\n"));
    pageSoftware page(nullptr, shortLimits());
    QVERIFY(viewOf(page, mainTitle)->model()->rowCount() > 0);
    QCOMPARE(addonRows(page), QStringLiteral("addon"));
}

void tst_pageSoftware::usesTheNamesThatAHangingReaderPrinted()
{
    // A reader that is asked to end says so.
    Device::installTool(cat,
                        "trap 'echo terminated >\"$SYSINFO_RIG/pid\"; exit' TERM\n" + printing("bash\\n")
                            + "\nwhile :; do sleep 0.05; done");
    const pageSoftware page(nullptr, shortLimits());
    QVERIFY2(Device::calls().contains({dpkgQuery, QStringLiteral("-W"), QStringLiteral("bash"), QString()}),
             qPrintable(recordedCalls()));
    QTRY_COMPARE(contentOf(pidFile()), QStringLiteral("terminated\n"));
}

void tst_pageSoftware::replacesAReaderThatDoesNotTerminate()
{
    Device::installTool(cat, leavePid + "trap '' TERM\n" + printing("bash") + "\nexec sleep 60");
    pageSoftware page(nullptr, shortLimits());
    const QString pid = contentOf(pidFile());
    QVERIFY(pid.toInt() > 0);

    Device::installTool(cat, printing("zsh"));
    Device::clearCalls();
    tick(page);
    QVERIFY(!runs(pid));
    QVERIFY2(Device::calls().contains({dpkgQuery, QStringLiteral("-W"), QStringLiteral("zsh")}),
             qPrintable(recordedCalls()));
}

void tst_pageSoftware::refreshesEveryThreeSeconds()
{
    Device::installTool(dpkgQuery, printing("a 1\\n"));
    Device::installTool(ovpkg, printing("x\\n"));
    const pageSoftware page(nullptr);
    Device::installTool(dpkgQuery, printing("b 2\\n"));
    Device::installTool(ovpkg, printing("y\\n"));
    QTest::qWait(2500);
    QCOMPARE(mainRows(page), QStringLiteral("a|1"));
    QTest::qWait(1000);
    QCOMPARE(mainRows(page), QStringLiteral("b|2"));
    QCOMPARE(addonRows(page), QStringLiteral("y"));
    Device::clearCalls();
    QTest::qWait(3000);
    QCOMPARE(recordedCalls().count(QStringLiteral("dpkg-query")), 1);
    QCOMPARE(recordedCalls().count(QStringLiteral("ovpkg [-l]")), 1);
}

void tst_pageSoftware::doesNotDoubleRows()
{
    pageSoftware page(nullptr);
    const QString rows = mainRows(page);
    const QString addons = addonRows(page);
    QVERIFY(!rows.isEmpty() && !addons.isEmpty());
    modelOf(page, mainTitle)->appendRow(new QStandardItem(QStringLiteral("a row that no tool printed")));
    for (int count = 0; count < 3; ++count) {
        tick(page);
        QCOMPARE(mainRows(page), rows);
        QCOMPARE(addonRows(page), addons);
    }
}

void tst_pageSoftware::losesSelectionAndPosition()
{
    const QByteArray manyRows = "seq -f 'a-very-long-name-of-a-package-number-%.0f 1' 500";
    Device::installTool(dpkgQuery, manyRows);
    Device::installTool(ovpkg, manyRows);
    pageSoftware page(nullptr);
    page.resize(300, 500);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    for (const QString &title : {mainTitle, addonTitle}) {
        QTreeView *view = viewOf(page, title);
        view->setCurrentIndex(view->model()->index(200, 0));
        view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->maximum());
        QVERIFY(view->verticalScrollBar()->value() > 0);
        QVERIFY(view->selectionModel()->hasSelection());
    }
    QVERIFY(viewOf(page, mainTitle)->horizontalScrollBar()->value() > 0);
    tick(page);
    QCoreApplication::processEvents();
    for (const QString &title : {mainTitle, addonTitle}) {
        const QTreeView *view = viewOf(page, title);
        QVERIFY(!view->selectionModel()->hasSelection());
        QVERIFY(!view->currentIndex().isValid());
        QCOMPARE(view->verticalScrollBar()->value(), 0);
        QCOMPARE(view->horizontalScrollBar()->value(), 0);
        QCOMPARE(view->indexAt(QPoint(5, 5)).row(), 0);
    }
}

void tst_pageSoftware::fitsTheColumnsToTheRows()
{
    const QString shortName(5, QLatin1Char('w'));
    const QString longName(60, QLatin1Char('w'));
    Device::installTool(dpkgQuery, printing(shortName.toLatin1() + " 1\\n"));
    pageSoftware page(nullptr);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    const QTreeView *view = viewOf(page, mainTitle);
    const int width = view->columnWidth(0);
    Device::installTool(dpkgQuery, printing(longName.toLatin1() + " 1\\n"));
    tick(page);
    QTRY_VERIFY(view->columnWidth(0) >= view->fontMetrics().horizontalAdvance(longName));
    Device::installTool(dpkgQuery, printing(shortName.toLatin1() + " 1\\n"));
    tick(page);
    QTRY_COMPARE(view->columnWidth(0), width);
}

void tst_pageSoftware::reportsRowsAtOnce()
{
    Device::installTool(dpkgQuery, "seq -f 'package-%.0f 1' 500");
    Device::installTool(ovpkg, "seq -f 'addon-%.0f' 500");
    pageSoftware page(nullptr);
    for (const QString &title : {mainTitle, addonTitle}) {
        const QStandardItemModel *model = modelOf(page, title);
        QSignalSpy removed(model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        tick(page);
        QCOMPARE(model->rowCount(), 500);
        QCOMPARE(removed.size(), 1);
        QCOMPARE(inserted.size(), 1);
        QCOMPARE(changed.size(), 0);
    }
}

void tst_pageSoftware::keepsModelsConsistent()
{
    pageSoftware page(nullptr);
    page.show();
    using Tester = QAbstractItemModelTester;
    Tester mainTester(viewOf(page, mainTitle)->model(), Tester::FailureReportingMode::QtTest);
    Tester addonTester(viewOf(page, addonTitle)->model(), Tester::FailureReportingMode::QtTest);
    for (const char *output : {"a 1\\n", "a 1\\nb 2\\nc 3\\n", "", "a 1 x y\\nb\\n", "z 9\\n", "z 9\\n"}) {
        Device::installTool(dpkgQuery, printing(output));
        Device::installTool(ovpkg, printing(output));
        tick(page);
        QCoreApplication::processEvents();
    }
    QCOMPARE(mainRows(page), QStringLiteral("z|9"));
    QCOMPARE(addonRows(page), QStringLiteral("z 9"));
}

void tst_pageSoftware::keepsHeadersBesideLongerRows()
{
    Device::installTool(dpkgQuery, printing("a 1 x\\n"));
    pageSoftware page(nullptr);
    const QStandardItemModel *model = modelOf(page, mainTitle);
    const QStringList names{QStringLiteral("Name"), QStringLiteral("Version")};
    QCOMPARE(headersOf(model).mid(0, 2), names);
    QCOMPARE(model->columnCount(), 3);
    Device::installTool(dpkgQuery, printing("b 2\\n"));
    tick(page);
    QCOMPARE(mainRows(page), QStringLiteral("b|2"));
    QCOMPARE(headersOf(model).mid(0, 2), names);
}

void tst_pageSoftware::marksItsTextsForTranslation()
{
    const MarkingTranslator translator;
    const pageSoftware page(nullptr);
    const QString context = QStringLiteral("[pageSoftware]");
    QVERIFY(groupOf(page, context + mainTitle) && groupOf(page, context + addonTitle));
    const QStandardItemModel *mainModel = modelOf(page, context + mainTitle);
    const QStandardItemModel *addonModel = modelOf(page, context + addonTitle);
    QCOMPARE(headersOf(mainModel),
             (QStringList{QStringLiteral("[pageSoftware]Name"), QStringLiteral("[pageSoftware]Version")}));
    QCOMPARE(headersOf(addonModel), QStringList{QStringLiteral("[pageSoftware]Orvo Package Name")});
    QVERIFY(!rowsOf(mainModel).isEmpty() && !rowsOf(mainModel).contains(context));
    QVERIFY(!rowsOf(addonModel).isEmpty() && !rowsOf(addonModel).contains(context));
}

void tst_pageSoftware::sharesTheNamesProcess()
{
    pageSoftware first(nullptr);
    pageSoftware second(nullptr);
    tick(second);
    tick(first);
    QCOMPARE(processesOf(&first).size(), 2);
    QCOMPARE(processesOf(&second).size(), 1);
}

void tst_pageSoftware::outlivesTheFirstPage()
{
    auto first = std::make_unique<pageSoftware>(nullptr);
    pageSoftware second(nullptr);
    const QString rows = mainRows(second);
    first.reset();
    Device::clearCalls();
    tick(second);
    QCOMPARE(mainRows(second), rows);
    QVERIFY(recordedCalls().startsWith(QLatin1String("/usr/bin/cat [/etc/SysInfo/pkg_list.conf]")));
    QCOMPARE(processesOf(&second).size(), 2);

    const pageSoftware third(nullptr);
    QCOMPARE(mainRows(third), rows);
    QCOMPARE(processesOf(&third).size(), 1);
}

void tst_pageSoftware::deletesViewsThenProcess()
{
    QStringList deleted;
    {
        // Keeps the process for the names, so that the page below has only its own.
        const pageSoftware first(nullptr);
        const pageSoftware page(nullptr);
        const auto note = [&deleted](const QObject *object, const QString &name) {
            connect(object, &QObject::destroyed, object, [&deleted, name] { deleted.append(name); });
        };
        note(viewOf(page, mainTitle), QStringLiteral("main list"));
        note(viewOf(page, addonTitle), QStringLiteral("add-on list"));
        note(processesOf(&page).constFirst(), QStringLiteral("process"));
        note(groupOf(page, mainTitle), QStringLiteral("group"));
    }
    QCOMPARE(deleted.join(QStringLiteral(", ")), QStringLiteral("main list, add-on list, process, group"));
}

void tst_pageSoftware::leavesNothingBehind()
{
    const qsizetype before = QApplication::topLevelWidgets().size();
    delete new pageSoftware(nullptr);
    QCOMPARE(QApplication::topLevelWidgets().size(), before);
    Device::clearCalls();
    QTest::qWait(3500);
    QCOMPARE(recordedCalls(), QString());
}

QTEST_MAIN(tst_pageSoftware)
#include "tst_pagesoftware.moc"
