#include "pages/system/system.h"

#include <QBuffer>
#include <QFile>
#include <QTest>

namespace {

CpuInfo parsed(QByteArray text)
{
    const QString none = QStringLiteral("none");
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return readCpuInfo(buffer, {none, none, none, none, {}, {}});
}

} // namespace

class tst_CpuInfo : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void modelName_data();
    void modelName();
    void eachKeyHasItsValue();
    void anX86CoreLineCountsAsProcessor();
    void aLineMayHitSeveralKeys();
    void anArmKernelHasNoModelName();
    void readsTheLiveFile();
};

void tst_CpuInfo::modelName_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("modelName");

    QTest::newRow("plain") << QByteArray("model name\t: A CPU\n") << "A CPU";
    QTest::newRow("empty file") << QByteArray() << "none";
    QTest::newRow("other keys only") << QByteArray("model\t: 28\nstepping\t: 2\n") << "none";
    QTest::newRow("last line wins") << QByteArray("model name: first\nmodel name: second\n") << "second";
    QTest::newRow("any case") << QByteArray("MODEL Name: A CPU\n") << "A CPU";
    QTest::newRow("anywhere in the line") << QByteArray("the model name of it: A CPU\n") << "A CPU";
    QTest::newRow("after the colon too") << QByteArray("Hardware: a model name\n") << "a model name";
    QTest::newRow("up to the second colon") << QByteArray("model name: a: b: c\n") << "a";
    QTest::newRow("no colon keeps the value")
        << QByteArray("model name: first\nmodel name second\n") << "first";
    QTest::newRow("no colon at all") << QByteArray("model name\n") << "none";
    QTest::newRow("empty value is a value") << QByteArray("model name: first\nmodel name:\n") << "";
    QTest::newRow("last line without newline") << QByteArray("model name: A CPU") << "A CPU";
    QTest::newRow("inner blanks stay") << QByteArray("model name:  A  CPU \t\n") << "A  CPU";
    QTest::newRow("zero byte ends the line") << QByteArray("model name: A\0B\n", 15) << "A";
    QTest::newRow("zero byte before the key") << QByteArray("\0model name: A\n", 15) << "none";
    QTest::newRow("Latin-1") << QByteArray("model name: CPU\xae\n") << QString::fromUtf8("CPU\u00ae");
    // The key, the colon and the blank are 12 bytes of the first piece of 1023.
    QTest::newRow("long line in pieces") << QByteArray("model name: ") + QByteArray(1500, 'a') + '\n'
                                         << QString(1011, QLatin1Char('a'));
    QTest::newRow("key in the second piece") << QByteArray(1023, 'a') + "model name: B\n"
                                             << "B";
    QTest::newRow("key across two pieces") << QByteArray(1018, 'a') + "model name: B\n"
                                           << "none";
}

void tst_CpuInfo::modelName()
{
    QFETCH(QByteArray, text);
    QTEST(parsed(text).modelName, "modelName");
}

void tst_CpuInfo::eachKeyHasItsValue()
{
    const CpuInfo info =
        parsed("model name: m\nProcessor: p\ncpu MHz: 1\ncache size: 2\nI size: 3\nD size: 4\n");
    QCOMPARE(info.modelName, QStringLiteral("m"));
    QCOMPARE(info.processor, QStringLiteral("p"));
    QCOMPARE(info.mhz, QStringLiteral("1"));
    QCOMPARE(info.cacheSize, QStringLiteral("2"));
    QCOMPARE(info.instructionCacheSize, QStringLiteral("3"));
    QCOMPARE(info.dataCacheSize, QStringLiteral("4"));
}

void tst_CpuInfo::anX86CoreLineCountsAsProcessor()
{
    QCOMPARE(parsed("processor\t: 0\nmodel name\t: A CPU\nprocessor\t: 1\n").processor, QStringLiteral("1"));
}

void tst_CpuInfo::aLineMayHitSeveralKeys()
{
    const CpuInfo info = parsed("model name: some Processor with cache size\n");
    QCOMPARE(info.modelName, QStringLiteral("some Processor with cache size"));
    QCOMPARE(info.processor, info.modelName);
    QCOMPARE(info.cacheSize, info.modelName);
    QCOMPARE(info.mhz, QStringLiteral("none"));
}

void tst_CpuInfo::anArmKernelHasNoModelName()
{
    const CpuInfo info =
        parsed("Processor\t: ARM926EJ-S rev 5 (v5l)\nI size\t\t: 32768\nD size\t\t: 16384\n");
    QCOMPARE(info.modelName, QStringLiteral("none"));
    QCOMPARE(info.processor, QStringLiteral("ARM926EJ-S rev 5 (v5l)"));
    QCOMPARE(info.mhz, QStringLiteral("none"));
    QCOMPARE(info.cacheSize, QStringLiteral("none"));
    QCOMPARE(info.instructionCacheSize, QStringLiteral("32768"));
    QCOMPARE(info.dataCacheSize, QStringLiteral("16384"));
}

void tst_CpuInfo::readsTheLiveFile()
{
    QFile cpuinfo(QStringLiteral("/proc/cpuinfo"));
    QVERIFY(cpuinfo.open(QIODevice::ReadOnly));
    QCOMPARE(cpuinfo.size(), 0);
    const CpuInfo info = readCpuInfo(cpuinfo, {});
    // Every kernel numbers or names the processor; an x86 kernel names the model too.
    QVERIFY(!info.processor.isEmpty());
#ifdef Q_PROCESSOR_X86
    QVERIFY(!info.modelName.isEmpty());
#endif
}

QTEST_APPLESS_MAIN(tst_CpuInfo)
#include "tst_cpuinfo.moc"
