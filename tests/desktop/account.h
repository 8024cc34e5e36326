#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <unistd.h>

/// An ordinary user of the simulated device.
namespace Account {

constexpr int id = 4711;

/// A copy of the program at a place that every user can reach.
inline QString programForEverybody()
{
    const QString copy = qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/sysinfo");
    const auto everybodyRuns =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QFile::remove(copy);
    return QFile::copy(QStringLiteral(SYSINFO_PROGRAM), copy) && QFile::setPermissions(copy, everybodyRuns)
        ? copy
        : QString();
}

/// What setpriv is called with to run the program as the user.
inline QStringList arguments(int user, const QString &program)
{
    const QString number = QString::number(user);
    // Who is root only on the device can't change the groups.
    const QString groups = user == 0 ? QStringLiteral("--keep-groups") : QStringLiteral("--clear-groups");
    return {QStringLiteral("--reuid"), number, QStringLiteral("--regid"), number, groups, program};
}

/// Gives the directory to the user; only root can.
inline bool giveTo(int user, const QString &directory)
{
    return chown(QFile::encodeName(directory).constData(), static_cast<uid_t>(user), static_cast<gid_t>(user))
        == 0;
}

} // namespace Account
