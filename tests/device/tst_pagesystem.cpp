#include "app/valuebox.h"
#include "pages/system/biosandos.h"
#include "pages/system/pagesystem.h"
#include "tests/device/device.h"
#include "tests/markingtranslator.h"
#include "tests/shownvalues.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QTest>
#include <QTimerEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

const QString cpuinfo = QStringLiteral("/proc/cpuinfo");
const QString meminfo = QStringLiteral("/proc/meminfo");
const QString partitions = QStringLiteral("/proc/partitions");
const QString dmidecode = QStringLiteral("/usr/sbin/dmidecode");

bool isArm()
{
    return Device::name() == QLatin1String("arm");
}

/// Counts how often a file is opened while it lives.
class OpenCounter {
public:
    explicit OpenCounter(const QString &path)
        : m_watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        // Like events that follow each other are merged; the closing ones keep the opening ones apart.
        inotify_add_watch(m_watch, QFile::encodeName(path).constData(), IN_OPEN | IN_CLOSE);
    }
    ~OpenCounter() { close(m_watch); }
    Q_DISABLE_COPY(OpenCounter)

    /// The number since the last call.
    int take() const
    {
        alignas(inotify_event) char events[16384];
        const ssize_t size = read(m_watch, events, sizeof(events));
        int count = 0;
        for (ssize_t at = 0; at < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(events + at);
            count += (event->mask & IN_OPEN) != 0 ? 1 : 0;
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        return count;
    }

private:
    int m_watch;
};

void tick(QObject *page)
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(page, &event);
}

QStringList boxedValues(const QWidget &page, const char *caption)
{
    return {shownValue(&page, caption, 1), shownValue(&page, caption, 2), shownValue(&page, caption, 3)};
}

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

class tst_PageSystem : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }

    void showsEveryFact_data();
    void showsEveryFact();
    void runsItsCommandsOnceInOrder();
    void readsMeminfoThreeTimesARefresh();
    void refreshesMemoryEveryThreeSeconds();
    void refreshesMemoryOnly();

    void laysOutTheGroups();
    void laysOutTheSystemGroup();
    void laysOutTheFlashAndMemoryGroup();
    void laysOutTheBiosAndOsGroup();
    void sharesSpareHeightThreeToTwoToOne();
    void isNeverSqueezedBelowItsRows();
    void showsMarkupAsText();

    void processorWithoutCpuinfo();
    void processorOfTheLastCore();
    void processorNamedUnknownByTheKernel();
    void cpuSpeedTwiceWithItsUnitAfterDmi();
    void cpuSpeedUnknownWithoutDmi();
    void cpuSpeedOfTheKernelNeedsNoDmi();
    void cpuCacheNeedsBothSizes();
    void cpuCacheOfTheKernelWins();
    void platformUnknown_data();
    void platformUnknown();

    void memoryUnreadable();
    void memoryWithoutTotal();
    void memoryOfOneTerabyte();
    void memoryFromTheKernelsFigures();

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
    void flashPartitionNameNeverReachesTheShell();

    void biosAndSerialNumberUnknown_data();
    void biosAndSerialNumberUnknown();
    void biosFromTheFirstMatchingLine();
    void kernelVersionWithoutUname();
    void kernelVersionOfAFailingUname();
    void kernelVersionUpToTheZeroByte();
    void kernelVersionOfAHangingUname();
    void buildIdMissing();
    void buildIdEmpty();
    void buildIdOfBlanks();
    void latin1AndZeroBytes();

    void translatesInItsOwnContext();
    void fallbacksWorkTranslated();
};

