// A library to be loaded before the C library: makes one kind of system call fail in one folder, as a disk
// that is full or broken does. The environment says which:
//   QUILLMOTH_FAULT_FOLDER  the folder
//   QUILLMOTH_FAULT_CALL    open (for writing), write, fsync or rename
//   QUILLMOTH_FAULT_ERRNO   the error's number
//   QUILLMOTH_FAULT_FROM    which call is the first to fail, from 1. Of a write that is the first, half
//   arrives QUILLMOTH_FAULT_ONCE    not empty: the later calls succeed

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

std::atomic<long> calls{0};

const char* setting(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool isInFolder(const char* path) {
    const char* folder = setting("QUILLMOTH_FAULT_FOLDER");
    return *folder != '\0' && std::strncmp(path, folder, std::strlen(folder)) == 0;
}

bool isInFolder(int file) {
    char link[64];
    char path[PATH_MAX] = {};
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    return readlink(link, path, sizeof path - 1) > 0 && isInFolder(path);
}

enum class Fate { succeeds, succeedsByHalf, fails };

Fate fateOf(const char* call) {
    if (std::strcmp(setting("QUILLMOTH_FAULT_CALL"), call) != 0)
        return Fate::succeeds;
    const bool hasHalves = std::strcmp(call, "write") == 0;
    const long place = ++calls - std::atol(setting("QUILLMOTH_FAULT_FROM"));
    if (place == 0 && hasHalves)
        return Fate::succeedsByHalf;
    const bool isLater = place > (hasHalves ? 1 : 0) && *setting("QUILLMOTH_FAULT_ONCE") != '\0';
    return place < 0 || isLater ? Fate::succeeds : Fate::fails;
}

int refuse() {
    errno = std::atoi(setting("QUILLMOTH_FAULT_ERRNO"));
    return -1;
}

template<class Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

int openNext(const char* path, int flags, mode_t mode) {
    const bool writes = (flags & (O_WRONLY | O_RDWR | O_CREAT)) != 0;
    if (writes && isInFolder(path) && fateOf("open") == Fate::fails)
        return refuse();
    return next<int (*)(const char*, int, ...)>("open64")(path, flags, mode);
}

} // namespace

EXPORTED int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = static_cast<mode_t>((flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0);
    va_end(arguments);
    return openNext(path, flags, mode);
}

// What it is where the compiler has checked its arguments.
EXPORTED int __open_2(const char* path, int flags) {
    return openNext(path, flags, 0);
}

EXPORTED int open64(const char* path, int flags, ...) __attribute__((alias("open")));
EXPORTED int __open64_2(const char* path, int flags) __attribute__((alias("__open_2")));

EXPORTED ssize_t write(int file, const void* bytes, size_t count) {
    const auto real = next<ssize_t (*)(int, const void*, size_t)>("write");
    const Fate fate = isInFolder(file) ? fateOf("write") : Fate::succeeds;
    if (fate == Fate::fails)
        return refuse();
    return real(file, bytes, fate == Fate::succeedsByHalf ? (count + 1) / 2 : count);
}

EXPORTED int fsync(int file) {
    if (isInFolder(file) && fateOf("fsync") == Fate::fails)
        return refuse();
    return next<int (*)(int)>("fsync")(file);
}

EXPORTED int rename(const char* from, const char* to) {
    if (isInFolder(to) && fateOf("rename") == Fate::fails)
        return refuse();
    return next<int (*)(const char*, const char*)>("rename")(from, to);
}
