#include "pages/nettools/diagnosticarchive.h"

#include <QProcess>

bool writeDiagnosticArchive(const QString &path)
{
    QStringList arguments = QProcess::splitCommand(QStringLiteral("generateDiagnostic.sh ") + path);
    const QString program = arguments.takeFirst();

    QProcess script;
    // Nobody reads what the script prints, so it is not kept in memory either.
    script.setStandardOutputFile(QProcess::nullDevice());
    script.setStandardErrorFile(QProcess::nullDevice());
    script.start(program, arguments);
    if (script.waitForFinished(10000))
        return script.exitCode() == 0;
    script.kill();
    script.waitForFinished();
    return false;
}
