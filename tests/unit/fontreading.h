#pragma once

#include <atomic>
#include <thread>

/// What a stand-in for fontconfig's FcInit() was asked for. A test that links it is linked with
/// --wrap=FcInit and --wrap=setlocale.
namespace FontReading {

extern std::atomic<int> begun;
extern std::atomic<int> ended;
/// While it is false, and for at most five seconds, the reading goes on.
extern std::atomic<bool> mayEnd;
/// Of the last reading.
extern std::thread::id thread;
/// How often the locale had been set when the last reading began.
extern int localesSet;
/// Whether there was an application object already when the locale was last set.
extern bool hadApplication;

/// Lets the reading end in 50 ms.
std::thread endSoon();

void reset();

} // namespace FontReading
