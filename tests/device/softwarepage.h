#pragma once

#include "pages/software/pagesoftware.h"
#include "tests/device/device.h"

#include <QCoreApplication>
#include <QGroupBox>
#include <QStandardItemModel>
#include <QTimerEvent>
#include <QTreeView>

// What the tests of the "Software Information" tab share: where its tools are and how its lists are read.

namespace SoftwarePage {

inline const QString dpkgQuery = QStringLiteral("/usr/bin/dpkg-query");
inline const QString fallbackQuery = QStringLiteral("/usr/share/ovpkg/.ovpkg3");
inline const QString ovpkg = QStringLiteral("/usr/bin/ovpkg");
inline const QString cat = QStringLiteral("/usr/bin/cat");
inline const QString packageNames = QStringLiteral("/etc/SysInfo/pkg_list.conf");
inline const QString mainTitle = QStringLiteral("Main software installed");
inline const QString addonTitle = QStringLiteral("Addons installed");

inline QGroupBox *groupOf(const QWidget &page, const QString &title)
{
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    for (QGroupBox *group : groups) {
        if (group->title() == title)
            return group;
    }
    return nullptr;
}

inline QTreeView *viewOf(const QWidget &page, const QString &title)
{
    const QGroupBox *group = groupOf(page, title);
    return group ? group->findChild<QTreeView *>() : nullptr;
}

inline QStandardItemModel *modelOf(const QWidget &page, const QString &title)
{
    return qobject_cast<QStandardItemModel *>(viewOf(page, title)->model());
}

/// The rows of the model: items between "|", rows between " / ".
inline QString rowsOf(const QStandardItemModel *model)
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

inline QString mainRows(const QWidget &page)
{
    return rowsOf(modelOf(page, mainTitle));
}

inline QString addonRows(const QWidget &page)
{
    return rowsOf(modelOf(page, addonTitle));
}

inline QStringList headersOf(const QAbstractItemModel *model)
{
    QStringList texts;
    for (int section = 0; section < model->columnCount(); ++section)
        texts.append(model->headerData(section, Qt::Horizontal).toString());
    return texts;
}

inline void tick(QWidget &page)
{
    QTimerEvent event(1);
    QCoreApplication::sendEvent(&page, &event);
}

/// The recorded calls, one a line, arguments in brackets.
inline QString recordedCalls()
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
inline QByteArray printing(const QByteArray &format)
{
    return "printf '" + format + "'";
}

/// Short enough for a test to wait for, long enough for a stand-in to print on a busy machine.
inline PackageToolLimits shortLimits()
{
    return {2000, 2000};
}

} // namespace SoftwarePage