void tst_PageSystem::showsEveryFact_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QStringList>("values");
    const auto row = [](const char *caption, const char *arm, const char *x86) {
        QTest::newRow(caption) << QString::fromLatin1(caption)
                               << QString::fromLatin1(isArm() ? arm : x86).split(QLatin1Char('|'));
    };
    row("Serial Number:", "TC50-0042-7781", "TC70-0007-1234");
    row("BIOS Version:", "1.09", "080015");
    row("BIOS Release Date:", "03/14/2012", "11/25/2013");
    row("OS Build ID:", "TC50-2.4.1-r118", "TC70-3.0.0-r007");
    row("OS Kernel Version:", "2.6.35-tc50", "3.2.0-tc70");
    row("Platform:", "Vexa TC50", "Vexa TC70");
    row("CPU Speed:", "1200 MHz MHz", "1596.000 MHz");
    row("CPU Cache:", "32768/16384", "512 KB");
    row("Processor:", "ARM926EJ-S rev 5 (v5l)", "X86 Mobile CPU @ 1.60GHz");
    // 15649200 blocks are 16024.8 MB; 2.7G and 846M are 2764.8 + 846.
    row("Flash:", "6173.99 M|1836.01 M|8010 M", "12413.2 M|3610.8 M|16024 M");
    // 1204816 + 45120 + 421508 kB are 1632.3 MB, 2061060 kB 2061.06.
    row("Memory:", "800 M|218 M|1018 M", "1632 M|429 M|2061 M");
}

void tst_PageSystem::showsEveryFact()
{
    QFETCH(QString, caption);
    QFETCH(QStringList, values);
    const pageSystem page(nullptr);
    const CaptionedRow row = captionedRow(&page, caption);
    for (int i = 0; i < values.size(); ++i) {
        QVERIFY(row.labelAt(i + 1));
        QCOMPARE(row.labelAt(i + 1)->text(), values.at(i));
    }
}

void tst_PageSystem::runsItsCommandsOnceInOrder()
{
    Device::clearCalls();
    pageSystem page(nullptr);
    const QString df = QStringLiteral("df -lh | grep /dev/%1 | awk '{print $3}'");
    QStringList expected{QStringLiteral("/usr/bin/vexa-hwsw-id --hw")};
    if (isArm())
        expected << QStringLiteral(
            "sudo /usr/sbin/dmidecode -t processor |grep -m 1 'Max Speed'|cut -d : -f 2");
    expected << QStringLiteral("readlink /dev/disk/by-label/ROOT");
    if (isArm()) {
        // CONFIG, DATA and ROOT.
        expected << QStringLiteral("ls -l /dev/disk/by-label/*|awk '{ print $NF }'")
                 << df.arg(QStringLiteral("sda2")) << df.arg(QStringLiteral("sda3"))
                 << df.arg(QStringLiteral("sda1"));
    } else {
        expected << QStringLiteral("ls -l /dev/disk/by-uuid/*|awk '{ print $NF }'")
                 << QStringLiteral("ls -l /dev/disk/by-uuid/*|awk '{ print $NF }'")
                 << df.arg(QStringLiteral("sda1")) << df.arg(QStringLiteral("sda2"));
    }
    expected << QStringLiteral("sudo /usr/sbin/dmidecode -t bios|grep -m 1 'Version'|cut -d : -f 2")
             << QStringLiteral("sudo /usr/sbin/dmidecode -t bios|grep -m 1 'Release Date'|cut -d : -f 2")
             << QStringLiteral("sudo /usr/sbin/dmidecode -t system|grep -m 1 'Serial Number'|cut -d : -f 2");
    QCOMPARE(Device::shellCommands(), expected);

    const QList<QStringList> calls = Device::calls();
    const QStringList uname{QStringLiteral("/usr/bin/uname"), QStringLiteral("-r")};
    QCOMPARE(calls.constLast(), uname);
    QCOMPARE(calls.count(uname), 1);

    Device::clearCalls();
    tick(&page);
    QVERIFY(Device::calls().isEmpty());
}

void tst_PageSystem::readsMeminfoThreeTimesARefresh()
{
    OpenCounter opens(meminfo);
    pageSystem page(nullptr);
    // Installed memory is read once more, and only then.
    QCOMPARE(opens.take(), 4);
    tick(&page);
    QCOMPARE(opens.take(), 3);
    tick(&page);
    QCOMPARE(opens.take(), 3);
}

