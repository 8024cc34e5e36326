/* Preloaded into a program, writes down what it does to learn its facts, in order and in the form that
 * `dowork` takes: the shell commands and programs that it runs and the files that it reads. The file to write
 * to is named by BENCH_WORK. What libraries read for themselves (fonts, locales, settings) is left out, and
 * so is what the commands do in turn. The program may call record_work(), found with dlsym(), to have it
 * written down only at times. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int work = -1;
static int is_recording = 1;

void record_work(int is_wanted)
{
    is_recording = is_wanted;
}

__attribute__((constructor)) static void open_work(void)
{
    const char *name = getenv("BENCH_WORK");
    if (name)
        work = openat(AT_FDCWD, name, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    unsetenv("LD_PRELOAD");
}

static void record(const char *kind, const char *const *words)
{
    char line[65536];
    if (!is_recording)
        return;
    size_t length = (size_t)snprintf(line, sizeof line, "%s", kind);
    for (; *words && length < sizeof line; ++words)
        length += (size_t)snprintf(line + length, sizeof line - length, "\t%s", *words);
    if (length >= sizeof line - 1)
        abort();
    line[length++] = '\n';
    if (work >= 0 && write(work, line, length) != (ssize_t)length)
        abort();
}

static void record_file(const char *path)
{
    static const char *const facts[] = {
        "/proc/cpuinfo",    "/proc/meminfo", "/proc/partitions", "/proc/net/",      "/sys/class/net/",
        "/etc/resolv.conf", "/etc/hostname", "/etc/imageid",     "/var/lib/dhcp3/",
    };
    for (size_t i = 0; is_recording && i < sizeof facts / sizeof *facts; ++i) {
        if (strncmp(path, facts[i], strlen(facts[i])) == 0)
            record("read", (const char *const[]){path, NULL});
    }
}

/* ISO C knows no conversion from an object pointer to a function pointer; POSIX demands it of dlsym(). */
#define REAL(function) (__extension__(__typeof__(&function)) dlsym(RTLD_NEXT, #function))

FILE *popen(const char *command, const char *mode)
{
    record("shell", (const char *const[]){command, NULL});
    return REAL(popen)(command, mode);
}

int execve(const char *program, char *const arguments[], char *const environment[])
{
    record("run", (const char *const *)arguments);
    return REAL(execve)(program, arguments, environment);
}

int execv(const char *program, char *const arguments[])
{
    record("run", (const char *const *)arguments);
    return REAL(execv)(program, arguments);
}

FILE *fopen(const char *path, const char *mode)
{
    record_file(path);
    return REAL(fopen)(path, mode);
}

/* Only for a file that may be made. O_TMPFILE has the bit of O_DIRECTORY in it. */
static int has_mode(int flags)
{
    return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
}

#define OPEN(function)                                                                                       \
    int function(const char *path, int flags, ...)                                                           \
    {                                                                                                        \
        va_list rest;                                                                                        \
        va_start(rest, flags);                                                                               \
        const mode_t mode = has_mode(flags) ? (mode_t)va_arg(rest, int) : 0;                                 \
        va_end(rest);                                                                                        \
        record_file(path);                                                                                   \
        static __typeof__(&function) real;                                                                   \
        if (!real)                                                                                           \
            real = REAL(function);                                                                           \
        return real(path, flags, mode);                                                                      \
    }

OPEN(open)
OPEN(open64)
