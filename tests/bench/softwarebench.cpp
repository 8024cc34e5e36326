// How long one refresh of the "Software Information" tab holds the event loop, beside what it costs to run
// its three programs and read what they print. Run it on a device:
//     tests/device/on-device x86 build/release/tests/bench/softwarebench
#include "tests/device/softwarepage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <vector>

#include <cstdio>

using namespace SoftwarePage;

namespace {

constexpr int packages = 3000;
constexpr int runs = 20;

QByteArray runAndRead(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

void runThreePrograms()
{
    runAndRead(QStringLiteral("cat"), {packageNames});
    const QByteArray list = runAndRead(dpkgQuery, {QStringLiteral("-W")});
    runAndRead(ovpkg, {QStringLiteral("-l")});
    if (list.count('\n') != packages)
        qFatal("the query lists %d packages", int(list.count('\n')));
}

template <typename Function>
double milliseconds(const Function &function)
{
    QElapsedTimer time;
    time.start();
    function();
    return static_cast<double>(time.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

/// Measures both by turns, so that whatever else the machine does weighs on both.
void measure(const char *tools)
{
    pageSoftware page(nullptr);
    page.resize(700, 500);
    page.show();
    if (!QTest::qWaitForWindowExposed(&page))
        qFatal("the page is not shown");
    QTest::qWait(500);

    std::vector<double> programs;
    std::vector<double> ticks;
    std::vector<double> showing;
    for (int run = 0; run < runs; ++run) {
        programs.push_back(milliseconds(runThreePrograms));
        ticks.push_back(milliseconds([&] { tick(page); }));
        showing.push_back(milliseconds([] {
            QCoreApplication::processEvents();
            QCoreApplication::processEvents();
        }));
        if (modelOf(page, mainTitle)->rowCount() != packages)
            qFatal("the list is not full");
    }
    std::printf("%-20s programs %6.2f ms   tick %6.2f ms (ratio %.2f)   arranging and painting %6.2f ms\n",
                tools, median(programs), median(ticks), median(ticks) / median(programs), median(showing));
}

/// The machine's own query of a package database made up for this.
void useRealQuery()
{
    const QString folder = QStringLiteral("/var/lib/softwarebench");
    QByteArray status;
    for (int package = 0; package < packages; ++package) {
        const QByteArray number = QByteArray::number(package);
        status += "Package: package-number-" + number
            + "\nStatus: install ok installed\nPriority: optional\nSection: misc\nInstalled-Size: 100\n"
              "Maintainer: Nobody <nobody@localhost>\nArchitecture: all\nVersion: 1."
            + number + "-2+b1\nDescription: one of many\n A package made up to have many.\n\n";
    }
    Device::write(folder + QStringLiteral("/status"), status);
    Device::write(folder + QStringLiteral("/available"), "");
    qputenv("DPKG_ADMINDIR", QFile::encodeName(folder));
    Device::link(dpkgQuery, qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/dpkg-query"));
}

/// A query that does nothing but print.
void useStandInQuery()
{
    QByteArray list;
    for (int package = 0; package < packages; ++package) {
        const QByteArray number = QByteArray::number(package);
        list += "package-number-" + number + "\t1." + number + "-2+b1\n";
    }
    const QString file = qEnvironmentVariable("SYSINFO_RIG") + QStringLiteral("/packages");
    Device::write(file, list);
    Device::installTool(dpkgQuery, "exec \"$SYSINFO_REAL_BIN/cat\" \"$SYSINFO_RIG/packages\"");
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    Device::remove(packageNames);
    useStandInQuery();
    measure("stand-in query");
    if (QFile::exists(qEnvironmentVariable("SYSINFO_REAL_BIN") + QStringLiteral("/dpkg-query"))) {
        useRealQuery();
        measure("dpkg-query");
    }
    Device::restore();
}
