#include "tests/device/systempage.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace SystemPage;

namespace {

const QStringList allUnknown{QStringLiteral("Unknown"), QStringLiteral("Unknown"), QStringLiteral("Unknown")};

void setDf(const char *used)
{
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        QByteArray("echo '/dev/sda1 3.7G ") + used + " 2.1G 42% /'\n");
}

void onlyLink(const QString &folder, const QString &name, const QString &target)
{
    for (const char *other : {"/dev/disk/by-label", "/dev/disk/by-uuid"}) {
        QDir directory(QString::fromLatin1(other));
        const QStringList links = directory.entryList(QDir::Files | QDir::System | QDir::Hidden);
        for (const QString &link : links)
            Device::remove(directory.filePath(link));
    }
    if (!name.isEmpty())
        Device::link(folder + QLatin1Char('/') + name, target);
}

} // namespace

class tst_FlashAndMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }
    void memoryUnreadable();
    void memoryWithoutTotal();
    void memoryOfOneTerabyte();
    void memoryFromTheKernelsFigures();
    void memoryFarDownInTheFile();
    void flashUnknown_data();
    void flashUnknown();
    void flashUnknownWithoutPartitions();
    void flashByTheFirstUuidLink();
    void flashByTheRootLabelBeforeTheUuids();
    void flashUsedOfThreePartitions();
    void flashUsed_data();
    void flashUsed();
    void flashUsedOnOtherDisksCounts();
    void flashUsedOfTheFirstMatchingDfLine();
    void flashUsedWithoutDf();
    void flashInSinglePrecision();
    void flashSummedInSinglePrecision();
    void flashOfOneTerabyte();
    void flashPartitionNameNeverReachesTheShell_data();
    void flashPartitionNameNeverReachesTheShell();
};

void tst_FlashAndMemory::memoryUnreadable()
{
    Device::makeUnreadable(meminfo);
    const pageSystem page(nullptr);
    QCOMPARE(
        boxedValues(page, "Memory:"),
        QStringList({QStringLiteral("FileError M"), QStringLiteral("0 M"), QStringLiteral("Unknown M")}));
}

void tst_FlashAndMemory::memoryWithoutTotal()
{
    Device::write(meminfo, "MemFree: 102400 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("100 M"), QStringLiteral("-100 M"), QStringLiteral("Unknown M")}));
}

void tst_FlashAndMemory::memoryOfOneTerabyte()
{
    // "1e+06" is no integer.
    Device::write(meminfo, "MemTotal: 1000204900 kB\nMemFree: 2048 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("2 M"), QStringLiteral("-2 M"), QStringLiteral("1e+06 M")}));
}

void tst_FlashAndMemory::memoryFromTheKernelsFigures()
{
    Device::write(meminfo,
                  "MemTotal: 1018888 kB\nMemFree: 500000 kB\nBuffers: 20000 kB\nCached: 300000 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("800 M"), QStringLiteral("218 M"), QStringLiteral("1018 M")}));
}

void tst_FlashAndMemory::memoryFarDownInTheFile()
{
    // More than any buffer takes at first.
    const QByteArray others = QByteArray("HugePages_Free: 7 kB\n").repeated(5000);
    Device::write(meminfo, others + "MemTotal: 1018888 kB\nMemFree: 500000 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("488 M"), QStringLiteral("530 M"), QStringLiteral("1018 M")}));
}

void tst_FlashAndMemory::flashUnknown_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("target");
    QTest::newRow("no link") << QString() << QString();
    QTest::newRow("disk not listed") << "ROOT"
                                     << "../../sdz1";
    QTest::newRow("sda12, for which sda1 is looked up") << "ROOT"
                                                        << "../../sda12";
    QTest::newRow("mmcblk0p1") << "ROOT"
                               << "../../mmcblk0p1";
    QTest::newRow("another label only") << "DATA"
                                        << "../../sda1";
}

void tst_FlashAndMemory::flashUnknown()
{
    QFETCH(QString, link);
    QFETCH(QString, target);
    onlyLink(QStringLiteral("/dev/disk/by-label"), link, target);
    Device::write(partitions, "8 0 7822336 sda\n179 0 7822336 mmcblk0\n179 1 7000000 mmcblk0p1\n");
    QCOMPARE(boxedValues(pageSystem(nullptr), "Flash:"), allUnknown);
}

void tst_FlashAndMemory::flashUnknownWithoutPartitions()
{
    Device::makeUnreadable(partitions);
    QCOMPARE(boxedValues(pageSystem(nullptr), "Flash:"), allUnknown);
}

void tst_FlashAndMemory::flashByTheFirstUuidLink()
{
    onlyLink(QStringLiteral("/dev/disk/by-uuid"), QStringLiteral("aaaa"), QStringLiteral("../../sdb1"));
    Device::link(QStringLiteral("/dev/disk/by-uuid/bbbb"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 7822336 sda\n8 16 1000000 sdb\n");
    QCOMPARE(shownByNewPage("Flash:", 3), QStringLiteral("1024 M"));
}

void tst_FlashAndMemory::flashByTheRootLabelBeforeTheUuids()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-uuid/aaaa"), QStringLiteral("../../sdb1"));
    Device::write(partitions, "8 0 7822336 sda\n8 16 1000000 sdb\n");
    setDf("300M");
    QCOMPARE(boxedValues(pageSystem(nullptr), "Flash:"),
             QStringList({QStringLiteral("7710 M"), QStringLiteral("300 M"), QStringLiteral("8010 M")}));
}

void tst_FlashAndMemory::flashUsedOfThreePartitions()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("A"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/B"), QStringLiteral("../../sda2"));
    Device::link(QStringLiteral("/dev/disk/by-label/ROOT"), QStringLiteral("../../sda3"));
    Device::write(partitions, "8 0 7822336 sda\n");
    Device::installTool(
        QStringLiteral("/usr/bin/df"),
        "printf '/dev/sda1 9G 12K 9G 1%% /\\n/dev/sda2 9G 1.5G 9G 1%% /b\\n/dev/sda3 9G 300M 9G 1%% /c\\n'");
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "Flash:", 2), QStringLiteral("1836.01 M"));
    QCOMPARE(shownValue(&page, "Flash:", 1), QStringLiteral("6173.99 M"));
}

void tst_FlashAndMemory::flashUsed_data()
{
    QTest::addColumn<QByteArray>("df");
    QTest::addColumn<QString>("used");
    QTest::addColumn<QString>("free");
    QTest::newRow("K") << QByteArray("512K") << "0.5 M"
                       << "8009.5 M";
    QTest::newRow("M") << QByteArray("300M") << "300 M"
                       << "7710 M";
    QTest::newRow("G") << QByteArray("1.5G") << "1536 M"
                       << "6474 M";
    QTest::newRow("T") << QByteArray("1.5T") << "1.5 M"
                       << "8008.5 M";
    QTest::newRow("bare 0") << QByteArray("0") << "0 M"
                            << "8010 M";
    QTest::newRow("more than the disk holds") << QByteArray("9G") << "9216 M"
                                              << "-1206 M";
}

void tst_FlashAndMemory::flashUsed()
{
    QFETCH(QByteArray, df);
    QFETCH(QString, used);
    QFETCH(QString, free);
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 7822336 sda\n");
    setDf(df.constData());
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Flash:"), QStringList({free, used, QStringLiteral("8010 M")}));
}

void tst_FlashAndMemory::flashUsedOnOtherDisksCounts()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/STICK"), QStringLiteral("../../sdb1"));
    Device::write(partitions, "8 0 7822336 sda\n");
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        "printf '/dev/sda1 9G 300M 9G 1%% /\\n/dev/sdb1 9G 200M 9G 1%% /media\\n'");
    QCOMPARE(shownByNewPage("Flash:", 2), QStringLiteral("500 M"));
}

