#pragma once

#include <QWidget>

class QGroupBox;
class QLabel;

/// The "General" tab: what the device is. Everything is gathered while the page is built; afterwards only
/// the free and used memory are read again, every three seconds.
class pageSystem : public QWidget {
    Q_OBJECT

public:
    explicit pageSystem(QWidget *parent);
    ~pageSystem() override;

    /// Installed memory in whole decimal megabytes, from /proc/meminfo; "Unknown", translated, when it says
    /// none.
    static QString readTotalMemory();

    /// Free memory in whole 1024-based megabytes, buffers and cache included, from /proc/meminfo;
    /// "FileError", translated, when the file cannot be opened.
    static QString readFreeMemory();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void createLayout();
    void createGroups();
    QGroupBox *createSystemGroup();
    QGroupBox *createFlashAndMemoryGroup();
    QGroupBox *createBiosAndOsGroup();

    void gatherSystemInfo();
    void gatherProcessor();
    void gatherFlash();
    void gatherBiosAndOs();
    void refreshMemory();

    QLabel *processorValue;
    QLabel *cpuSpeedValue;
    QLabel *cpuCacheValue;
    QLabel *flashUsedValue;
    QLabel *memoryUsedValue;
    QLabel *flashFreeValue;
    QLabel *memoryFreeValue;
    QLabel *flashInstalledValue;
    QLabel *memoryInstalledValue;
    QLabel *serialNumberValue;
    QLabel *biosVersionValue;
    QLabel *biosReleaseDateValue;
    QLabel *osBuildIdValue;
    QLabel *kernelVersionValue;
    QLabel *platformValue;
    int refreshTimerId;
};
