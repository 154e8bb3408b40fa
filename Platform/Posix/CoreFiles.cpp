#include "Platform/Posix/CoreFiles.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace quillmoth::platform {

namespace {

// A limit of 0 stops files alone: where core_pattern names a program, the kernel pipes the core to it all the
// same. One byte stops both, since the kernel takes it for the wish that there be none (core(5)).
// PR_SET_DUMPABLE would do so too, but hides /proc/self from the desktop portal, which then refuses to serve.
constexpr rlim_t kNoCore = 1;

} // namespace

void forbidCoreFiles() {
    // Nothing in this process changes its environment.
    const char* wish = std::getenv("QUILLMOTH_CORE"); // NOLINT(concurrency-mt-unsafe)
    if (wish != nullptr && std::string_view(wish) == "1")
        return;
    rlimit limit{};
    if (getrlimit(RLIMIT_CORE, &limit) != 0)
        return;
    limit.rlim_cur = std::min(kNoCore, limit.rlim_max);
    (void)setrlimit(RLIMIT_CORE, &limit);
}

} // namespace quillmoth::platform
