#include "framework/vapplication.h"

#include "framework/closerequestfilter.h"
#include "framework/fontsahead.h"
#include "framework/instancelock.h"

#include <QByteArray>
#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <utility>

#include <unistd.h>

namespace {

/// Qt looks into the run-time directory while it starts and complains of one that is missing or unsafe. A
/// second copy, which does the same before it can end, has to end without a message.
int &withoutMessages(int &argc)
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false\ndefault.critical=false"));
    return argc;
}

/// The program's file name. In bytes, as before there is an application object Qt 5 would settle on the
/// wrong encoding for all texts to come.
QByteArray programName()
{
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const QByteArray file(path.data(), static_cast<int>(std::max<ssize_t>(length, 0)));
    return file.mid(file.lastIndexOf('/') + 1);
}

/// None for a second copy: it shows nothing, and fontconfig may have messages or write its cache.
std::unique_ptr<FontsAhead> readFontsAhead()
{
    return InstanceLock::isHeld(programName()) ? nullptr : std::make_unique<FontsAhead>();
}

} // namespace

VApplication::VApplication(int &argc, char **argv, bool, bool, bool)
    : VApplication(argc, argv, readFontsAhead())
{
}

VApplication::VApplication(int &argc, char **argv, std::unique_ptr<FontsAhead> fontsAhead)
    : QApplication(withoutMessages(argc), argv)
    , m_fontsAhead(std::move(fontsAhead))
{
    QLoggingCategory::setFilterRules({});
    if (platformName() == QLatin1String("xcb")) {
        m_closeRequests = std::make_unique<CloseRequestFilter>();
        installNativeEventFilter(m_closeRequests.get());
    }
}

VApplication::~VApplication() = default;

void VApplication::exitIfRunning()
{
    // A start that does not wait would read the same a second time for its first font.
    m_fontsAhead.reset();
    m_instanceLock = std::make_unique<InstanceLock>(programName());
    if (m_instanceLock->isHeldElsewhere())
        std::exit(EXIT_SUCCESS);
}