void tst_PageSystem::refreshesMemoryEveryThreeSeconds()
{
    const pageSystem page(nullptr);
    QElapsedTimer time;
    time.start();
    QCOMPARE(shownValue(&page, "Memory:", 1), isArm() ? QStringLiteral("800 M") : QStringLiteral("1632 M"));
    Device::write(meminfo, "MemTotal: 9000000 kB\nMemFree: 2048 kB\n");
    QTRY_COMPARE_WITH_TIMEOUT(shownValue(&page, "Memory:", 1), QStringLiteral("2 M"), 4000);
    QVERIFY2(time.elapsed() > 2700, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(shownValue(&page, "Memory:", 2), QStringLiteral("8998 M"));
    Device::write(meminfo, "MemTotal: 9000000 kB\nMemFree: 1024 kB\n");
    QTRY_COMPARE_WITH_TIMEOUT(shownValue(&page, "Memory:", 1), QStringLiteral("1 M"), 4000);
    QVERIFY2(time.elapsed() > 5700, qPrintable(QString::number(time.elapsed())));
}

void tst_PageSystem::refreshesMemoryOnly()
{
    pageSystem page(nullptr);
    const QString processor = shownValue(&page, "Processor:");
    const QStringList flash = boxedValues(page, "Flash:");
    const QString installed = shownValue(&page, "Memory:", 3);
    Device::write(meminfo, "MemTotal: 9000000 kB\nMemFree: 2048 kB\n");
    Device::write(cpuinfo, "model name: another\n");
    Device::write(partitions, "");
    tick(&page);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("2 M"), QStringLiteral("8998 M"), installed}));
    QCOMPARE(shownValue(&page, "Processor:"), processor);
    QCOMPARE(boxedValues(page, "Flash:"), flash);
}

void tst_PageSystem::laysOutTheGroups()
{
    const pageSystem page(nullptr);
    const auto *layout = qobject_cast<QVBoxLayout *>(page.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 3);
    const struct {
        const char *title;
        int stretch;
        int minimumHeight;
        Qt::Alignment alignment;
    } expected[] = {{"BIOS and OS", 3, 100, Qt::AlignLeft},
                    {"System", 2, 65, Qt::AlignLeft},
                    {"Flash and Memory", 1, 100, Qt::Alignment()}};
    for (int i = 0; i < 3; ++i) {
        const auto *group = qobject_cast<QGroupBox *>(layout->itemAt(i)->widget());
        QVERIFY(group);
        QCOMPARE(group->title(), QString::fromLatin1(expected[i].title));
        QCOMPARE(group->parentWidget(), &page);
        QCOMPARE(layout->stretch(i), expected[i].stretch);
        QCOMPARE(group->minimumHeight(), expected[i].minimumHeight);
        QVERIFY(qobject_cast<QGridLayout *>(group->layout()));
        QCOMPARE(group->layout()->alignment(), expected[i].alignment);
    }
}

void tst_PageSystem::laysOutTheSystemGroup()
{
    const pageSystem page(nullptr);
    const struct {
        const char *caption;
        int row;
        int column;
    } expected[] = {{"Platform:", 0, 0}, {"CPU Speed:", 1, 0}, {"CPU Cache:", 1, 2}, {"Processor:", 2, 0}};
    for (const auto &[caption, row, column] : expected) {
        const CaptionedRow found = captionedRow(&page, QString::fromLatin1(caption));
        QCOMPARE(found.row, row);
        QCOMPARE(found.column, column);
        QCOMPARE(found.labelAt(0)->minimumWidth(), 150);
        QVERIFY(found.labelAt(1));
        QCOMPARE(found.labelAt(1)->objectName(), QString());
        QCOMPARE(found.labelAt(1)->frameShape(), QFrame::NoFrame);
    }
    const CaptionedRow processor = captionedRow(&page, QStringLiteral("Processor:"));
    QCOMPARE(processor.labelAt(1), processor.labelAt(2));
    QCOMPARE(processor.grid->itemAtPosition(2, 3), nullptr);
}

void tst_PageSystem::laysOutTheFlashAndMemoryGroup()
{
    const pageSystem page(nullptr);
    for (const char *header : {"Free", "Used", "Installed"})
        QCOMPARE(captionedRow(&page, QString::fromLatin1(header)).labelAt(0)->alignment(), Qt::AlignCenter);
    QCOMPARE(captionedRow(&page, QStringLiteral("Free")).column, 1);
    QCOMPARE(captionedRow(&page, QStringLiteral("Used")).column, 2);
    QCOMPARE(captionedRow(&page, QStringLiteral("Installed")).column, 3);
    QCOMPARE(captionedRow(&page, QStringLiteral("Installed")).row, 0);
    int row = 1;
    for (const char *caption : {"Flash:", "Memory:"}) {
        const CaptionedRow found = captionedRow(&page, QString::fromLatin1(caption));
        QCOMPARE(found.row, row++);
        QCOMPARE(found.column, 0);
        QCOMPARE(found.labelAt(0)->minimumWidth(), 0);
        for (int column = 1; column <= 3; ++column) {
            QCOMPARE(found.labelAt(column)->objectName(), QStringLiteral("valueBox"));
            QCOMPARE(found.labelAt(column)->alignment(), Qt::AlignRight | Qt::AlignVCenter);
            QCOMPARE(found.labelAt(column)->minimumHeight(), 25);
        }
    }
}

