#pragma once

#include "tests/desktop/desktop.h"

#include <QProcess>

/// The built program on a desktop, killed when this object goes.
class Program : public QProcess {
public:
    Program(const Desktop &desktop, const QString &runtimeDirectory)
    {
        QProcessEnvironment environment = desktop.environment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeDirectory);
        setProcessEnvironment(environment);
    }
    ~Program() override
    {
        kill();
        waitForFinished();
    }
    Q_DISABLE_COPY(Program)

    void launch(const QString &arguments = {})
    {
        start(QStringLiteral(SYSINFO_PROGRAM), arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        waitForStarted();
    }
};
