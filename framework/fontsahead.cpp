#include "framework/fontsahead.h"

#include <QtGlobal>

#include <fontconfig/fontconfig.h>

#include <clocale>
#include <system_error>

FontsAhead::FontsAhead()
{
    // Qt takes it out of the environment when it has found a display.
    if (qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"))
        return;
    std::setlocale(LC_ALL, "");
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
