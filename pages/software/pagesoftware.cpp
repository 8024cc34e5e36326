#include "pages/software/pagesoftware.h"

#include "app/waitingwork.h"
#include "pages/software/packagelistmodel.h"
#include "pages/software/packagelistview.h"

#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QPointer>
#include <QProcess>
#include <QVBoxLayout>

namespace {

QString addonTool()
{
    return QStringLiteral("/usr/bin/ovpkg");
}

/// The first of the programs that list packages and exists; null without any.
QString packageQueryProgram()
{
    for (const QString &program :
         {QStringLiteral("/usr/bin/dpkg-query"), QStringLiteral("/usr/share/ovpkg/.ovpkg3")}) {
        if (QFile::exists(program))
            return program;
    }
    return {};
}

void addGroup(QLayout *layout, const QString &title, QTreeView *view)
{
    auto *group = new QGroupBox(title, layout->parentWidget());
    view->setAccessibleName(title);
    auto *groupLayout = new QHBoxLayout(group);
    groupLayout->addWidget(view);
    layout->addWidget(group);
}

/// A process for programs whose standard error nobody reads.
QProcess *createToolProcess(QObject *page)
{
    auto *process = new QProcess(page);
    process->setStandardErrorFile(QProcess::nullDevice());
    return process;
}

/// The process that reads the list of package names, one for all pages. It belongs to the page that first
/// needs it, and to a later one when that page is gone.
QProcess *packageNamesProcess(QObject *page)
{
    static QPointer<QProcess> process;
    if (!process)
        process = createToolProcess(page);
    return process;
}

/// Ends a program that outlasted its limit; the process can't start another one before. A killed program
/// is gone at once unless the kernel holds it, and then a longer wait would not help.
void stop(QProcess *process)
{
    if (process->state() == QProcess::NotRunning)
        return;
    process->kill();
    process->waitForFinished(1000);
}

QByteArray readPackageNames(QProcess *cat, int limit)
{
    waitForFinished(*cat, limit);
    const QByteArray names = cat->readAllStandardOutput();
    cat->terminate();
    return names;
}

} // namespace

pageSoftware::pageSoftware(QWidget *parent, const PackageToolLimits &limits)
    : QWidget(parent)
    , toolLimits(limits)
{
    startReadingPackageNames();
    createLayout();
    showMainSoftware();
    refreshAddons();
    refreshTimerId = startTimer(3000);
}

pageSoftware::~pageSoftware()
{
    killTimer(refreshTimerId);
    delete mainView;
    delete addonView;
    delete packageProcess;
}

void pageSoftware::timerEvent(QTimerEvent * /*event*/)
{
    refreshMainSoftware();
    refreshAddons();
}

void pageSoftware::createLayout()
{
    packageProcess = createToolProcess(this);
    mainView = new PackageListView;
    addonView = new PackageListView;
    mainView->setObjectName(QStringLiteral("mainSoftware"));
    addonView->setObjectName(QStringLiteral("addons"));
    mainView->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    mainSoftware.model = new PackageListModel({tr("Name"), tr("Version")}, this);
    mainView->setModel(mainSoftware.model);
    addons.model = new PackageListModel({tr("Orvo Package Name")}, this);
    addonView->setModel(addons.model);

    auto *layout = new QVBoxLayout(this);
    addGroup(layout, tr("Main software installed"), mainView);
    // Without the tool the view stays outside, where nothing shows it.
    if (QFile::exists(addonTool()))
        addGroup(layout, tr("Addons installed"), addonView);
}

void pageSoftware::refreshMainSoftware()
{
    startReadingPackageNames();
    showMainSoftware();
}

void pageSoftware::startReadingPackageNames()
{
    QProcess *cat = packageNamesProcess(this);
    queryProgram = packageQueryProgram();
    if (queryProgram.isNull())
        return;
    stop(cat);
    cat->start(QStringLiteral("cat"), {QStringLiteral("/etc/SysInfo/pkg_list.conf")});
}

void pageSoftware::showMainSoftware()
{
    if (queryProgram.isNull())
        return;
    const QByteArray names = readPackageNames(packageNamesProcess(this), toolLimits.packageNames);
    rebuild(mainView, mainSoftware, packageRows, queryProgram, packageQueryArguments(names));
}

void pageSoftware::refreshAddons()
{
    if (QFile::exists(addonTool()))
        rebuild(addonView, addons, addonRows, addonTool(), {QStringLiteral("-l")});
}

void pageSoftware::rebuild(PackageListView *view, Inventory &inventory, RowsOfOutput rowsOf,
                           const QString &program, const QStringList &arguments)
{
    inventory.model->removeAllRows();
    packageProcess->start(program, arguments);
    waitForFinished(*packageProcess, toolLimits.query);
    const QByteArray output = packageProcess->readAllStandardOutput();
    stop(packageProcess);

    if (output != inventory.output || !inventory.model->putRowsBack()) {
        inventory.model->appendRows(PackageListModel::createItems(rowsOf(output)));
        inventory.output = output;
        view->forgetColumnWidths();
    }
    // The view is arranged only later and would keep the position of the old rows.
    view->scrollToStart();
}
