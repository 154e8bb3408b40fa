// A file of the user's that cannot be read is never written over.

#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Prompts/PromptModel.h"

#include <gtest/gtest.h>

#include <set>

namespace quillmoth {
namespace {

using platform::FakeDocuments;

class DocumentFileTest : public testing::Test {
protected:
    /// Starts, and gives the names of the presets.
    std::string start() {
        model.emplace(fake.bundle, fake.documents);
        model->save();
        std::string names;
        for (const PromptData& each : model->prompts())
            names += each.name + " ";
        return names;
    }

    void add(const std::string& name) {
        PromptData preset;
        preset.name = name;
        model->append({preset});
    }

    [[nodiscard]] bool exists(const std::string& name) const {
        return fake.documents.fileExists(FakeDocuments::pathOf(name));
    }

    static constexpr const char* kFile = "QuillmothPrompts.json";
    static constexpr const char* kOwn = R"([{"emoji":"e","name":"own","prompt":"p"}])";

    platform::FakePlatform fake;
    std::optional<PromptModel> model;
    ScopedLogCapture capture{[](const std::string&) {}};
};

TEST_F(DocumentFileTest, WhatIsNewGoesBesideAFileThatCannotBeReadAndIsTakenOverOnceItCan) {
    fake.documents.put(kFile, kOwn);
    fake.documents.unreadable = {FakeDocuments::pathOf(kFile)};
    const std::string shipped = start();
    EXPECT_NE(model->file().fault().find("Permission denied"), std::string::npos) << model->file().fault();
    EXPECT_EQ(fake.documents.files.size(), 1U) << "the shipped presets are nothing new";
    add("new");
    EXPECT_EQ(fake.documents.content(kFile), kOwn);
    EXPECT_EQ(start(), shipped + "new ") << "what is beside it holds meanwhile";
    add("newer");
    EXPECT_EQ(fake.documents.content(kFile), kOwn);
    fake.documents.unreadable.clear();
    fake.documents.isDiskFull = true;
    EXPECT_EQ(start(), "new newer own ");
    EXPECT_TRUE(exists(std::string(kFile) + ".new-1")) << "the disk has it nowhere else";
    fake.documents.isDiskFull = false;
    EXPECT_EQ(start(), "new newer own ");
    EXPECT_FALSE(exists(std::string(kFile) + ".new-1"));
    EXPECT_EQ(start(), "new newer own ");
    EXPECT_EQ(model->file().fault(), "");
}

TEST_F(DocumentFileTest, AFileBesideItThatCannotBeReadStaysToo) {
    const std::string first = std::string(kFile) + ".new-1";
    fake.documents.put(kFile, kOwn);
    fake.documents.put(first, "[{");
    fake.documents.unreadable = {FakeDocuments::pathOf(kFile)};
    (void)start();
    add("new");
    EXPECT_EQ(fake.documents.content(first), "[{");
    EXPECT_NE(fake.documents.content(std::string(kFile) + ".new-2").find("new"), std::string::npos);
    fake.documents.unreadable.clear();
    EXPECT_EQ(start(), "new own ");
    EXPECT_EQ(fake.documents.content(first), "[{");
}

TEST_F(DocumentFileTest, WhatIsNoTextOrCannotBeKeptAsideIsNotWrittenOver) {
    const std::string noText = "[{\"emoji\":\"\xFF\",\"name\":\"own\",\"prompt\":\"p\"}]";
    fake.documents.put(kFile, noText);
    (void)start();
    add("new");
    EXPECT_EQ(fake.documents.content(kFile), noText);
    fake.documents.files.clear();
    fake.documents.put(kFile, "[{");
    fake.documents.isDiskFull = true;
    (void)start();
    fake.documents.isDiskFull = false;
    add("new");
    EXPECT_EQ(fake.documents.content(kFile), "[{");
    (void)start();
    EXPECT_EQ(fake.documents.content(std::string(kFile) + ".damaged-1"), "[{");
    EXPECT_NE(model->file().fault().find(".damaged-1"), std::string::npos) << model->file().fault();
}

TEST_F(DocumentFileTest, AFailureIsToldInWordsThatNameTheFile) {
    (void)start();
    std::string told;
    const Subscription subscription = model->file().onFault([&](const std::string& words) { told = words; });
    fake.documents.isDiskFull = true;
    add("new");
    EXPECT_TRUE(told.starts_with("Your presets could not be saved. ")) << told;
    EXPECT_NE(told.find(kFile), std::string::npos) << told;
    EXPECT_NE(told.find("No space left on device"), std::string::npos) << told;
}

} // namespace
} // namespace quillmoth
