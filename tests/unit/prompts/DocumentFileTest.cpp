// A file of the user's that cannot be read is never written over.

#include "Quillmoth/Prompts/PromptModel.h"
#include "tests/unit/PlatformFixture.h"

namespace quillmoth {
namespace {

using platform::FakeDocuments;

class DocumentFileTest : public PlatformFixture {
protected:
    /// Starts, and gives the names of the presets.
    std::string start() {
        model.emplace(platform.bundle, platform.documents);
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
        return platform.documents.fileExists(FakeDocuments::pathOf(name));
    }

    static constexpr const char* kFile = "QuillmothPrompts.json";
    static constexpr const char* kOwn = R"([{"emoji":"e","name":"own","prompt":"p"}])";

    std::optional<PromptModel> model;
};

TEST_F(DocumentFileTest, WhatIsNewGoesBesideAFileThatCannotBeReadAndIsTakenOverOnceItCan) {
    platform.documents.put(kFile, kOwn);
    platform.documents.unreadable = {FakeDocuments::pathOf(kFile)};
    const std::string shipped = start();
    EXPECT_NE(model->file().fault().find("Permission denied"), std::string::npos) << model->file().fault();
    EXPECT_EQ(platform.documents.files.size(), 1U) << "the shipped presets are nothing new";
    add("new");
    EXPECT_EQ(platform.documents.content(kFile), kOwn);
    EXPECT_EQ(start(), shipped + "new ") << "what is beside it holds meanwhile";
    add("newer");
    EXPECT_EQ(platform.documents.content(kFile), kOwn);
    platform.documents.unreadable.clear();
    platform.documents.isDiskFull = true;
    EXPECT_EQ(start(), "new newer own ");
    EXPECT_TRUE(exists(std::string(kFile) + ".new-1")) << "the disk has it nowhere else";
    platform.documents.isDiskFull = false;
    EXPECT_EQ(start(), "new newer own ");
    EXPECT_FALSE(exists(std::string(kFile) + ".new-1"));
    EXPECT_EQ(start(), "new newer own ");
    EXPECT_EQ(model->file().fault(), "");
}

TEST_F(DocumentFileTest, AFileBesideItThatCannotBeReadStaysToo) {
    const std::string first = std::string(kFile) + ".new-1";
    platform.documents.put(kFile, kOwn);
    platform.documents.put(first, "[{");
    platform.documents.unreadable = {FakeDocuments::pathOf(kFile)};
    (void)start();
    add("new");
    EXPECT_EQ(platform.documents.content(first), "[{");
    EXPECT_NE(platform.documents.content(std::string(kFile) + ".new-2").find("new"), std::string::npos);
    platform.documents.unreadable.clear();
    EXPECT_EQ(start(), "new own ");
    EXPECT_EQ(platform.documents.content(first), "[{");
}

TEST_F(DocumentFileTest, WhatIsNoTextOrCannotBeKeptAsideIsNotWrittenOver) {
    const std::string noText = "[{\"emoji\":\"\xFF\",\"name\":\"own\",\"prompt\":\"p\"}]";
    platform.documents.put(kFile, noText);
    (void)start();
    add("new");
    EXPECT_EQ(platform.documents.content(kFile), noText);
    platform.documents.files.clear();
    platform.documents.put(kFile, "[{");
    platform.documents.isDiskFull = true;
    (void)start();
    platform.documents.isDiskFull = false;
    add("new");
    EXPECT_EQ(platform.documents.content(kFile), "[{");
    (void)start();
    EXPECT_EQ(platform.documents.content(std::string(kFile) + ".damaged-1"), "[{");
    EXPECT_NE(model->file().fault().find(".damaged-1"), std::string::npos) << model->file().fault();
}

TEST_F(DocumentFileTest, AFailureIsToldInWordsThatNameTheFile) {
    (void)start();
    std::string told;
    const Subscription subscription = model->file().onFault([&](const std::string& words) { told = words; });
    platform.documents.isDiskFull = true;
    add("new");
    EXPECT_TRUE(told.starts_with("Your presets could not be saved. ")) << told;
    EXPECT_NE(told.find(kFile), std::string::npos) << told;
    EXPECT_NE(told.find("No space left on device"), std::string::npos) << told;
}

} // namespace
} // namespace quillmoth
