#include "framework/fontsahead.h"

#include <QtGlobal>

#include <fontconfig/fontconfig.h>

#include <clocale>
#include <system_error>

#include <malloc.h>

FontsAhead::FontsAhead()
{
    // Qt takes it out of the environment when it has found a display.
    if (qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"))
        return;
    std::setlocale(LC_ALL, "");
    // All threads share the main one's heap. What fontconfig frees in a heap of its own, 0.1 MiB, nobody
    // would use again.
    mallopt(M_ARENA_MAX, 1);
    try {
        m_reader = std::thread(FcInit);
    } catch (const std::system_error &) {
        // There are too many threads already.
    }
}

FontsAhead::~FontsAhead()
{
    if (m_reader.joinable())
        m_reader.join();
}
