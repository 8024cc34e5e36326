// A network tool for tests: does the steps that its only argument names, separated by blanks.
//
//   out:TEXT          writes to standard output at once; \n, \s (a blank) and \xHH are escapes
//   err:TEXT          the same to standard error
//   flood:LINES:WIDTH writes LINES lines of WIDTH bytes, newline included, each starting with its number
//   pause             waits for SIGUSR1
//   ignore-term       ignores SIGTERM from now on
//   on-term:N:TEXT    from now on a SIGTERM writes TEXT and exits with N
//   echo-term         from now on each SIGTERM writes "asked" and a line feed, and nothing else
//   hold              leaves a child behind that keeps the output open; writes the child's process id
//   stdin             tells what standard input is and whether it has anything to read
//   cwd, env:NAME     tells the working directory, a variable of the environment
//   raise:N           dies of the signal N
//   exit:N            exits with N; 0 after the last step

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string closingText;
int closingCode = 0;

void writeAll(int channel, const std::string &text)
{
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = write(channel, text.data() + written, text.size() - written);
        if (count < 0)
            std::_Exit(125);
        written += static_cast<size_t>(count);
    }
}

void closeDown(int /*signal*/)
{
    writeAll(STDOUT_FILENO, closingText);
    std::_Exit(closingCode);
}

void answerRequest(int /*signal*/)
{
    writeAll(STDOUT_FILENO, "asked\n");
}

std::string unescaped(const std::string &text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
        } else if (text[++i] == 'n') {
            result += '\n';
        } else if (text[i] == 's') {
            result += ' ';
        } else if (text[i] == 'x') {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            std::_Exit(126);
        }
    }
    return result;
}

void flood(const std::string &value)
{
    const size_t colon = value.find(':');
    const int lines = std::stoi(value.substr(0, colon));
    const size_t width = std::stoul(value.substr(colon + 1));
    std::string all;
    for (int i = 0; i < lines; ++i) {
        std::string line = std::to_string(i) + ' ';
        line.resize(width - 1, 'x');
        all += line + '\n';
    }
    writeAll(STDOUT_FILENO, all);
}

void pauseUntilSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR1);
    int signal = 0;
    sigwait(&signals, &signal);
}

void hold()
{
    const pid_t child = fork();
    if (child == 0) {
        sleep(60);
        std::_Exit(0);
    }
    writeAll(STDOUT_FILENO, std::to_string(child) + '\n');
}

void tellStandardInput()
{
    struct stat status = {};
    fstat(STDIN_FILENO, &status);
    pollfd input{STDIN_FILENO, POLLIN, 0};
    const bool silent = poll(&input, 1, 50) == 0;
    writeAll(STDOUT_FILENO, S_ISFIFO(status.st_mode) ? "a pipe, " : "no pipe, ");
    writeAll(STDOUT_FILENO, silent ? "open and empty\n" : "readable or closed\n");
}

void doStep(const std::string &name, const std::string &value)
{
    if (name == "out") {
        writeAll(STDOUT_FILENO, unescaped(value));
    } else if (name == "err") {
        writeAll(STDERR_FILENO, unescaped(value));
    } else if (name == "flood") {
        flood(value);
    } else if (name == "pause") {
        pauseUntilSignal();
    } else if (name == "ignore-term") {
        std::signal(SIGTERM, SIG_IGN);
    } else if (name == "on-term") {
        closingCode = std::stoi(value);
        closingText = unescaped(value.substr(value.find(':') + 1));
        std::signal(SIGTERM, closeDown);
    } else if (name == "echo-term") {
        std::signal(SIGTERM, answerRequest);
    } else if (name == "hold") {
        hold();
    } else if (name == "stdin") {
        tellStandardInput();
    } else if (name == "cwd") {
        char folder[4096] = {};
        writeAll(STDOUT_FILENO, getcwd(folder, sizeof(folder)) ? folder : "nowhere");
    } else if (name == "env") {
        const char *variable = std::getenv(value.c_str());
        writeAll(STDOUT_FILENO, variable ? variable : "not set");
    } else if (name == "raise") {
        std::signal(std::stoi(value), SIG_DFL);
        raise(std::stoi(value));
    } else if (name == "exit") {
        std::_Exit(std::stoi(value));
    } else {
        std::fprintf(stderr, "steptool: no step is called '%s'\n", name.c_str());
        std::_Exit(127);
    }
}

} // namespace

int main(int argc, char **argv)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR1);
    sigprocmask(SIG_BLOCK, &signals, nullptr);

    std::istringstream steps(argc > 1 ? argv[1] : "");
    std::string step;
    while (steps >> step) {
        const size_t colon = step.find(':');
        doStep(step.substr(0, colon), colon == std::string::npos ? "" : step.substr(colon + 1));
    }
    return EXIT_SUCCESS;
}
