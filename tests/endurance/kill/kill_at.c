/* Preloaded into a service: kills it at a call of a save. ZUV_KILL_AT=<n> is the call, 1 the first, that concerns the file
 * beside the target; of a write, half is done before. Without the variable nothing happens. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static int file = -1; /* that is written */
static int calls = 0;

static int isBeside(const char *path)
{
    const size_t length = strlen(path);
    return length > 4 && strcmp(path + length - 4, ".tmp") == 0;
}

static int isDue(void)
{
    const char *const at = getenv("ZUV_KILL_AT");
    return at != NULL && ++calls == atoi(at);
}

static void passOrDie(void)
{
    if (isDue()) {
        kill(getpid(), SIGKILL);
        pause();
    }
}

int open(const char *path, int flags, ...)
{
    static int (*next)(const char *, int, ...);
    va_list arguments;
    mode_t mode = 0;
    int opened;
    next = (int (*)(const char *, int, ...))dlsym(RTLD_NEXT, "open");
    if ((flags & O_CREAT) != 0) {
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    if (!isBeside(path)) {
        return next(path, flags, mode);
    }
    passOrDie();
    opened = next(path, flags, mode);
    file = opened;
    return opened;
}

ssize_t write(int target, const void *data, size_t size)
{
    ssize_t (*const next)(int, const void *, size_t) =
        (ssize_t(*)(int, const void *, size_t))dlsym(RTLD_NEXT, "write");
    if (target == file && target >= 0 && isDue()) {
        next(target, data, size / 2);
        kill(getpid(), SIGKILL);
        pause();
    }
    return next(target, data, size);
}

#define PASS(NAME)                                                                                 \
    int NAME(int target)                                                                           \
    {                                                                                              \
        int (*const next)(int) = (int (*)(int))dlsym(RTLD_NEXT, #NAME);                            \
        if (target == file && target >= 0) {                                                       \
            passOrDie();                                                                           \
        }                                                                                          \
        return next(target);                                                                       \
    }
PASS(fsync)

int fchmod(int target, mode_t mode)
{
    int (*const next)(int, mode_t) = (int (*)(int, mode_t))dlsym(RTLD_NEXT, "fchmod");
    if (target == file && target >= 0) {
        passOrDie();
    }
    return next(target, mode);
}

int close(int target)
{
    int (*const next)(int) = (int (*)(int))dlsym(RTLD_NEXT, "close");
    if (target == file && target >= 0) {
        passOrDie();
        file = -1;
    }
    return next(target);
}

int rename(const char *from, const char *to)
{
    int (*const next)(const char *, const char *) =
        (int (*)(const char *, const char *))dlsym(RTLD_NEXT, "rename");
    int result;
    if (!isBeside(from)) {
        return next(from, to);
    }
    passOrDie();
    result = next(from, to);
    passOrDie(); /* done, but not told yet */
    return result;
}
