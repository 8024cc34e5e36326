#include "app/waitingwork.h"
#include "tests/device/systempage.h"
#include "tests/markingtranslator.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QTest>
#include <QTimerEvent>
#include <QVBoxLayout>

#include <memory>
#include <sys/inotify.h>
#include <unistd.h>

using namespace SystemPage;

namespace {

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
    void putsAllLabelsIntoTheGroups_data();
    void putsAllLabelsIntoTheGroups();
    void laysOutTheSystemGroup();
    void laysOutTheFlashAndMemoryGroup();
    void laysOutTheBiosAndOsGroup();
    void sharesSpareHeightThreeToTwoToOne();
    void isNeverSqueezedBelowItsRows();
    void showsMarkupAsText();
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
    QTRY_COMPARE_WITH_TIMEOUT(shownValue(&page, "Memory:", 1), QStringLiteral("2 M"), 30000);
    QVERIFY2(time.elapsed() > 2700, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(shownValue(&page, "Memory:", 2), QStringLiteral("8998 M"));
    Device::write(meminfo, "MemTotal: 9000000 kB\nMemFree: 1024 kB\n");
    QTRY_COMPARE_WITH_TIMEOUT(shownValue(&page, "Memory:", 1), QStringLiteral("1 M"), 30000);
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

void tst_PageSystem::putsAllLabelsIntoTheGroups_data()
{
    QTest::addColumn<bool>("isWorkLeft");
    QTest::newRow("at once") << false;
    QTest::newRow("while it waits for its commands") << true;
}

void tst_PageSystem::putsAllLabelsIntoTheGroups()
{
    QFETCH(bool, isWorkLeft);
    auto work = isWorkLeft ? std::make_unique<WaitingWork>() : nullptr;
    const pageSystem page(nullptr);
    work.reset();
    const QList<QLabel *> labels = page.findChildren<QLabel *>();
    // The values, 9 of them with a caption of their own; the headers and captions of the table.
    QCOMPARE(labels.size(), 15 + 9 + 3 + 2);
    for (QLabel *label : labels) {
        auto *group = qobject_cast<QGroupBox *>(label->parentWidget());
        QVERIFY(group);
        QVERIFY(group->layout()->indexOf(label) >= 0);
        QVERIFY(page.layout()->indexOf(group) >= 0);
    }
    QVERIFY(!shownValue(&page, "Processor:").isEmpty());
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
            const char *header = column == 1 ? " Free" : column == 2 ? " Used" : " Installed";
            QCOMPARE(value->accessibleName(), QLatin1String(caption) + QLatin1String(header));
        }
    }
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