void tst_PageSystem::laysOutTheBiosAndOsGroup()
{
    const pageSystem page(nullptr);
    int row = 0;
    for (const char *caption :
         {"Serial Number:", "BIOS Version:", "BIOS Release Date:", "OS Build ID:", "OS Kernel Version:"}) {
        const CaptionedRow found = captionedRow(&page, QString::fromLatin1(caption));
        QCOMPARE(found.row, row++);
        QCOMPARE(found.column, 0);
        QCOMPARE(found.labelAt(0)->minimumWidth(), 150);
        QCOMPARE(found.labelAt(1)->objectName(), QString());
    }
}

void tst_PageSystem::sharesSpareHeightThreeToTwoToOne()
{
    pageSystem page(nullptr);
    page.resize(700, 1500);
    page.show();
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    QCOMPARE(groups.size(), 3);
    const auto heightOf = [&page](int i) { return page.layout()->itemAt(i)->geometry().height(); };
    QVERIFY(qAbs(heightOf(0) - 3 * heightOf(2)) <= 3);
    QVERIFY(qAbs(heightOf(1) - 2 * heightOf(2)) <= 3);
}

void tst_PageSystem::isNeverSqueezedBelowItsRows()
{
    pageSystem page(nullptr);
    page.show();
    page.resize(page.minimumSizeHint());
    const QList<QLabel *> labels = page.findChildren<QLabel *>();
    for (const QLabel *label : labels)
        QVERIFY2(label->height() >= label->minimumSizeHint().height(), qPrintable(label->text()));
}

void tst_PageSystem::showsMarkupAsText()
{
    Device::write(QStringLiteral("/etc/imageid"), "<b>bold</b>\n");
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "OS Build ID:"), QStringLiteral("<b>bold</b>"));
    const QStringList captions{QStringLiteral("Serial Number:"),     QStringLiteral("BIOS Version:"),
                               QStringLiteral("BIOS Release Date:"), QStringLiteral("OS Build ID:"),
                               QStringLiteral("OS Kernel Version:"), QStringLiteral("Platform:"),
                               QStringLiteral("CPU Speed:"),         QStringLiteral("CPU Cache:"),
                               QStringLiteral("Processor:")};
    for (const QString &caption : captions) {
        const CaptionedRow row = captionedRow(&page, caption);
        QCOMPARE(row.labelAt(1)->textFormat(), Qt::PlainText);
        QCOMPARE(row.labelAt(0)->buddy(), row.labelAt(1));
    }
    for (const char *caption : {"Flash:", "Memory:"}) {
        for (int column = 1; column <= 3; ++column) {
            const QLabel *value = captionedRow(&page, QString::fromLatin1(caption)).labelAt(column);
            QCOMPARE(value->textFormat(), Qt::PlainText);
        }
    }
}

void tst_PageSystem::processorWithoutCpuinfo()
{
    Device::makeUnreadable(cpuinfo);
    Device::remove(dmidecode);
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "Processor:"), QStringLiteral("Unknown"));
    QCOMPARE(shownValue(&page, "CPU Speed:"), QStringLiteral("Unknown MHz"));
    QCOMPARE(shownValue(&page, "CPU Cache:"), QStringLiteral("Unknown"));
}

