#include "pages/system/memory.h"
#include "pages/system/pagesystem.h"

#include <QTest>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <sys/sysinfo.h>
#include <unistd.h>

namespace {

/// What the next read fails with; 0 for one that does not.
int nextError = 0;
int reads = 0;
/// What is read instead of the live file; null for that.
QByteArray madeUpFile;
int place = 0;

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
ssize_t __real_read(int file, void *buffer, size_t size);

ssize_t __wrap_read(int file, void *buffer, size_t size)
{
    ++reads;
    if (nextError != 0) {
        errno = std::exchange(nextError, 0);
        return -1;
    }
    if (madeUpFile.isNull())
        return __real_read(file, buffer, size);
    const QByteArray piece = madeUpFile.mid(place, static_cast<int>(size));
    place += static_cast<int>(piece.size());
    std::copy(piece.cbegin(), piece.cend(), static_cast<char *>(buffer));
    return static_cast<ssize_t>(piece.size());
}
// NOLINTEND(bugprone-reserved-identifier)
}

class tst_Memory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void totalMemory_data();
    void totalMemory();
    void freeMemory_data();
    void freeMemory();
    void totalMemoryOfTheLiveMachine();
    void freeMemoryOfTheLiveMachine();
    void readsTheFileInOnePiece();
    void readsAFileOfAnySize_data();
    void readsAFileOfAnySize();
    void forgetsALongerFile();
    void goesOnAfterAnInterruptedRead();
    void isUnknownWhenReadingFails();
};

void tst_Memory::init()
{
    nextError = 0;
    reads = 0;
    madeUpFile = {};
    place = 0;
}

void tst_Memory::totalMemory_data()
{
    QTest::addColumn<QByteArray>("meminfo");
    QTest::addColumn<QString>("megabytes");

    QTest::newRow("decimal megabytes, cut off")
        << QByteArray("MemTotal:        1018888 kB\nMemFree: 5 kB\n") << "1018";
    QTest::newRow("less than one") << QByteArray("MemTotal: 999 kB\n") << "0";
    QTest::newRow("not the first line") << QByteArray("MemFree: 5000 kB\nMemTotal: 7000 kB\n") << "7";
    QTest::newRow("first matching line wins") << QByteArray("MemTotal: 7000 kB\nMemTotal: 8000 kB\n") << "7";
    QTest::newRow("no final newline") << QByteArray("MemTotal: 7000 kB") << "7";
    QTest::newRow("no unit") << QByteArray("MemTotal: 7000\n") << "7";
    QTest::newRow("found in any case, read in one") << QByteArray("memtotal: 7000 kB\n") << "0";
    QTest::newRow("unit in upper case") << QByteArray("MemTotal: 7000 KB\n") << "0";
    QTest::newRow("without colon") << QByteArray("MemTotal 7000 kB\n") << "0";
    QTest::newRow("no number") << QByteArray("MemTotal: many kB\n") << "0";
    QTest::newRow("empty figure") << QByteArray("MemTotal:\n") << "0";
    QTest::newRow("white space all around") << QByteArray(" \tMemTotal:\v\xa0 7000 \x85 kB \r\n") << "7";
    QTest::newRow("figure before the key") << QByteArray("7000 MemTotal: kB\n") << "7";
    QTest::newRow("key and unit again") << QByteArray("MemTotal: 70kBMemTotal:00 kB kB\n") << "7";
    QTest::newRow("a unit that removing one leaves") << QByteArray("MemTotal: 7000kkBB\n") << "0";
    QTest::newRow("plus sign") << QByteArray("MemTotal: +7000 kB\n") << "7";
    QTest::newRow("minus sign") << QByteArray("MemTotal: -7000 kB\n") << "-7";
    QTest::newRow("two figures") << QByteArray("MemTotal: 7000 8000 kB\n") << "0";
    QTest::newRow("with a fraction") << QByteArray("MemTotal: 7999.9 kB\n") << "7";
    QTest::newRow("zero byte ends the line") << QByteArray("MemTotal: 7000\0"
                                                           "9 kB\n",
                                                           21)
                                             << "7";
    // In single precision 200000503 is 200000496; in double precision this would be 200001.
    QTest::newRow("single precision") << QByteArray("MemTotal: 200000503 kB\n") << "200000";
    QTest::newRow("six digits round") << QByteArray("MemTotal: 262144600 kB\n") << "262145";
    QTest::newRow("beyond single precision") << QByteArray("MemTotal: 1e39 kB\n") << "0";
    QTest::newRow("beyond double precision") << QByteArray("MemTotal: 1e400 kB\n") << "0";
    // 1000204.9 is 1.0002e+06 with six digits.
    QTest::newRow("from a million on, an exponent") << QByteArray("MemTotal: 1000204900 kB\n") << "1e+06";
    // 4294967.296 is 4.29497e+06.
    QTest::newRow("beyond 32 bits") << QByteArray("MemTotal: 4294967296 kB\n") << "4e+06";
    // 1007 blanks, the key, a blank and six digits are a piece of 1023 bytes.
    QTest::newRow("long line in pieces") << QByteArray(1007, ' ') + "MemTotal: 5000000 kB\n"
                                         << "500";
    QTest::newRow("no such line") << QByteArray("MemFree: 5 kB\n") << QString();
    QTest::newRow("empty file") << QByteArray() << QString();
}

