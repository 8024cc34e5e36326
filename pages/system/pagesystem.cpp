#include "pages/system/pagesystem.h"

#include "app/factlabel.h"
#include "app/unsqueezeditem.h"
#include "app/valuebox.h"
#include "app/waitingwork.h"
#include "pages/system/biosandos.h"
#include "pages/system/flash.h"
#include "pages/system/memory.h"
#include "pages/system/system.h"

#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

QLabel *createCaption(const QString &text, QGroupBox *group)
{
    auto *caption = new QLabel(group);
    caption->setText(text);
    return caption;
}

/// A caption of the width that keeps the values of the groups below each other.
QLabel *createCaptionOf(QLabel *value, const QString &text, QGroupBox *group)
{
    QLabel *caption = createCaption(text, group);
    caption->setMinimumWidth(150);
    caption->setBuddy(value);
    return caption;
}

QLabel *createBoxedValue(QWidget *page)
{
    QLabel *value = createFactLabel(page);
    setupValueLabel(value, Qt::AlignRight | Qt::AlignVCenter);
    return value;
}

/// Above the width that was set, a caption of a large font keeps its own.
void addCaption(QGridLayout *grid, QLabel *caption, int row, int column)
{
    grid->addItem(new UnsqueezedItem(caption), row, column);
}

void addGroup(QVBoxLayout *layout, QGroupBox *group, int stretch)
{
    layout->addItem(new UnsqueezedItem(group));
    layout->setStretchFactor(group, stretch);
}

/// What /proc/cpuinfo says, with the given text for what it does not say; sizes are empty then.
CpuInfo currentCpuInfo(const QString &unknown)
{
    const CpuInfo info{unknown, unknown, unknown, unknown, {}, {}};
    QFile cpuinfo(QStringLiteral("/proc/cpuinfo"));
    return cpuinfo.open(QIODevice::ReadOnly) ? readCpuInfo(cpuinfo, info) : info;
}

/// What can be read of /proc/meminfo, good until the next call; nothing when it can't be opened. Not read
/// through a QFile, whose own work at every tick would take half as long as the kernel's.
std::optional<QByteArray> currentMeminfo()
{
    static std::vector<char> buffer(8192);
    const int file = open("/proc/meminfo", O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return {};
    size_t length = 0;
    ssize_t count = 0;
    do {
        if (length == buffer.size())
            buffer.resize(2 * buffer.size());
        count = read(file, buffer.data() + length, buffer.size() - length);
        length += static_cast<size_t>(std::max<ssize_t>(count, 0));
        // The read that does not fill the buffer is the last.
    } while (length == buffer.size() || (count < 0 && errno == EINTR));
    close(file);
    return QByteArray::fromRawData(buffer.data(), static_cast<int>(length));
}

/// The suffix is the same in every language, so it is no part of the translated texts.
QString withMegabytes(const QString &figure)
{
    return figure + QStringLiteral(" M");
}

} // namespace

pageSystem::pageSystem(QWidget *parent)
    : QWidget(parent)
{
    createLayout();
    gatherSystemInfo();
    refreshMemory();
    refreshTimerId = startTimer(3000);
}

pageSystem::~pageSystem()
{
    killTimer(refreshTimerId);
}

void pageSystem::timerEvent(QTimerEvent * /*event*/)
{
    refreshMemory();
}

void pageSystem::createLayout()
{
    // The values are there to be filled before what stands around them, which can wait.
    for (QLabel **value :
         {&platformValue, &cpuSpeedValue, &cpuCacheValue, &processorValue, &serialNumberValue,
          &biosVersionValue, &biosReleaseDateValue, &osBuildIdValue, &kernelVersionValue})
        *value = createFactLabel(this);
    for (QLabel **value : {&flashUsedValue, &memoryUsedValue, &flashFreeValue, &memoryFreeValue,
                           &flashInstalledValue, &memoryInstalledValue})
        *value = createBoxedValue(this);

    WaitingWork::addOrDo([this] { createGroups(); });
}

void pageSystem::createGroups()
{
    auto *layout = new QVBoxLayout(this);
    QGroupBox *system = createSystemGroup();
    QGroupBox *flashAndMemory = createFlashAndMemoryGroup();
    addGroup(layout, createBiosAndOsGroup(), 3);
    addGroup(layout, system, 2);
    addGroup(layout, flashAndMemory, 1);
}

QGroupBox *pageSystem::createSystemGroup()
{
    auto *group = new QGroupBox(tr("System"), this);
    group->setMinimumHeight(65);
    auto *grid = new QGridLayout(group);
    grid->setAlignment(Qt::AlignLeft);
    addCaption(grid, createCaptionOf(platformValue, tr("Platform:"), group), 0, 0);
    grid->addWidget(platformValue, 0, 1);
    addCaption(grid, createCaptionOf(cpuSpeedValue, tr("CPU Speed:"), group), 1, 0);
    grid->addWidget(cpuSpeedValue, 1, 1);
    addCaption(grid, createCaptionOf(cpuCacheValue, tr("CPU Cache:"), group), 1, 2);
    grid->addWidget(cpuCacheValue, 1, 3);
    addCaption(grid, createCaptionOf(processorValue, tr("Processor:"), group), 2, 0);
    grid->addWidget(processorValue, 2, 1, 1, 2);
    return group;
}