void tst_PageSystem::processorOfTheLastCore()
{
    Device::write(cpuinfo, "processor: 0\nmodel name: first\nprocessor: 1\nmodel name: last: more\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "Processor:"), QStringLiteral("last"));
}

void tst_PageSystem::processorNamedUnknownByTheKernel()
{
    Device::write(cpuinfo, "model name: Unknown\nProcessor: ARM\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "Processor:"), QStringLiteral("ARM"));
}

void tst_PageSystem::cpuSpeedTwiceWithItsUnitAfterDmi()
{
    Device::write(cpuinfo, "model name: A CPU\n");
    Device::installTool(dmidecode, "printf '\\tMax Speed: 1600 MHz\\n\\tMax Speed: 1700 MHz\\n'");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Speed:"),
             QStringLiteral("1600 MHz MHz"));
}

void tst_PageSystem::cpuSpeedUnknownWithoutDmi()
{
    Device::write(cpuinfo, "model name: A CPU\n");
    Device::installTool(QStringLiteral("/usr/bin/sudo"), "echo 'sudo: a password is required' >&2; exit 1");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Speed:"),
             QStringLiteral("Unknown MHz"));
}

void tst_PageSystem::cpuSpeedOfTheKernelNeedsNoDmi()
{
    Device::write(cpuinfo, "cpu MHz: 1596.000\n");
    Device::clearCalls();
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Speed:"),
             QStringLiteral("1596.000 MHz"));
    QVERIFY(Device::shellCommands().filter(QStringLiteral("Max Speed")).isEmpty());
}

void tst_PageSystem::cpuCacheNeedsBothSizes()
{
    Device::write(cpuinfo, "I size: 32768\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Cache:"),
             QStringLiteral("Unknown"));
    Device::write(cpuinfo, "D size: 16384\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Cache:"),
             QStringLiteral("Unknown"));
    Device::write(cpuinfo, "I size: 32768\nD size: 16384\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Cache:"),
             QStringLiteral("32768/16384"));
}

void tst_PageSystem::cpuCacheOfTheKernelWins()
{
    Device::write(cpuinfo, "cache size: 512 KB\nI size: 32768\nD size: 16384\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "CPU Cache:"), QStringLiteral("512 KB"));
}

void tst_PageSystem::platformUnknown_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("absent") << QByteArray();
    QTest::newRow("silent") << QByteArray("true");
    QTest::newRow("blanks") << QByteArray("echo '  '");
    QTest::newRow("standard error only") << QByteArray("echo TC50 >&2");
}

void tst_PageSystem::platformUnknown()
{
    QFETCH(QByteArray, script);
    const QString tool = QStringLiteral("/usr/bin/vexa-hwsw-id");
    if (script.isEmpty())
        Device::remove(tool);
    else
        Device::installTool(tool, script);
    const MarkingTranslator translator;
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "[pageSystem]Platform:"), QStringLiteral("Unknown"));
}

void tst_PageSystem::memoryUnreadable()
{
    Device::makeUnreadable(meminfo);
    const pageSystem page(nullptr);
    QCOMPARE(
        boxedValues(page, "Memory:"),
        QStringList({QStringLiteral("FileError M"), QStringLiteral("0 M"), QStringLiteral("Unknown M")}));
}