void tst_Memory::totalMemory()
{
    QFETCH(QByteArray, meminfo);
    QFETCH(QString, megabytes);
    const QString total = ::totalMemory(meminfo);
    QCOMPARE(total, megabytes);
    QCOMPARE(total.isNull(), megabytes.isNull());
}

void tst_Memory::freeMemory_data()
{
    QTest::addColumn<QByteArray>("meminfo");
    QTest::addColumn<QString>("megabytes");

    QTest::newRow("sum divided by 1024")
        << QByteArray("MemTotal: 1018888 kB\nMemFree: 500000 kB\nBuffers: 20000 kB\nCached: 300000 kB\n")
        << "800";
    QTest::newRow("none of the keys") << QByteArray("MemTotal: 1018888 kB\n") << "0";
    QTest::newRow("empty file") << QByteArray() << "0";
    QTest::newRow("one key") << QByteArray("Cached: 2048 kB\n") << "2";
    QTest::newRow("whole words only")
        << QByteArray("SwapCached: 9999 kB\nxMemFree: 9999 kB\nBuffers 9999 kB\nCached: 2048 kB\n") << "2";
    QTest::newRow("case matters") << QByteArray("memfree: 9999 kB\nCACHED: 9999 kB\nBuffers: 1024 kB\n")
                                  << "1";
    QTest::newRow("the third word ends it")
        << QByteArray("Cached: 1024 kB\nCached: 1024 kB\nCached: 1024 kB\nMemFree: 9999999 kB\n") << "3";
    QTest::newRow("no number counts as 0") << QByteArray("MemFree: many kB\nBuffers: 4096 kB\n") << "4";
    QTest::newRow("figure and unit in one word") << QByteArray("MemFree: 9999kB\nBuffers: 4096 kB\n") << "4";
    QTest::newRow("key and figure in one word")
        << QByteArray("MemFree:9999 9999 kB\nCached: 4096 kB\n") << "4";
    QTest::newRow("what is no number is one of the three")
        << QByteArray("Cached: many\nCached: 2048\nCached: 2048\nMemFree: 9999999\n") << "4";
    QTest::newRow("with a sign") << QByteArray("MemFree: +4096 kB\nBuffers: +-9999 kB\nCached: ++9999 kB\n")
                                 << "4";
    QTest::newRow("zero byte in a figure") << QByteArray("MemFree: 9999\0 kB\nBuffers: 4096 kB\n", 35) << "4";
    QTest::newRow("key in place of a figure")
        << QByteArray("MemFree: Buffers: 9999 kB\nCached: 4096 kB\n") << "4";
    QTest::newRow("colons within words")
        << QByteArray("x:MemFree: 9999 kB\nMemFree:x 9999 kB\nCached: 4096 kB\n") << "4";
    QTest::newRow("key at the end of a longer word")
        << QByteArray("aMemFree: 9999 kB\nCached: 4096 kB\n") << "4";
    // Each colon must not cost a look at all before it.
    QTest::newRow("a megabyte of colons") << QByteArray(1 << 20, ':') + " Cached: 4096 kB\n"
                                          << "4";
    QTest::newRow("too large for an int counts as 0")
        << QByteArray("MemFree: 4294967296 kB\nBuffers: 4096 kB\n") << "4";
    QTest::newRow("larger than an int together")
        << QByteArray("MemFree: 2000000000 kB\nBuffers: 2000000000 kB\n") << "3906250";
    QTest::newRow("key at the end of the file") << QByteArray("MemFree: 4096 kB\nBuffers:") << "4";
    QTest::newRow("all on one line") << QByteArray("MemFree: 1024 Buffers: 1024 Cached: 1024") << "3";
    QTest::newRow("any white space between words")
        << QByteArray("MemFree:\n1024\tkB\r\nBuffers:\v1024\fCached: \t 1024") << "3";
    QTest::newRow("white space of Latin-1") << QByteArray("MemFree:\xa0"
                                                          "1024\x85"
                                                          "Cached: 1024")
                                            << "2";
    QTest::newRow("zero byte is no white space")
        << QByteArray("MemFree:\0 9999 kB\nCached: 2048 kB\n", 34) << "2";
    QTest::newRow("divided toward zero") << QByteArray("MemFree: -2047 kB\n") << "-1";
}