QGroupBox *pageSystem::createFlashAndMemoryGroup()
{
    auto *group = new QGroupBox(tr("Flash and Memory"), this);
    group->setMinimumHeight(100);
    const QStringList headers{tr("Free"), tr("Used"), tr("Installed")};
    auto *grid = new QGridLayout(group);
    for (int i = 0; i < headers.size(); ++i) {
        QLabel *header = createCaption(headers.at(i), group);
        header->setAlignment(Qt::AlignCenter);
        grid->addWidget(header, 0, i + 1);
    }
    const auto addRow = [=](int row, const QString &caption, const QList<QLabel *> &values) {
        grid->addWidget(createCaption(caption, group), row, 0);
        for (int i = 0; i < values.size(); ++i) {
            // An item does not take the widget over, as addWidget() does.
            values.at(i)->setParent(group);
            values.at(i)->setAccessibleName(caption + QLatin1Char(' ') + headers.at(i));
            grid->addItem(new UnsqueezedItem(values.at(i)), row, i + 1);
        }
    };
    addRow(1, tr("Flash:"), {flashFreeValue, flashUsedValue, flashInstalledValue});
    addRow(2, tr("Memory:"), {memoryFreeValue, memoryUsedValue, memoryInstalledValue});
    return group;
}

QGroupBox *pageSystem::createBiosAndOsGroup()
{
    auto *group = new QGroupBox(tr("BIOS and OS"), this);
    group->setMinimumHeight(100);
    auto *grid = new QGridLayout(group);
    grid->setAlignment(Qt::AlignLeft);
    const auto addRow = [=](int row, const QString &caption, QLabel *value) {
        addCaption(grid, createCaptionOf(value, caption, group), row, 0);
        grid->addWidget(value, row, 1);
    };
    addRow(0, tr("Serial Number:"), serialNumberValue);
    addRow(1, tr("BIOS Version:"), biosVersionValue);
    addRow(2, tr("BIOS Release Date:"), biosReleaseDateValue);
    addRow(3, tr("OS Build ID:"), osBuildIdValue);
    addRow(4, tr("OS Kernel Version:"), kernelVersionValue);
    return group;
}

void pageSystem::gatherSystemInfo()
{
    gatherProcessor();
    {
        // The font is loaded while the DMI tables are read, which takes longest.
        const WaitingWork::Pause pause;
        memoryInstalledValue->setText(withMegabytes(readTotalMemory().trimmed()));
        gatherFlash();
    }
    gatherBiosAndOs();
}

void pageSystem::gatherProcessor()
{
    const QString unknown = tr("Unknown");
    // Before any command runs: it says how fast the processor is at the moment.
    CpuInfo info = currentCpuInfo(unknown);
    const QString platform = readPlatform();
    // The one fallback that is the same in every language.
    platformValue->setText(platform.isEmpty() ? QStringLiteral("Unknown") : platform);
    // An x86 kernel names the model; an ARM kernel only the processor.
    processorValue->setText(info.modelName != unknown ? info.modelName : info.processor);

    if (info.mhz == unknown) {
        const QString maxSpeed = readProcessorMaxSpeed();
        if (!maxSpeed.isEmpty())
            info.mhz = maxSpeed;
    }
    cpuSpeedValue->setText(info.mhz + QStringLiteral(" MHz"));

    if (info.cacheSize == unknown && !info.instructionCacheSize.isEmpty() && !info.dataCacheSize.isEmpty())
        info.cacheSize = info.instructionCacheSize + QLatin1Char('/') + info.dataCacheSize;
    cpuCacheValue->setText(info.cacheSize);
}

void pageSystem::gatherFlash()
{
    const FlashFigures flash = readFlash();
    const auto shown = [](const QString &figure) {
        return figure.isNull() ? tr("Unknown") : withMegabytes(figure);
    };
    flashUsedValue->setText(shown(flash.used));
    flashFreeValue->setText(shown(flash.free));
    flashInstalledValue->setText(shown(flash.installed));
}

void pageSystem::gatherBiosAndOs()
{
    const auto orUnknown = [](const QString &fact) { return fact.isEmpty() ? tr("Unknown") : fact; };
    biosVersionValue->setText(orUnknown(readBiosVersion()));
    biosReleaseDateValue->setText(orUnknown(readBiosReleaseDate()));
    serialNumberValue->setText(orUnknown(readSerialNumber()));

    const QString kernelVersion = readKernelVersion();
    QString build;
    QFile imageId(QStringLiteral("/etc/imageid"));
    if (imageId.open(QIODevice::ReadOnly))
        build = buildId(imageId);
    osBuildIdValue->setText(build.isNull() ? tr("Unknown") : build);
    kernelVersionValue->setText(kernelVersion.isNull() ? tr("Unknown") : kernelVersion.trimmed());
}

QString pageSystem::readTotalMemory()
{
    const std::optional<QByteArray> meminfo = currentMeminfo();
    const QString total = meminfo ? totalMemory(*meminfo) : QString();
    return total.isNull() ? QObject::tr("Unknown") : total;
}

QString pageSystem::readFreeMemory()
{
    const std::optional<QByteArray> meminfo = currentMeminfo();
    return meminfo ? freeMemory(*meminfo) : QObject::tr("FileError");
}

void pageSystem::refreshMemory()
{
    memoryFreeValue->setText(withMegabytes(readFreeMemory()));
    const qint64 used = qint64{readTotalMemory().toInt()} - readFreeMemory().toInt();
    memoryUsedValue->setText(withMegabytes(QString::number(used)));
}
