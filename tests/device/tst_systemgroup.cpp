#include "tests/device/systempage.h"
#include "tests/markingtranslator.h"

#include <QTest>

using namespace SystemPage;

class tst_SystemGroup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }
    void processorWithoutCpuinfo();
    void processorOfTheLastCore();
    void processorNamedUnknownByTheKernel();
    void cpuSpeedTwiceWithItsUnitAfterDmi();
    void cpuSpeedUnknownWithoutDmi();
    void cpuSpeedOfTheKernelNeedsNoDmi();
    void cpuSpeedOfBeforeThePlatformTool();
    void cpuCacheNeedsBothSizes();
    void cpuCacheOfTheKernelWins();
    void platformUnknown_data();
    void platformUnknown();
};

void tst_SystemGroup::processorWithoutCpuinfo()
{
    Device::makeUnreadable(cpuinfo);
    Device::remove(dmidecode);
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "Processor:"), QStringLiteral("Unknown"));
    QCOMPARE(shownValue(&page, "CPU Speed:"), QStringLiteral("Unknown MHz"));
    QCOMPARE(shownValue(&page, "CPU Cache:"), QStringLiteral("Unknown"));
}

void tst_SystemGroup::processorOfTheLastCore()
{
    Device::write(cpuinfo, "processor: 0\nmodel name: first\nprocessor: 1\nmodel name: last: more\n");
    QCOMPARE(shownByNewPage("Processor:"), QStringLiteral("last"));
}

void tst_SystemGroup::processorNamedUnknownByTheKernel()
{
    Device::write(cpuinfo, "model name: Unknown\nProcessor: ARM\n");
    QCOMPARE(shownByNewPage("Processor:"), QStringLiteral("ARM"));
}

void tst_SystemGroup::cpuSpeedTwiceWithItsUnitAfterDmi()
{
    Device::write(cpuinfo, "model name: A CPU\n");
    Device::installTool(dmidecode, "printf '\\tMax Speed: 1600 MHz\\n\\tMax Speed: 1700 MHz\\n'");
    QCOMPARE(shownByNewPage("CPU Speed:"), QStringLiteral("1600 MHz MHz"));
}

void tst_SystemGroup::cpuSpeedUnknownWithoutDmi()
{
    Device::write(cpuinfo, "model name: A CPU\n");
    Device::installTool(QStringLiteral("/usr/bin/sudo"), "echo 'sudo: a password is required' >&2; exit 1");
    QCOMPARE(shownByNewPage("CPU Speed:"), QStringLiteral("Unknown MHz"));
}

void tst_SystemGroup::cpuSpeedOfTheKernelNeedsNoDmi()
{
    Device::write(cpuinfo, "cpu MHz: 1596.000\n");
    Device::clearCalls();
    QCOMPARE(shownByNewPage("CPU Speed:"), QStringLiteral("1596.000 MHz"));
    QVERIFY(Device::shellCommands().filter(QStringLiteral("Max Speed")).isEmpty());
}

void tst_SystemGroup::cpuSpeedOfBeforeThePlatformTool()
{
    Device::write(cpuinfo, "cpu MHz: 800.000\n");
    // As the work of the tool may raise the processor's clock.
    Device::installTool(QStringLiteral("/usr/bin/vexa-hwsw-id"),
                        "echo 'cpu MHz: 1600.000' >/proc/cpuinfo; echo platform");
    const pageSystem page(nullptr);
    QCOMPARE(shownValue(&page, "Platform:"), QStringLiteral("platform"));
    QCOMPARE(shownValue(&page, "CPU Speed:"), QStringLiteral("800.000 MHz"));
}

void tst_SystemGroup::cpuCacheNeedsBothSizes()
{
    Device::write(cpuinfo, "I size: 32768\n");
    QCOMPARE(shownByNewPage("CPU Cache:"), QStringLiteral("Unknown"));
    Device::write(cpuinfo, "D size: 16384\n");
    QCOMPARE(shownByNewPage("CPU Cache:"), QStringLiteral("Unknown"));
    Device::write(cpuinfo, "I size: 32768\nD size: 16384\n");
    QCOMPARE(shownByNewPage("CPU Cache:"), QStringLiteral("32768/16384"));
}

void tst_SystemGroup::cpuCacheOfTheKernelWins()
{
    Device::write(cpuinfo, "cache size: 512 KB\nI size: 32768\nD size: 16384\n");
    QCOMPARE(shownByNewPage("CPU Cache:"), QStringLiteral("512 KB"));
}

void tst_SystemGroup::platformUnknown_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("absent") << QByteArray();
    QTest::newRow("silent") << QByteArray("true");
    QTest::newRow("blanks") << QByteArray("echo '  '");
    QTest::newRow("standard error only") << QByteArray("echo TC50 >&2");
}

void tst_SystemGroup::platformUnknown()
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

QTEST_MAIN(tst_SystemGroup)
#include "tst_systemgroup.moc"