void tst_Memory::freeMemory()
{
    QFETCH(QByteArray, meminfo);
    QTEST(::freeMemory(meminfo), "megabytes");
}

void tst_Memory::totalMemoryOfTheLiveMachine()
{
    struct sysinfo machine = {};
    QCOMPARE(::sysinfo(&machine), 0);
    const double kilobytes = static_cast<double>(machine.totalram) * machine.mem_unit / 1024;
    const double shown = pageSystem::readTotalMemory().toDouble();
    // Six digits, and the fraction cut off.
    QVERIFY2(qAbs(shown - kilobytes / 1000) <= qMax(1.0, shown * 1e-5),
             qPrintable(pageSystem::readTotalMemory()));
}

void tst_Memory::freeMemoryOfTheLiveMachine()
{
    struct sysinfo machine = {};
    QCOMPARE(::sysinfo(&machine), 0);
    const double freeKilobytes = static_cast<double>(machine.freeram) * machine.mem_unit / 1024;
    const double totalKilobytes = static_cast<double>(machine.totalram) * machine.mem_unit / 1024;
    const double shown = pageSystem::readFreeMemory().toDouble();
    // Buffers and cache come on top of the free pages; other programs go on meanwhile.
    QVERIFY2(shown > freeKilobytes / 1024 * 0.9, qPrintable(pageSystem::readFreeMemory()));
    QVERIFY2(shown <= totalKilobytes / 1024, qPrintable(pageSystem::readFreeMemory()));
}

void tst_Memory::readsTheFileInOnePiece()
{
    QVERIFY(pageSystem::readTotalMemory().toDouble() > 0);
    QCOMPARE(reads, 1);
    QVERIFY(pageSystem::readFreeMemory().toDouble() > 0);
    QCOMPARE(reads, 2);
}

void tst_Memory::readsAFileOfAnySize_data()
{
    QTest::addColumn<int>("size");

    for (const int size : {40, 8191, 8192, 8193, 16384, 100000})
        QTest::addRow("%d bytes", size) << size;
}

void tst_Memory::readsAFileOfAnySize()
{
    QFETCH(int, size);
    madeUpFile = QByteArray("MemTotal: 7000 kB\nMemFree: 2048 kB\n").rightJustified(size, '\n');
    QCOMPARE(pageSystem::readTotalMemory(), QStringLiteral("7"));
    place = 0;
    QCOMPARE(pageSystem::readFreeMemory(), QStringLiteral("2"));
}

void tst_Memory::forgetsALongerFile()
{
    madeUpFile = "MemTotal: 7000 kB\nMemFree: 2048 kB\nBuffers: 2048 kB\n";
    QCOMPARE(pageSystem::readFreeMemory(), QStringLiteral("4"));
    madeUpFile = "MemFree: 1024 kB\n";
    place = 0;
    QCOMPARE(pageSystem::readFreeMemory(), QStringLiteral("1"));
    place = 0;
    QCOMPARE(pageSystem::readTotalMemory(), QStringLiteral("Unknown"));
}

void tst_Memory::goesOnAfterAnInterruptedRead()
{
    nextError = EINTR;
    QVERIFY(pageSystem::readTotalMemory().toDouble() > 0);
    QCOMPARE(nextError, 0);
    nextError = EINTR;
    QVERIFY(pageSystem::readFreeMemory().toDouble() > 0);
}

void tst_Memory::isUnknownWhenReadingFails()
{
    nextError = EIO;
    QCOMPARE(pageSystem::readTotalMemory(), QStringLiteral("Unknown"));
    // "FileError" is for a file that can't be opened.
    nextError = EIO;
    QCOMPARE(pageSystem::readFreeMemory(), QStringLiteral("0"));
}

QTEST_APPLESS_MAIN(tst_Memory)
#include "tst_memory.moc"
