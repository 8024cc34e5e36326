#include "pages/system/biosandos.h"

#include <QBuffer>
#include <QTest>

#include <sys/utsname.h>

class tst_BiosAndOs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void buildId_data();
    void buildId();
    void kernelVersionOfTheLiveMachine();
};

void tst_BiosAndOs::buildId_data()
{
    QTest::addColumn<QByteArray>("imageId");
    QTest::addColumn<QString>("build");

    QTest::newRow("plain") << QByteArray("TC50-2.4.1\n") << "TC50-2.4.1";
    QTest::newRow("first line only") << QByteArray(" a b \nsecond\n") << "a b";
    QTest::newRow("no newline") << QByteArray("TC50") << "TC50";
    QTest::newRow("empty file") << QByteArray() << QString();
    QTest::newRow("first line of blanks") << QByteArray("   \nTC50\n") << "";
    QTest::newRow("first line without anything") << QByteArray("\nTC50\n") << "";
    QTest::newRow("zero byte") << QByteArray("TC\0 50\n", 7) << "TC";
    QTest::newRow("Latin-1") << QByteArray("TC\xb5\n") << QString::fromUtf8("TC\u00b5");
    QTest::newRow("first 1023 bytes") << QByteArray(2000, 'a') << QString(1023, QLatin1Char('a'));
}

void tst_BiosAndOs::buildId()
{
    QFETCH(QByteArray, imageId);
    QFETCH(QString, build);
    QBuffer buffer(&imageId);
    buffer.open(QIODevice::ReadOnly);
    const QString result = ::buildId(buffer);
    QCOMPARE(result, build);
    QCOMPARE(result.isNull(), build.isNull());
}

void tst_BiosAndOs::kernelVersionOfTheLiveMachine()
{
    utsname system = {};
    QCOMPARE(uname(&system), 0);
    QCOMPARE(readKernelVersion(), QString::fromLatin1(system.release) + QLatin1Char('\n'));
}

QTEST_GUILESS_MAIN(tst_BiosAndOs)
#include "tst_biosandos.moc"
