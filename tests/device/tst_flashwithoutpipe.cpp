#include "pages/system/flash.h"

#include <QTest>

#include <cstdio>
#include <cstring>

extern "C" {
std::FILE *__real_popen(const char *command, const char *mode); // NOLINT(bugprone-reserved-identifier)

/// Stands in for popen() in this program: fails for the list of partitions alone.
std::FILE *__wrap_popen(const char *command, const char *mode) // NOLINT(bugprone-reserved-identifier)
{
    return std::strstr(command, "ls -l /dev/disk/by-label/") ? nullptr : __real_popen(command, mode);
}
}

class tst_FlashWithoutPipe : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsUsed();
};

void tst_FlashWithoutPipe::nothingIsUsed()
{
    const FlashFigures flash = readFlash();
    QCOMPARE(flash.used, QStringLiteral("0"));
    QCOMPARE(flash.free, QStringLiteral("8010"));
    QCOMPARE(flash.installed, QStringLiteral("8010"));
}

QTEST_APPLESS_MAIN(tst_FlashWithoutPipe)
#include "tst_flashwithoutpipe.moc"
