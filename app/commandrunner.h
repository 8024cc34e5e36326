#pragma once

#include <QString>

#include <cstdio>

/// Runs a command line through /bin/sh and waits for it, doing a piece of waiting work meanwhile unless it
/// was started ahead. Returns the first line of its standard output, Latin-1 and trimmed; empty when it
/// printed nothing or could not be run.
QString runCommand(const QString &command);

/// A command line that works already while the one who is going to ask for it gets ready. The first
/// runCommand() with the same command line takes its answer; nobody runs another command before. Unasked for,
/// it is waited for in the end. There is one such object at a time.
class CommandAhead {
public:
    explicit CommandAhead(const QString &command);
    ~CommandAhead();
    CommandAhead(const CommandAhead &) = delete;
    CommandAhead &operator=(const CommandAhead &) = delete;

    /// Gives away the pipe of the command line that was started ahead; null when that is another one or none.
    static std::FILE *takePipe(const QString &command);

private:
    QString m_command;
    std::FILE *m_pipe;
    static CommandAhead *s_started;
};

/// Closes a pipe from popen() and waits for its command; a null pipe, from a failed popen(), is let be.
void closeCommandPipe(std::FILE *pipe);
