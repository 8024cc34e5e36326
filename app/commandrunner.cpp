#include "app/commandrunner.h"

#include "app/waitingwork.h"

#include <cstdlib>
#include <utility>

namespace {

std::FILE *openCommandPipe(const QString &command)
{
    return popen(command.toLatin1().constData(), "r");
}

} // namespace

CommandAhead *CommandAhead::s_started = nullptr;

CommandAhead::CommandAhead(const QString &command)
    : m_command(command)
    , m_pipe(openCommandPipe(command))
{
    Q_ASSERT(!s_started);
    s_started = this;
}

CommandAhead::~CommandAhead()
{
    s_started = nullptr;
    closeCommandPipe(m_pipe);
}

std::FILE *CommandAhead::takePipe(const QString &command)
{
    return s_started && s_started->m_command == command ? std::exchange(s_started->m_pipe, nullptr) : nullptr;
}

QString runCommand(const QString &command)
{
    QString result;
    char *line = nullptr;
    size_t capacity = 0;
    std::FILE *pipe = CommandAhead::takePipe(command);
    if (!pipe) {
        pipe = openCommandPipe(command);
        // Just one piece, as most commands end sooner than a second one would. One that was started ahead has
        // had its time.
        WaitingWork::doNext();
    }
    if (pipe) {
        // A line that was read ends the loop; only a read that failed is tried again.
        do {
            clearerr(pipe);
            if (getdelim(&line, &capacity, '\n', pipe) > 0)
                result += QString::fromLatin1(line).trimmed();
        } while (ferror(pipe));
    }
    std::free(line);
    closeCommandPipe(pipe);
    return result;
}

void closeCommandPipe(std::FILE *pipe)
{
    // The C library ends the process when pclose() is given a null pipe.
    if (pipe)
        pclose(pipe);
}