void tst_FlashAndMemory::flashUsedOfTheFirstMatchingDfLine()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 7822336 sda\n");
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        "printf '/dev/sda11 9G 200M 9G 1%% /other\\n/dev/sda1 9G 300M 9G 1%% /\\n'");
    QCOMPARE(shownByNewPage("Flash:", 2), QStringLiteral("200 M"));
}

void tst_FlashAndMemory::flashUsedWithoutDf()
{
    Device::remove(QStringLiteral("/usr/bin/df"));
    Device::installTool(QStringLiteral("/usr/bin/df"), "true");
    const QStringList flash = boxedValues(pageSystem(nullptr), "Flash:");
    QCOMPARE(flash.at(1), QStringLiteral("0 M"));
    QCOMPARE(flash.at(0), flash.at(2));
}

void tst_FlashAndMemory::flashInSinglePrecision()
{
    // 97657300 blocks are 100001.1 MB. 100000.1 is 100000.1015625 in single precision, which leaves
    // 0.8984375.
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 97657300 sda\n");
    setDf("100000.1M");
    QCOMPARE(
        boxedValues(pageSystem(nullptr), "Flash:"),
        QStringList({QStringLiteral("0.898438 M"), QStringLiteral("100000 M"), QStringLiteral("100001 M")}));
}

void tst_FlashAndMemory::flashSummedInSinglePrecision()
{
    // Near 100000 single precision has steps of 1/128, so 3K, less than half a step, is lost each time.
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/S"), QStringLiteral("../../sda2"));
    Device::link(QStringLiteral("/dev/disk/by-label/T"), QStringLiteral("../../sda3"));
    Device::write(partitions, "8 0 97657300 sda\n");
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        "printf '/dev/sda1 9G 100000.1M 9G 1%% /\\n/dev/sda2 9G 3K 9G 1%% /b\\n/dev/sda3 9G "
                        "3K 9G 1%% /c\\n'");
    QCOMPARE(shownByNewPage("Flash:", 1), QStringLiteral("0.898438 M"));
}

void tst_FlashAndMemory::flashOfOneTerabyte()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 976762584 sda\n");
    setDf("100G");
    // 1000000 - 102400
    QCOMPARE(
        boxedValues(pageSystem(nullptr), "Flash:"),
        QStringList({QStringLiteral("897600 M"), QStringLiteral("102400 M"), QStringLiteral("1e+06 M")}));
}

void tst_FlashAndMemory::flashPartitionNameNeverReachesTheShell_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a command in brackets") << "$(echo>'hit');touch$IFS'hit'#";
    QTest::newRow("the end of a command") << "x;touch$IFS$9hit";
}

void tst_FlashAndMemory::flashPartitionNameNeverReachesTheShell()
{
    QFETCH(QString, name);
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/EVIL"), QStringLiteral("../../") + name);
    Device::write(partitions, "8 0 7822336 sda\n");
    setDf("300M");
    const QString folder = QDir::currentPath();
    QDir::setCurrent(qEnvironmentVariable("SYSINFO_RIG"));
    const QStringList flash = boxedValues(pageSystem(nullptr), "Flash:");
    const bool hit = QFile::exists(QStringLiteral("hit"));
    QDir::setCurrent(folder);
    QVERIFY(!hit);
    QCOMPARE(flash.at(1), QStringLiteral("300 M"));
}

QTEST_MAIN(tst_FlashAndMemory)
#include "tst_flashandmemory.moc"
