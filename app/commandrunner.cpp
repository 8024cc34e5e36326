#include "app/commandrunner.h"

#include <cstdlib>

QString runCommand(const QString &command)
{
    QString result;
    char *line = nullptr;
    size_t capacity = 0;
    std::FILE *pipe = popen(command.toLatin1().constData(), "r");
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