void tst_PageSystem::memoryWithoutTotal()
{
    Device::write(meminfo, "MemFree: 102400 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("100 M"), QStringLiteral("-100 M"), QStringLiteral("Unknown M")}));
}

void tst_PageSystem::memoryOfOneTerabyte()
{
    // "1e+06" is no integer.
    Device::write(meminfo, "MemTotal: 1000204900 kB\nMemFree: 2048 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("2 M"), QStringLiteral("-2 M"), QStringLiteral("1e+06 M")}));
}

void tst_PageSystem::memoryFromTheKernelsFigures()
{
    Device::write(meminfo,
                  "MemTotal: 1018888 kB\nMemFree: 500000 kB\nBuffers: 20000 kB\nCached: 300000 kB\n");
    const pageSystem page(nullptr);
    QCOMPARE(boxedValues(page, "Memory:"),
             QStringList({QStringLiteral("800 M"), QStringLiteral("218 M"), QStringLiteral("1018 M")}));
}

void tst_PageSystem::flashUnknown_data()
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

void tst_PageSystem::flashUnknown()
{
    QFETCH(QString, link);
    QFETCH(QString, target);
    onlyLink(QStringLiteral("/dev/disk/by-label"), link, target);
    Device::write(partitions, "8 0 7822336 sda\n179 0 7822336 mmcblk0\n179 1 7000000 mmcblk0p1\n");
    QCOMPARE(boxedValues(pageSystem(nullptr), "Flash:"), allUnknown);
}

void tst_PageSystem::flashUnknownWithoutPartitions()
{
    Device::makeUnreadable(partitions);
    QCOMPARE(boxedValues(pageSystem(nullptr), "Flash:"), allUnknown);
}

void tst_PageSystem::flashByTheFirstUuidLink()
{
    onlyLink(QStringLiteral("/dev/disk/by-uuid"), QStringLiteral("aaaa"), QStringLiteral("../../sdb1"));
    Device::link(QStringLiteral("/dev/disk/by-uuid/bbbb"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 7822336 sda\n8 16 1000000 sdb\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "Flash:", 3), QStringLiteral("1024 M"));
}

void tst_PageSystem::flashByTheRootLabelBeforeTheUuids()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-uuid/aaaa"), QStringLiteral("../../sdb1"));
    Device::write(partitions, "8 0 7822336 sda\n8 16 1000000 sdb\n");
    setDf("300M");
    QCOMPARE(boxedValues(pageSystem(nullptr), "Flash:"),
             QStringList({QStringLiteral("7710 M"), QStringLiteral("300 M"), QStringLiteral("8010 M")}));
}

void tst_PageSystem::flashUsedOfThreePartitions()
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

void tst_PageSystem::flashUsed_data()
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

void tst_PageSystem::flashUsed()
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

void tst_PageSystem::flashUsedOnOtherDisksCounts()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/STICK"), QStringLiteral("../../sdb1"));
    Device::write(partitions, "8 0 7822336 sda\n");
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        "printf '/dev/sda1 9G 300M 9G 1%% /\\n/dev/sdb1 9G 200M 9G 1%% /media\\n'");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "Flash:", 2), QStringLiteral("500 M"));
}

void tst_PageSystem::flashUsedOfTheFirstMatchingDfLine()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 7822336 sda\n");
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        "printf '/dev/sda11 9G 200M 9G 1%% /other\\n/dev/sda1 9G 300M 9G 1%% /\\n'");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "Flash:", 2), QStringLiteral("200 M"));
}

void tst_PageSystem::flashUsedWithoutDf()
{
    Device::remove(QStringLiteral("/usr/bin/df"));
    Device::installTool(QStringLiteral("/usr/bin/df"), "true");
    const QStringList flash = boxedValues(pageSystem(nullptr), "Flash:");
    QCOMPARE(flash.at(1), QStringLiteral("0 M"));
    QCOMPARE(flash.at(0), flash.at(2));
}

void tst_PageSystem::flashInSinglePrecision()
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

void tst_PageSystem::flashSummedInSinglePrecision()
{
    // Near 100000 single precision has steps of 1/128, so 3K, less than half a step, is lost each time.
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/S"), QStringLiteral("../../sda2"));
    Device::link(QStringLiteral("/dev/disk/by-label/T"), QStringLiteral("../../sda3"));
    Device::write(partitions, "8 0 97657300 sda\n");
    Device::installTool(QStringLiteral("/usr/bin/df"),
                        "printf '/dev/sda1 9G 100000.1M 9G 1%% /\\n/dev/sda2 9G 3K 9G 1%% /b\\n/dev/sda3 9G "
                        "3K 9G 1%% /c\\n'");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "Flash:", 1),
             QStringLiteral("0.898438 M"));
}

void tst_PageSystem::flashOfOneTerabyte()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::write(partitions, "8 0 976762584 sda\n");
    setDf("100G");
    // 1000000 - 102400
    QCOMPARE(
        boxedValues(pageSystem(nullptr), "Flash:"),
        QStringList({QStringLiteral("897600 M"), QStringLiteral("102400 M"), QStringLiteral("1e+06 M")}));
}

