/* dowork FILE: does the work that the file lists, the least way: "shell COMMAND" through popen, "run PROGRAM
 * ARGUMENT..." as a child, "read FILE"; words stand between tabs. Output is read to its end and dropped.
 * With --rounds as a second argument it does all of it once for each byte on standard input and answers
 * with the nanoseconds that it took, a line each. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

enum { most_steps = 1000, most_words = 64 };

struct step {
    char *words[most_words + 1];
};

static struct step steps[most_steps];
static size_t step_count;

static void load(const char *name)
{
    FILE *file = fopen(name, "r");
    char *line = NULL;
    size_t capacity = 0;
    ssize_t length = 0;
    if (!file)
        exit(2);
    while ((length = getline(&line, &capacity, file)) > 0 && step_count < most_steps) {
        line[length - 1] = '\0';
        char *rest = line;
        for (size_t word = 0; rest && word < most_words; ++word)
            steps[step_count].words[word] = strsep(&rest, "\t");
        ++step_count;
        line = NULL;
    }
    fclose(file);
}

static void drain(int descriptor)
{
    static char buffer[65536];
    while (read(descriptor, buffer, sizeof buffer) > 0)
        ;
}

static void run_shell(const char *command)
{
    FILE *pipe = popen(command, "r");
    if (!pipe)
        exit(1);
    drain(fileno(pipe));
    pclose(pipe);
}

static void run_program(char *const *words)
{
    extern char **environ;
    int output[2];
    pid_t child = 0;
    posix_spawn_file_actions_t actions;
    if (pipe2(output, O_CLOEXEC) != 0)
        exit(1);
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawnp(&child, words[0], &actions, NULL, words, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    drain(output[0]);
    close(output[0]);
    if (!error)
        waitpid(child, NULL, 0);
}

static void read_file(const char *name)
{
    const int file = open(name, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return;
    drain(file);
    close(file);
}

static void do_work(void)
{
    for (size_t i = 0; i < step_count; ++i) {
        char **words = steps[i].words;
        if (strcmp(words[0], "shell") == 0)
            run_shell(words[1]);
        else if (strcmp(words[0], "run") == 0)
            run_program(words + 1);
        else
            read_file(words[1]);
    }
}

static long long now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    load(argv[1]);
    if (argc == 2) {
        do_work();
        return 0;
    }
    char request;
    while (read(STDIN_FILENO, &request, 1) == 1) {
        const long long start = now();
        do_work();
        printf("%lld\n", now() - start);
        fflush(stdout);
    }
    return 0;
}
