#include "app/fontsahead.h"

#include <QTest>

#include <atomic>
#include <chrono>
#include <clocale>
#include <thread>

#include <fontconfig/fontconfig.h>
#include <pthread.h>

namespace {

std::atomic<int> begun = 0;
std::atomic<bool> mayEnd = true;
std::atomic<int> ended = 0;
std::thread::id reader;
QByteArray localeOfReader;

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
FcBool __wrap_FcInit()
{
    reader = std::this_thread::get_id();
    localeOfReader = std::setlocale(LC_ALL, nullptr);
    ++begun;
    for (int milliseconds = 0; !mayEnd && milliseconds < 5000; ++milliseconds)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ++ended;
    return FcTrue;
}
// NOLINTEND(bugprone-reserved-identifier)
}

class tst_FontsAhead : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void areReadOnAnotherThread();
    void areReadWhenTheObjectIsGone();
    void areReadInTheLocaleOfTheEnvironment();
    void areLeftWhereQtChangesTheEnvironment();
    void areLeftWithoutAThread();
};

void tst_FontsAhead::init()
{
    begun = 0;
    mayEnd = true;
    ended = 0;
    reader = {};
    qunsetenv("DESKTOP_STARTUP_ID");
}

void tst_FontsAhead::areReadOnAnotherThread()
{
    mayEnd = false;
    const FontsAhead fonts;
    // The constructor has returned, with the reading still going on.
    QTRY_COMPARE(begun, 1);
    QCOMPARE(ended, 0);
    QVERIFY(reader != std::this_thread::get_id());
    mayEnd = true;
    QTRY_COMPARE(ended, 1);
    QCOMPARE(begun, 1);
}

void tst_FontsAhead::areReadWhenTheObjectIsGone()
{
    mayEnd = false;
    std::thread other;
    {
        const FontsAhead fonts;
        QTRY_COMPARE(begun, 1);
        other = std::thread([] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            mayEnd = true;
        });
    }
    const int endedThen = ended;
    other.join();
    QCOMPARE(endedThen, 1);
}

void tst_FontsAhead::areReadInTheLocaleOfTheEnvironment()
{
    QVERIFY(std::setlocale(LC_ALL, "C"));
    {
        const FontsAhead fonts;
    }
    QCOMPARE(localeOfReader, QByteArray("C.UTF-8"));
    QCOMPARE(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
}

void tst_FontsAhead::areLeftWhereQtChangesTheEnvironment()
{
    qputenv("DESKTOP_STARTUP_ID", "menu_TIME1");
    {
        const FontsAhead fonts;
    }
    QCOMPARE(begun, 0);
    QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), QByteArray("menu_TIME1"));
}

void tst_FontsAhead::areLeftWithoutAThread()
{
    // No address space holds the stack of a thread then.
    pthread_attr_t usual;
    pthread_attr_t huge;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    QCOMPARE(pthread_attr_init(&huge), 0);
    QCOMPARE(pthread_attr_setstacksize(&huge, size_t{1} << 62U), 0);
    QCOMPARE(pthread_setattr_default_np(&huge), 0);
    {
        const FontsAhead fonts;
    }
    QCOMPARE(pthread_setattr_default_np(&usual), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&usual);
    QCOMPARE(begun, 0);
}

QTEST_MAIN(tst_FontsAhead)
#include "tst_fontsahead.moc"