void tst_PageSystem::flashPartitionNameNeverReachesTheShell()
{
    onlyLink(QStringLiteral("/dev/disk/by-label"), QStringLiteral("ROOT"), QStringLiteral("../../sda1"));
    Device::link(QStringLiteral("/dev/disk/by-label/EVIL"),
                 QStringLiteral("../../$(echo>'hit');touch$IFS'hit'#"));
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

void tst_PageSystem::biosAndSerialNumberUnknown_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("dmidecode not installed") << dmidecode << QByteArray();
    QTest::newRow("sudo not installed") << "/usr/bin/sudo" << QByteArray();
    QTest::newRow("sudo refuses") << "/usr/bin/sudo"
                                  << QByteArray("echo 'sudo: a password is required' >&2; exit 1");
    QTest::newRow("no DMI tables") << dmidecode
                                   << QByteArray("echo '# No SMBIOS nor DMI entry point found, sorry.'");
    QTest::newRow("empty values") << dmidecode
                                  << QByteArray(
                                         "printf '\\tVersion:  \\n\\tRelease Date: \\n\\tSerial Number:\\n'");
}

void tst_PageSystem::biosAndSerialNumberUnknown()
{
    QFETCH(QString, tool);
    QFETCH(QByteArray, script);
    if (script.isEmpty())
        Device::remove(tool);
    else
        Device::installTool(tool, script);
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "BIOS Version:"), QStringLiteral("Unknown"));
    QCOMPARE(shownValue(&page, "BIOS Release Date:"), QStringLiteral("Unknown"));
    QCOMPARE(shownValue(&page, "Serial Number:"), QStringLiteral("Unknown"));
}

void tst_PageSystem::biosFromTheFirstMatchingLine()
{
    Device::installTool(
        dmidecode,
        "printf '\\tBIOS Version: a:b\\n\\tVersion: second\\n\\tRelease Date: d\\n\\tRelease Date: e\\n'");
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "BIOS Version:"), QStringLiteral("a"));
    QCOMPARE(shownValue(&page, "BIOS Release Date:"), QStringLiteral("d"));
}

void tst_PageSystem::kernelVersionWithoutUname()
{
    Device::write(QStringLiteral("/usr/bin/uname"), "not a program");
    QVERIFY(QFile::setPermissions(QStringLiteral("/usr/bin/uname"), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Kernel Version:"),
             QStringLiteral("Unknown"));
    Device::remove(QStringLiteral("/usr/bin/uname"));
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Kernel Version:"),
             QStringLiteral("Unknown"));
}

void tst_PageSystem::kernelVersionOfAFailingUname()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"),
                        "echo '  2.6.35 '; echo second; echo error >&2; exit 3");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Kernel Version:"),
             QStringLiteral("2.6.35 \nsecond"));
    Device::installTool(QStringLiteral("/usr/bin/uname"), "echo 2.6.36; kill -KILL $$");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Kernel Version:"),
             QStringLiteral("2.6.36"));
    Device::installTool(QStringLiteral("/usr/bin/uname"), "true");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Kernel Version:"), QString());
}

void tst_PageSystem::kernelVersionUpToTheZeroByte()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"), "printf '2.6\\000.35\\n'");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Kernel Version:"),
             QStringLiteral("2.6"));
}

void tst_PageSystem::kernelVersionOfAHangingUname()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"),
                        "echo 2.6.35; echo $$ >\"$SYSINFO_RIG/uname-pid\"; exec sleep 600");
    QElapsedTimer time;
    time.start();
    QVERIFY(readKernelVersion(500).isNull());
    QVERIFY(time.elapsed() >= 500);
    QFile pid(qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/uname-pid"));
    QVERIFY(pid.open(QIODevice::ReadOnly));
    QVERIFY(!QFile::exists(QStringLiteral("/proc/") + QString::fromLatin1(pid.readAll().trimmed())));
}

void tst_PageSystem::buildIdMissing()
{
    Device::remove(QStringLiteral("/etc/imageid"));
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Build ID:"),
             QStringLiteral("Unknown"));
}

void tst_PageSystem::buildIdEmpty()
{
    Device::write(QStringLiteral("/etc/imageid"), "");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Build ID:"),
             QStringLiteral("Unknown"));
}

void tst_PageSystem::buildIdOfBlanks()
{
    Device::write(QStringLiteral("/etc/imageid"), "   \nTC50\n");
    QCOMPARE(shownValue(std::make_unique<pageSystem>(nullptr).get(), "OS Build ID:"), QString());
}

