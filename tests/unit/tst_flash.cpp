#include "pages/system/flash.h"
#include "pages/system/megabytes.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTest>

class tst_Flash : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void diskOfPartition_data();
    void diskOfPartition();
    void installedFlash_data();
    void installedFlash();
    void installedFlashOfTheLiveMachine();
    void usedMegabytes_data();
    void usedMegabytes();
    void megabytes_data();
    void megabytes();
};

void tst_Flash::diskOfPartition_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("disk");

    QTest::newRow("sda1") << "../../sda1"
                          << "sda";
    QTest::newRow("sda12 loses one character") << "../../sda12"
                                               << "sda1";
    QTest::newRow("mmcblk0p1 loses one character") << "../../mmcblk0p1"
                                                   << "mmcblk0p";
    QTest::newRow("nvme0n1p2 loses one character") << "../../nvme0n1p2"
                                                   << "nvme0n1p";
    QTest::newRow("no folder") << "sdb2"
                               << "sdb";
    QTest::newRow("blanks around the name") << "../../ sda1 "
                                            << "sda";
    QTest::newRow("one character") << "../../a"
                                   << "";
    QTest::newRow("folder only") << "../../"
                                 << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_Flash::diskOfPartition()
{
    QFETCH(QString, target);
    QTEST(::diskOfPartition(target), "disk");
}

void tst_Flash::installedFlash_data()
{
    QTest::addColumn<QByteArray>("partitions");
    QTest::addColumn<QString>("disk");
    QTest::addColumn<QString>("megabytes");

    const QByteArray header = "major minor  #blocks  name\n\n";
    const QByteArray sda = "   8        0    7822336 sda\n   8        1    7000000 sda1\n";
    QTest::newRow("decimal megabytes, cut off") << header + sda << "sda"
                                                << "8010";
    QTest::newRow("a partition is a disk too") << header + sda << "sda1"
                                               << "7168";
    QTest::newRow("not listed") << header + sda << "sdb" << QString();
    QTest::newRow("part of a name") << header + sda << "da" << QString();
    QTest::newRow("upper case") << header + sda << "SDA" << QString();
    QTest::newRow("empty file") << QByteArray() << "sda" << QString();
    QTest::newRow("last line without newline") << header + "   8        0    7822336 sda"
                                               << "sda" << QString();
    QTest::newRow("first line wins") << QByteArray("8 0 1000000 sda\n8 0 2000000 sda\n") << "sda"
                                     << "1024";
    QTest::newRow("blanks after the name") << QByteArray("8 0 1000000 sda \n") << "sda" << QString();
    QTest::newRow("two blanks before the name") << QByteArray("8 0 1000000  sda\n") << "sda"
                                                << "0";
    QTest::newRow("no number") << QByteArray("8 0 many sda\n") << "sda"
                               << "0";
    QTest::newRow("name alone on its line") << QByteArray("sda\n8 0 1000000 sda\n") << "sda"
                                            << "1024";
    QTest::newRow("no disk, blank line") << header + sda << "" << QString();
    QTest::newRow("long line in pieces") << QByteArray(1023, 'x') + "8 0 1000000 sda\n"
                                         << "sda"
                                         << "1024";
    // 999424.0 has six digits before its point.
    QTest::newRow("just under 1 TB") << QByteArray("8 0 976000000 sda\n") << "sda"
                                     << "999424";
    // 1000204.9 is 1.0002e+06 with six digits.
    QTest::newRow("1 TB") << QByteArray("8 0 976762584 sda\n") << "sda"
                          << "1e+06";
    // 2000398.9 is 2.0004e+06 with six digits.
    QTest::newRow("2 TB") << QByteArray("8 0 1953514584 sda\n") << "sda"
                          << "2e+06";
    // In single precision 195312987 is 195312992; in double precision this would be 200000.
    QTest::newRow("single precision") << QByteArray("8 0 195312987 sda\n") << "sda"
                                      << "200001";
}

void tst_Flash::installedFlash()
{
    QFETCH(QByteArray, partitions);
    QFETCH(QString, disk);
    QFETCH(QString, megabytes);
    QBuffer buffer(&partitions);
    buffer.open(QIODevice::ReadOnly);
    const QString installed = ::installedFlash(buffer, disk);
    QCOMPARE(installed, megabytes);
    QCOMPARE(installed.isNull(), megabytes.isNull());
}

void tst_Flash::installedFlashOfTheLiveMachine()
{
    const QStringList disks = QDir(QStringLiteral("/sys/block")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    int compared = 0;
    for (const QString &disk : disks) {
        QFile size(QStringLiteral("/sys/block/%1/size").arg(disk));
        if (!size.open(QIODevice::ReadOnly))
            continue;
        const double megabytes = size.readAll().trimmed().toDouble() * 512e-6;
        QFile partitions(QStringLiteral("/proc/partitions"));
        QVERIFY(partitions.open(QIODevice::ReadOnly));
        QCOMPARE(partitions.size(), 0);
        const QString installed = ::installedFlash(partitions, disk);
        // The kernel does not list disks without a medium.
        if (installed.isNull())
            continue;
        ++compared;
        QVERIFY2(qAbs(installed.toDouble() - megabytes) <= qMax(1.0, megabytes * 0.1), qPrintable(disk));
    }
    if (compared == 0)
        QSKIP("this machine lists no disk");
}

void tst_Flash::usedMegabytes_data()
{
    QTest::addColumn<QString>("figure");
    QTest::addColumn<float>("megabytes");

    QTest::newRow("K") << "12K" << 0.01171875F;
    QTest::newRow("M") << "300M" << 300.0F;
    QTest::newRow("G") << "1.5G" << 1536.0F;
    QTest::newRow("T is no unit here") << "1.5T" << 1.5F;
    QTest::newRow("bare 0") << "0" << 0.0F;
    QTest::newRow("the last digit is taken for a unit") << "512" << 51.0F;
    QTest::newRow("lower case g") << "2g" << 2.0F;
    QTest::newRow("lower case k") << "2k" << 2.0F;
    QTest::newRow("unit alone") << "G" << 0.0F;
    QTest::newRow("no number") << "Used" << 0.0F;
    QTest::newRow("empty") << "" << 0.0F;
    QTest::newRow("decimal comma") << "1,5G" << 0.0F;
}

void tst_Flash::usedMegabytes()
{
    QFETCH(QString, figure);
    QTEST(::usedMegabytes(figure), "megabytes");
}

void tst_Flash::megabytes_data()
{
    QTest::addColumn<float>("figure");
    QTest::addColumn<QString>("text");

    QTest::newRow("fraction kept") << 1836.01171875F << "1836.01";
    QTest::newRow("nothing counted") << 0.0F << "0";
    QTest::newRow("whole") << 8010.0F << "8010";
    QTest::newRow("negative") << -12.5F << "-12.5";
    QTest::newRow("small") << 0.01171875F << "0.0117188";
    QTest::newRow("more than six digits") << 1000000.0F << "1e+06";
}

void tst_Flash::megabytes()
{
    QFETCH(float, figure);
    QTEST(::megabytes(figure), "text");
}

QTEST_APPLESS_MAIN(tst_Flash)
#include "tst_flash.moc"
