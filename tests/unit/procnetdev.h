#pragma once

#include <QFile>
#include <QTemporaryDir>

/// While it lives, commands that read /proc/net/dev with awk get the text of its choice instead: an awk in
/// front of the search path hands the program and the text to the system's own one.
class ProcNetDev {
public:
    ProcNetDev()
        : m_searchPath(qgetenv("PATH"))
    {
        write("awk",
              "#!/bin/sh\n"
              "[ \"$#\" = 2 ] && [ \"$2\" = /proc/net/dev ] || exit 1\n"
              "PATH=${PATH#*:} exec awk \"$1\" \"${0%/*}/dev\"\n");
        QFile::setPermissions(m_directory.filePath(QStringLiteral("awk")),
                              QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
        qputenv("PATH", QFile::encodeName(m_directory.path()) + ':' + m_searchPath);
    }

    ~ProcNetDev() { qputenv("PATH", m_searchPath); }

    ProcNetDev(const ProcNetDev &) = delete;
    ProcNetDev &operator=(const ProcNetDev &) = delete;

    /// The lines that follow the two header lines.
    void setInterfaces(const QByteArray &lines)
    {
        write("dev",
              "Inter-|   Receive                                                |  Transmit\n"
              " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop "
              "fifo colls carrier compressed\n"
                  + lines);
    }

private:
    void write(const char *name, const QByteArray &content)
    {
        QFile file(m_directory.filePath(QLatin1String(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", name);
    }

    QTemporaryDir m_directory;
    QByteArray m_searchPath;
};
