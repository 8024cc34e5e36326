#include "tests/unit/fontreading.h"

#include <QCoreApplication>

#include <chrono>

#include <fontconfig/fontconfig.h>

namespace FontReading {

std::atomic<int> begun = 0;
std::atomic<int> ended = 0;
std::atomic<bool> mayEnd = true;
std::thread::id thread;
int localesSet = 0;
bool hadApplication = false;

namespace {

std::atomic<int> locales = 0;

} // namespace

std::thread endSoon()
{
    return std::thread([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        mayEnd = true;
    });
}

void reset()
{
    begun = 0;
    ended = 0;
    mayEnd = true;
    thread = {};
    locales = 0;
    localesSet = 0;
    hadApplication = false;
}

} // namespace FontReading

using namespace FontReading;

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
char *__real_setlocale(int category, const char *locale);

char *__wrap_setlocale(int category, const char *locale)
{
    if (locale) {
        hadApplication = QCoreApplication::instance();
        // A reading that does not wait for it begins meanwhile.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++locales;
    }
    return __real_setlocale(category, locale);
}

FcBool __wrap_FcInit()
{
    localesSet = locales;
    thread = std::this_thread::get_id();
    ++begun;
    for (int milliseconds = 0; !mayEnd && milliseconds < 5000; ++milliseconds)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ++ended;
    return FcTrue;
}
// NOLINTEND(bugprone-reserved-identifier)
}
