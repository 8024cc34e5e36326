#include "tests/device/device.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <functional>
#include <vector>

#include <cstring>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

std::vector<std::function<void()>> &undoSteps()
{
    static std::vector<std::function<void()>> steps;
    return steps;
}

QString rigPath(const char *name)
{
    return qEnvironmentVariable("SYSINFO_RIG") + QLatin1Char('/') + QLatin1String(name);
}

void check(bool success, const char *what, const QString &path)
{
    if (!success)
        qFatal("%s %s failed: %s", what, qPrintable(path), std::strerror(errno));
}

void put(const QString &path, const QByteArray &content, QFile::Permissions permissions)
{
    QFile file(path);
    // A file of the machine itself can't be opened where root is an ordinary user outside, only replaced.
    bool opened = file.open(QIODevice::WriteOnly);
    if (!opened)
        opened = QFile::remove(path) && file.open(QIODevice::WriteOnly);
    check(opened && file.write(content) == content.size() && file.flush(), "writing", path);
    file.setPermissions(permissions);
}

/// Remembers what stands at the path: a link, a file or nothing.
void keepForUndo(const QString &path)
{
    const QFileInfo info(path);
    if (info.isSymLink()) {
        char target[4096] = {};
        check(readlink(QFile::encodeName(path).constData(), target, sizeof(target) - 1) > 0, "reading", path);
        undoSteps().push_back([path, target = QByteArray(target)] {
            QFile::remove(path);
            check(symlink(target.constData(), QFile::encodeName(path).constData()) == 0, "restoring", path);
        });
    } else if (info.exists()) {
        QFile file(path);
        check(file.open(QIODevice::ReadOnly), "reading", path);
        undoSteps().push_back([path, content = file.readAll(), permissions = file.permissions()] {
            if (QFileInfo(path).isSymLink())
                QFile::remove(path);
            put(path, content, permissions);
        });
    } else {
        undoSteps().push_back([path] { QFile::remove(path); });
    }
}

/// A file that cannot be opened: a socket.
QString socketFile()
{
    const QString path = rigPath("socket");
    if (QFileInfo::exists(path))
        return path;
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    check(bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0, "binding",
          path);
    close(listener);
    return path;
}

} // namespace

namespace Device {

QString name()
{
    return qEnvironmentVariable("SYSINFO_DEVICE");
}

void write(const QString &path, const QByteArray &content)
{
    keepForUndo(path);
    QDir().mkpath(QFileInfo(path).path());
    if (QFileInfo(path).isSymLink())
        QFile::remove(path);
    put(path, content, QFile::permissions(path) | QFile::ReadOwner | QFile::WriteOwner);
}

void remove(const QString &path)
{
    keepForUndo(path);
    check(QFile::remove(path), "removing", path);
}

void link(const QString &path, const QString &target)
{
    keepForUndo(path);
    QFile::remove(path);
    QDir().mkpath(QFileInfo(path).path());
    const QByteArray to = QFile::encodeName(target);
    check(symlink(to.constData(), QFile::encodeName(path).constData()) == 0, "linking", path);
}

void makeUnreadable(const QString &path)
{
    const QByteArray source = QFile::encodeName(socketFile());
    const QByteArray target = QFile::encodeName(path);
    check(mount(source.constData(), target.constData(), nullptr, MS_BIND, nullptr) == 0, "covering", path);
    undoSteps().push_back(
        [path, target] { check(umount2(target.constData(), MNT_DETACH) == 0, "uncovering", path); });
}

void installTool(const QString &path, const QByteArray &script)
{
    keepForUndo(path);
    QFile::remove(path);
    QDir().mkpath(QFileInfo(path).path());
    put(path, "#!/usr/bin/dash\n. \"$SYSINFO_RIG/record\"\n" + script + '\n',
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
}

void restore()
{
    std::vector<std::function<void()>> &steps = undoSteps();
    while (!steps.empty()) {
        steps.back()();
        steps.pop_back();
    }
}

QList<QStringList> calls()
{
    QFile record(rigPath("calls"));
    check(record.open(QIODevice::ReadOnly), "reading", record.fileName());
    QList<QStringList> result;
    const QList<QByteArray> entries = record.readAll().split('\x1e');
    for (const QByteArray &entry : entries) {
        QStringList words = QString::fromUtf8(entry).split(QLatin1Char('\x1f'));
        words.removeLast();
        if (!words.isEmpty())
            result.append(words);
    }
    return result;
}

QStringList shellCommands()
{
    QStringList commands;
    const QList<QStringList> all = calls();
    for (const QStringList &call : all) {
        if (call.constFirst().endsWith(QLatin1String("/sh")) && call.value(1) == QLatin1String("-c"))
            commands.append(call.constLast());
    }
    return commands;
}

void clearCalls()
{
    check(QFile::resize(rigPath("calls"), 0), "emptying", rigPath("calls"));
}

} // namespace Device
