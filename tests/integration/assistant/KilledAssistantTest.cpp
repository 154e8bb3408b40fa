// The assistant on real files, in a process that is killed.

#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"
#include "Platform/Posix/FileDocuments.h"
#include "Platform/Posix/FileWriter.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "tests/integration/platform/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace quillmoth {

namespace {

/// The program on the files of `folder`, with everything else faked.
struct Program {
    explicit Program(const std::string& folder) : documents(folder, writer, fakes.mainQueue) {
        fakes.userDefaults.set("gatewayBaseURL", std::string("https://gateway.example"));
        const platform::Platform fake = fakes.platform();
        model = DataModel::create({.mainQueue = fake.mainQueue,
                                   .operationQueues = fake.operationQueues,
                                   .urlSessions = fake.urlSessions,
                                   .pasteboard = fake.pasteboard,
                                   .accessibility = fake.accessibility,
                                   .keyboardEvents = fake.keyboardEvents,
                                   .hotKeyCenter = fake.hotKeyCenter,
                                   .keyboardLayout = fake.keyboardLayout,
                                   .workspace = fake.workspace,
                                   .userDefaults = fake.userDefaults,
                                   .documents = documents,
                                   .bundle = fake.bundle,
                                   .clock = fake.clock,
                                   .uuidSource = fake.uuidSource,
                                   .panelWindows = fake.panelWindows,
                                   .statusItems = fake.statusItems,
                                   .application = fake.application});
    }

    /// Carries out what is due within two seconds, waits for the disk, and for what follows from that.
    void settle() {
        fakes.runUntilIdle();
        fakes.mainQueue.advance(2);
        writer.flush();
        fakes.runUntilIdle();
        writer.flush();
    }

    ScopedLogCapture log{[](const std::string&) {}};
    platform::FakePlatform fakes;
    platform::FileWriter writer;
    platform::FileDocuments documents;
    std::shared_ptr<DataModel> model;
};

/// Asks, takes the first part of an answer, and never comes back.
[[noreturn]] void answerHalfAndDie(const std::string& folder) {
    Program program(folder);
    program.model->_selectedIndex = DataModel::kTypedCommand;
    program.model->_command = std::string("one");
    program.model->runPrompt();
    auto& stream = program.fakes.urlSessions.lastSession().lastTask();
    stream.deliverStatus(200);
    stream.deliverData("data: {\"choices\":[{\"delta\":{\"content\":\"half an \"},\"index\":0}]}\n\n");
    program.settle();
    kill(getpid(), SIGKILL);
    std::abort();
}

TEST(KilledAssistant, TheConversationOnScreenIsTheFirstOfTheHistoryAndForItsOwnerAlone) {
    const test::TemporaryFolder folder;
    const pid_t process = fork();
    if (process == 0)
        answerHalfAndDie(folder.path());
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    EXPECT_EQ(test::modeOf(folder.path("Quillmoth/QuillmothOpen.jsonl")), 0600U);
    for (int start = 0; start < 2; ++start) {
        Program program(folder.path());
        ASSERT_EQ(program.model->_oldMessages->size(), 1U) << start;
        EXPECT_EQ(program.model->_oldMessages->front().message.back().content, "half an ");
        program.settle();
        EXPECT_FALSE(std::filesystem::exists(folder.path("Quillmoth/QuillmothOpen.jsonl")));
    }
}

} // namespace

} // namespace quillmoth
