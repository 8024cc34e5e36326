#include "app/nameservers.h"
#include "tests/device/device.h"

#include <QTest>

class tst_NameServers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }
    void readNameServers_data();
    void readNameServers();
    void nothingWithoutTheFile();
    void runsOneCommand();
};

void tst_NameServers::readNameServers_data()
{
    QTest::addColumn<QByteArray>("resolvConf");
    QTest::addColumn<QString>("addresses");

    QTest::newRow("one") << QByteArray("nameserver 1.1.1.1\n") << "1.1.1.1";
    QTest::newRow("two in file order")
        << QByteArray("nameserver 10.0.0.2\nnameserver 10.0.0.1\n") << "10.0.0.2 10.0.0.1";
    QTest::newRow("commented-out lines count")
        << QByteArray("nameserver 1.1.1.1\n#nameserver 2.2.2.2\n") << "1.1.1.1 2.2.2.2";
    QTest::newRow("anywhere in the line") << QByteArray("options my-nameservers\n") << "my-nameservers";
    QTest::newRow("twice the same") << QByteArray("nameserver 1.1.1.1\nnameserver 1.1.1.1\n")
                                    << "1.1.1.1 1.1.1.1";
    QTest::newRow("tabs") << QByteArray("nameserver\t1.1.1.1\tcomment\n") << "1.1.1.1";
    QTest::newRow("no address in between")
        << QByteArray("nameserver 1.1.1.1\nnameserver\nnameserver 2.2.2.2\n") << "1.1.1.1  2.2.2.2";
    QTest::newRow("no such line") << QByteArray("search corp.example\n") << "";
    QTest::newRow("case matters") << QByteArray("NAMESERVER 1.1.1.1\n") << "";
    QTest::newRow("no newline") << QByteArray("nameserver 1.1.1.1") << "1.1.1.1";
    QTest::newRow("empty file") << QByteArray() << "";
}

void tst_NameServers::readNameServers()
{
    QFETCH(QByteArray, resolvConf);
    Device::write(QStringLiteral("/etc/resolv.conf"), resolvConf);
    QTEST(::readNameServers(), "addresses");
}

void tst_NameServers::nothingWithoutTheFile()
{
    Device::remove(QStringLiteral("/etc/resolv.conf"));
    QCOMPARE(::readNameServers(), QString());
}

void tst_NameServers::runsOneCommand()
{
    Device::clearCalls();
    ::readNameServers();
    QCOMPARE(Device::shellCommands(),
             QStringList{QStringLiteral("awk '/nameserver/ { printf \"%s \", $2 }' /etc/resolv.conf")});
}

QTEST_GUILESS_MAIN(tst_NameServers)
#include "tst_nameservers.moc"
