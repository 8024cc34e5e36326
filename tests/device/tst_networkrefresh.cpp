#include "pages/network/pagenetwork.h"
#include "tests/device/device.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimerEvent>

#include <unistd.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SYSINFO_ADDRESS_SANITIZER
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#define SYSINFO_ADDRESS_SANITIZER
#endif

namespace {

QStringList openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
}

/// The process numbers of this process's children, ended but forgotten ones included.
QByteArray childProcesses()
{
    QFile file(QStringLiteral("/proc/self/task/%1/children").arg(getpid()));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("this kernel does not list the children of a process");
    return file.readAll();
}

qint64 residentKilobytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().split(' ').at(1).toLongLong() * sysconf(_SC_PAGESIZE) / 1024;
}

void runTicks(pageNetwork &page, int count)
{
    const int timer = QAbstractEventDispatcher::instance()->registeredTimers(&page).constFirst().timerId;
    for (int i = 0; i < count; ++i) {
        QTimerEvent event(timer);
        QCoreApplication::sendEvent(&page, &event);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

} // namespace

class tst_NetworkRefresh : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }

    void thousandTicksLeaveNothingBehind();
};

void tst_NetworkRefresh::thousandTicksLeaveNothingBehind()
{
    // Recording every call would take longer than the calls.
    Device::link(QStringLiteral("/usr/bin/sh"),
                 qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/sh"));
    Device::link(QStringLiteral("/usr/sbin/route"),
                 qEnvironmentVariable("SYSINFO_REAL_SBIN") + QStringLiteral("/route"));
    pageNetwork page(nullptr);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    runTicks(page, 100);

    const QStringList descriptors = openDescriptors();
    const QByteArray processes = childProcesses();
    const qint64 memory = residentKilobytes();
    runTicks(page, 1000);
    // Threads of Qt that have nothing left to do end after a while and close theirs.
    const QStringList descriptorsAfterwards = openDescriptors();
    for (const QString &descriptor : descriptorsAfterwards)
        QVERIFY2(descriptors.contains(descriptor), qPrintable(descriptor));
    QCOMPARE(childProcesses(), processes);
    const qint64 growth = residentKilobytes() - memory;
#ifdef SYSINFO_ADDRESS_SANITIZER
    // The sanitizer keeps what was freed, so the memory grows; it finds leaks by itself.
    Q_UNUSED(growth)
#else
    QVERIFY2(growth <= 512, qPrintable(QStringLiteral("%1 kB more").arg(growth)));
#endif
}

QTEST_MAIN(tst_NetworkRefresh)
#include "tst_networkrefresh.moc"
