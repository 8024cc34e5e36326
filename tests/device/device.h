#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

/// The simulated thin client that on-device runs this test on.
namespace Device {

/// The name of the device's folder: "arm" or "x86".
QString name();

// Each change stands until restore().

void write(const QString &path, const QByteArray &content);
void remove(const QString &path);
void link(const QString &path, const QString &target);

/// Lets every open of the file fail, root's as well. The file must exist.
void makeUnreadable(const QString &path);

/// Puts a program there that records its calls and then goes on as the given shell script.
void installTool(const QString &path, const QByteArray &script);

/// Undoes all changes, the last one first.
void restore();

/// The calls of stand-in programs since clearCalls(), each as the program's path and its arguments.
QList<QStringList> calls();

/// The command lines among calls() that went to a shell.
QStringList shellCommands();

void clearCalls();

} // namespace Device
