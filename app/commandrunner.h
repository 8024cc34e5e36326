#pragma once

#include <QString>

#include <cstdio>

/// Runs a command line through /bin/sh and waits for it. Returns the first line of its standard
/// output, Latin-1 and trimmed; empty when it printed nothing or could not be run.
QString runCommand(const QString &command);

/// Closes a pipe from popen() and waits for its command; a null pipe, from a failed popen(), is let be.
void closeCommandPipe(std::FILE *pipe);
