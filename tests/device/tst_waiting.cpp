#include "pages/system/biosandos.h"
#include "tests/device/device.h"

#include <QElapsedTimer>
#include <QTest>

/// What takes as long as the program's own limits.
class tst_Waiting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }
    void kernelVersionIsGivenUpAfterThirtySeconds();
};

void tst_Waiting::kernelVersionIsGivenUpAfterThirtySeconds()
{
    Device::installTool(QStringLiteral("/usr/bin/uname"), "echo 2.6.35; exec sleep 600");
    QElapsedTimer time;
    time.start();
    QVERIFY(readKernelVersion().isNull());
    QVERIFY(time.elapsed() >= 30000);
    QVERIFY(time.elapsed() < 32000);
}

QTEST_GUILESS_MAIN(tst_Waiting)
#include "tst_waiting.moc"
