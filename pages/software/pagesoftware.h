#pragma once

#include "pages/software/packagelist.h"

#include <QWidget>

class PackageListModel;
class PackageListView;
class QProcess;

/// How long a refresh waits for a program to finish, in milliseconds.
struct PackageToolLimits {
    int packageNames = 3000;
    int query = 30000;
};

/// The "Software Information" tab: the main software, asked from the package database, and the add-ons,
/// asked from the device's own package tool. Both lists are built anew every three seconds.
class pageSoftware : public QWidget {
    Q_OBJECT

public:
    explicit pageSoftware(QWidget *parent, const PackageToolLimits &limits = {});
    ~pageSoftware() override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /// What a program printed, and the model that shows the texts where they stand in it. As a rule it prints
    /// the same at every refresh.
    struct Inventory {
        PackageListModel *model = nullptr;
        QByteArray output;
    };
    using RowsOfOutput = std::vector<PackageRow> (*)(const QByteArray &output);

    void createLayout();
    void refreshMainSoftware();
    /// Chooses the program that lists packages and, if there is one, has "cat" read the names to ask it for.
    void startReadingPackageNames();
    void showMainSoftware();
    void refreshAddons();
    void rebuild(PackageListView *view, Inventory &inventory, RowsOfOutput rowsOf, const QString &program,
                 const QStringList &arguments);

    PackageListView *mainView;
    PackageListView *addonView;
    int refreshTimerId;
    QProcess *packageProcess;
    QString queryProgram;
    PackageToolLimits toolLimits;
    Inventory mainSoftware;
    Inventory addons;
};
