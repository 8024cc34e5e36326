#include "tests/bench/shownprogram.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <set>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace {

constexpr int limit = 60000;

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

pid_t startProgram(const QStringList &command, const QStringList &settings)
{
    std::vector<QByteArray> texts;
    for (const QString &word : command)
        texts.push_back(word.toLocal8Bit());
    std::vector<char *> words;
    for (QByteArray &text : texts)
        words.push_back(text.data());
    words.push_back(nullptr);

    std::vector<QByteArray> settingTexts;
    for (const QString &setting : settings)
        settingTexts.push_back(setting.toLocal8Bit());
    std::vector<char *> environment;
    for (QByteArray &setting : settingTexts)
        environment.push_back(setting.data());
    for (char **variable = environ; *variable; ++variable)
        environment.push_back(*variable);
    environment.push_back(nullptr);

    posix_spawn_file_actions_t actions = {};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    if (posix_spawnp(&process, words.front(), &actions, nullptr, words.data(), environment.data()) != 0)
        qFatal("%s can't be started", words.front());
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

} // namespace

ShownProgram::ShownProgram(const QStringList &command, const QStringList &environment)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        qFatal("there is no X server");
    const ReplyPointer<xcb_damage_query_version_reply_t> version(
        xcb_damage_query_version_reply(connection.get(), xcb_damage_query_version(connection.get(), 1, 1),
                                       nullptr),
        &std::free);
    if (!version)
        qFatal("the X server does not report what is painted");
    const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    xcb_change_window_attributes(connection.get(), root, XCB_CW_EVENT_MASK, &events);
    // An answer means that the server has done what was asked before.
    std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));

    QElapsedTimer time;
    time.start();
    m_process = startProgram(command, environment);
    waitForPainting(connection.get());
    m_milliseconds = static_cast<double>(time.nsecsElapsed()) / 1e6;
}

ShownProgram::~ShownProgram()
{
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
}

void ShownProgram::waitForPainting(xcb_connection_t *connection)
{
    const uint8_t damageEvent =
        xcb_get_extension_data(connection, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
    QElapsedTimer time;
    time.start();
    std::set<xcb_window_t> shown;
    while (time.elapsed() < limit) {
        const ReplyPointer<xcb_generic_event_t> event(xcb_poll_for_event(connection), &std::free);
        if (!event) {
            pollfd server = {xcb_get_file_descriptor(connection), POLLIN, 0};
            poll(&server, 1, 100);
            if (waitpid(m_process, nullptr, WNOHANG) == m_process)
                qFatal("the program ended before its window was painted; perhaps another copy of it runs");
            continue;
        }
        const int type = event->response_type & 0x7f;
        if (type == XCB_CREATE_NOTIFY) {
            const auto *created = reinterpret_cast<const xcb_create_notify_event_t *>(event.get());
            xcb_damage_create(connection, xcb_generate_id(connection), created->window,
                              XCB_DAMAGE_REPORT_LEVEL_BOUNDING_BOX);
            xcb_flush(connection);
        } else if (type == XCB_MAP_NOTIFY) {
            const auto *mapped = reinterpret_cast<const xcb_map_notify_event_t *>(event.get());
            if (!mapped->override_redirect)
                shown.insert(mapped->window);
        } else if (type == damageEvent) {
            const auto *damage = reinterpret_cast<const xcb_damage_notify_event_t *>(event.get());
            const int painted = damage->area.width * damage->area.height;
            const int whole = damage->geometry.width * damage->geometry.height;
            // Toolkits also have windows of a few pixels, which nobody sees.
            const bool isVisible = damage->geometry.width > 100 && damage->geometry.height > 100;
            if (shown.count(damage->drawable) > 0 && isVisible && painted == whole) {
                m_size = QSize(damage->geometry.width, damage->geometry.height);
                return;
            }
        }
    }
    kill(m_process, SIGKILL);
    qFatal("no painted window within a minute");
}

qint64 ShownProgram::proportionalSetSize() const
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(m_process));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the memory of the program can't be read");
    for (QByteArray line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        if (line.startsWith("Pss:"))
            return line.simplified().split(' ').at(1).toLongLong();
    }
    return 0;
}

double ShownProgram::processorMilliseconds() const
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(m_process));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the processor time of the program can't be read");
    // The name of the program, the second field, may have anything in it but ends with the last bracket.
    const QByteArray content = file.readAll();
    const QList<QByteArray> fields = content.mid(content.lastIndexOf(')') + 2).split(' ');
    if (fields.constFirst() == "Z")
        qFatal("the program has ended");
    qint64 ticks = 0;
    for (int field = 14; field <= 17; ++field)
        ticks += fields.value(field - 3).toLongLong();
    return static_cast<double>(ticks) * 1e3 / static_cast<double>(sysconf(_SC_CLK_TCK));
}
