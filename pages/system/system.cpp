#include "pages/system/system.h"

#include "app/asciitext.h"
#include "app/commandrunner.h"

#include <QIODevice>
#include <QStringList>

#include <utility>

CpuInfo readCpuInfo(QIODevice &cpuinfo, CpuInfo info)
{
    const std::pair<QLatin1String, QString *> keys[] = {
        {QLatin1String("model name"), &info.modelName},
        {QLatin1String("Processor"), &info.processor},
        {QLatin1String("cpu MHz"), &info.mhz},
        {QLatin1String("cache size"), &info.cacheSize},
        {QLatin1String("I size"), &info.instructionCacheSize},
        {QLatin1String("D size"), &info.dataCacheSize},
    };
    while (const std::optional<QString> line = readLinePiece(cpuinfo)) {
        const QStringList parts = line->split(QLatin1Char(':'));
        for (const auto &[key, value] : keys) {
            if (parts.size() > 1 && line->contains(key, Qt::CaseInsensitive))
                *value = parts.at(1).trimmed();
        }
    }
    return info;
}

QString readPlatform()
{
    return runCommand(QStringLiteral("/usr/bin/vexa-hwsw-id --hw"));
}

QString readProcessorMaxSpeed()
{
    return runCommand(
        QStringLiteral("sudo /usr/sbin/dmidecode -t processor |grep -m 1 'Max Speed'|cut -d : -f 2"));
}