void tst_PageSystem::latin1AndZeroBytes()
{
    // In a UTF-8 locale grep takes lines with such bytes for binary data and prints nothing.
    const QByteArray locale = qgetenv("LC_ALL");
    qputenv("LC_ALL", "C");
    Device::write(QStringLiteral("/etc/imageid"), QByteArray("TC\xb5\0 rest\n", 10));
    Device::write(cpuinfo, QByteArray("model name: CPU\xae\0 rest\ncache size: \xbd KB\n", 40));
    Device::installTool(QStringLiteral("/usr/bin/vexa-hwsw-id"), "printf 'TC\\265\\000 rest\\n'");
    Device::installTool(dmidecode, "printf '\\tVersion: \\265\\n'");
    const pageSystem page(nullptr);
    qputenv("LC_ALL", locale);
    QCOMPARE(shownValue(&page, "BIOS Version:"), QString::fromUtf8("\u00b5"));
    QCOMPARE(shownValue(&page, "OS Build ID:"), QString::fromUtf8("TC\u00b5"));
    QCOMPARE(shownValue(&page, "Processor:"), QString::fromUtf8("CPU\u00ae"));
    QCOMPARE(shownValue(&page, "CPU Cache:"), QString::fromUtf8("\u00bd KB"));
    QCOMPARE(shownValue(&page, "Platform:"), QString::fromUtf8("TC\u00b5"));
}

void tst_PageSystem::translatesInItsOwnContext()
{
    const MarkingTranslator translator;
    const pageSystem page(nullptr);
    QStringList titles;
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    for (const QGroupBox *group : groups)
        titles.append(group->title());
    titles.sort();
    QCOMPARE(
        titles,
        QStringList({QStringLiteral("[pageSystem]BIOS and OS"),
                     QStringLiteral("[pageSystem]Flash and Memory"), QStringLiteral("[pageSystem]System")}));
    for (const char *caption : {"Platform:", "CPU Speed:", "CPU Cache:", "Processor:", "Free", "Used",
                                "Installed", "Flash:", "Memory:", "Serial Number:", "BIOS Version:",
                                "BIOS Release Date:", "OS Build ID:", "OS Kernel Version:"})
        QVERIFY2(captionedRow(&page, QStringLiteral("[pageSystem]") + QString::fromLatin1(caption)).grid,
                 caption);
    // What was found is not translated.
    QCOMPARE(shownValue(&page, "[pageSystem]Memory:", 3),
             isArm() ? QStringLiteral("1018 M") : QStringLiteral("2061 M"));
}

void tst_PageSystem::fallbacksWorkTranslated()
{
    Device::write(cpuinfo, "Processor: ARM\nI size: 1\nD size: 2\n");
    Device::makeUnreadable(meminfo);
    Device::makeUnreadable(partitions);
    Device::remove(QStringLiteral("/etc/imageid"));
    Device::remove(QStringLiteral("/usr/bin/uname"));
    Device::remove(dmidecode);
    const MarkingTranslator translator;
    const QString unknown = QStringLiteral("[pageSystem]Unknown");
    {
        const pageSystem page(nullptr);
        QCOMPARE(shownValue(&page, "[pageSystem]Processor:"), QStringLiteral("ARM"));
        QCOMPARE(shownValue(&page, "[pageSystem]CPU Cache:"), QStringLiteral("1/2"));
        QCOMPARE(shownValue(&page, "[pageSystem]CPU Speed:"), unknown + QStringLiteral(" MHz"));
        QCOMPARE(boxedValues(page, "[pageSystem]Flash:"), QStringList({unknown, unknown, unknown}));
        QCOMPARE(boxedValues(page, "[pageSystem]Memory:"),
                 QStringList({QStringLiteral("[QObject]FileError M"), QStringLiteral("0 M"),
                              QStringLiteral("[QObject]Unknown M")}));
        for (const char *caption :
             {"Serial Number:", "BIOS Version:", "BIOS Release Date:", "OS Build ID:", "OS Kernel Version:"})
            QCOMPARE(
                shownValue(&page, qPrintable(QStringLiteral("[pageSystem]") + QString::fromLatin1(caption))),
                unknown);
    }
    Device::makeUnreadable(cpuinfo);
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "[pageSystem]Processor:"), unknown);
    QCOMPARE(shownValue(&page, "[pageSystem]CPU Cache:"), unknown);
}

QTEST_MAIN(tst_PageSystem)
#include "tst_pagesystem.moc"
