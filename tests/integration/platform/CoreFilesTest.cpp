#include "Platform/Posix/CoreFiles.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

/// Whether the kernel makes a core of a process that ends by abort() in `folder`.
bool leavesCore(const std::string& folder, void (*prepare)()) {
    const pid_t child = fork();
    if (child == 0) {
        rlimit limit{};
        getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_CORE, &limit);
        if (chdir(folder.c_str()) == 0)
            prepare();
        std::abort();
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    return WCOREDUMP(status);
}

} // namespace

TEST(CoreFiles, AnAbortLeavesNoneUnlessTheEnvironmentAsksForOne) {
    const test::TemporaryFolder folder;
    if (!leavesCore(folder.path(), [] {}))
        GTEST_SKIP() << "this system leaves no core of any program";
    EXPECT_FALSE(leavesCore(folder.path(), forbidCoreFiles));
    EXPECT_TRUE(leavesCore(folder.path(), [] {
        setenv("QUILLMOTH_CORE", "1", 1);
        forbidCoreFiles();
    }));
}

} // namespace quillmoth::platform
