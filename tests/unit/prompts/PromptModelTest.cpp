#include "Quillmoth/Prompts/PromptModel.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quillmoth {
namespace {

PromptData preset(const std::string& name) {
    PromptData prompt;
    prompt.name = name;
    return prompt;
}

class PromptModelTest : public testing::Test {
protected:
    PromptModel make() { return {fake.bundle, fake.documents}; }

    std::string fatalText() {
        const ScopedFatalErrorHandler handler(
            [](const std::string& text) { throw std::runtime_error(text); });
        try {
            (void)make();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }

    platform::FakePlatform fake;
    std::vector<std::string> log;
    ScopedLogCapture capture{[this](std::string line) { log.push_back(std::move(line)); }};
};

TEST_F(PromptModelTest, WithoutAFileTheShippedPresetsAreTakenAndNothingIsWritten) {
    const auto model = make();
    EXPECT_EQ(model.prompts().size(), 3U);
    ASSERT_EQ(log.size(), 1U);
    EXPECT_TRUE(log[0].starts_with("error reading data file:QuillmothPrompts.json :")) << log[0];
    EXPECT_TRUE(fake.documents.files.empty());
}

TEST_F(PromptModelTest, TheUsersFileReplacesTheShippedPresetsUnlessItHoldsNone) {
    fake.documents.put("QuillmothPrompts.json", R"([{"emoji":"e","name":"own","prompt":"p"}])");
    EXPECT_EQ(make().prompts().at(0).name, "own");
    EXPECT_EQ(make().loadProblem(), "");
    fake.documents.put("QuillmothPrompts.json", "[]");
    EXPECT_EQ(make().prompts().size(), 3U);
    EXPECT_EQ(
        make().loadProblem(),
        "QuillmothPrompts.json cannot be used: it holds no preset. What it held is kept in "
        "\"/documents/Quillmoth/QuillmothPrompts.json.damaged-1\". The presets that come with Quillmoth are "
        "listed.");
    fake.documents.put("QuillmothPrompts.json", "[{]");
    EXPECT_EQ(make().prompts().size(), 3U);
}

TEST_F(PromptModelTest, AFileThatCannotBeReadIsKeptAsideOnceAndWhereIsLogged) {
    const auto loadsDamaged = [&](const char* bytes) {
        log.clear();
        fake.documents.put("QuillmothPrompts.json", bytes);
        EXPECT_EQ(make().prompts().size(), 3U);
    };
    loadsDamaged("[{]");
    EXPECT_EQ(log.back(),
              "What it held is kept in \"/documents/Quillmoth/QuillmothPrompts.json.damaged-1\".");
    loadsDamaged("[1]");
    loadsDamaged("[{]");
    loadsDamaged("");
    EXPECT_EQ(fake.documents.content("QuillmothPrompts.json.damaged-1"), "[{]");
    EXPECT_EQ(fake.documents.content("QuillmothPrompts.json.damaged-2"), "[1]");
    EXPECT_EQ(fake.documents.files.size(), 3U);
}

TEST_F(PromptModelTest, EveryChangeIsToldFirstAndThenSaved) {
    auto model = make();
    log.clear();
    const Subscription subscription = model.objectWillChange([&](std::string_view field) {
        log.push_back(std::string(field) + " " + std::to_string(model.prompts().size()));
    });
    model.setPrompts({preset("a")});
    EXPECT_EQ(log, (std::vector<std::string>{"_prompts 3", "Saved to JSON"}));
    log.clear();
    model.append({preset("b")});
    EXPECT_EQ(log, (std::vector<std::string>{"_prompts 1", "Saved to JSON", "Already dictionary created."}));
    EXPECT_EQ(*readPrompts(fake.documents.content("QuillmothPrompts.json")),
              (std::vector{preset("a"), preset("b")}));
}

TEST_F(PromptModelTest, AnArrangementIsSavedAndThenTold) {
    auto model = make();
    model.setPrompts({preset("a"), preset("b"), preset("c")});
    const auto changed = [&](auto&& change) {
        std::string told;
        const Subscription subscription = model.didArrange([&] {
            told = log.back() == "Already dictionary created." ? "saved " : "unsaved ";
            for (const PromptData& each : model.prompts())
                told += each.name;
        });
        log = {""};
        change();
        return told;
    };
    EXPECT_EQ(changed([&] { model.append({preset("d"), preset("e")}); }), "saved abcde");
    EXPECT_EQ(changed([&] { model.insert(1, preset("f")); }), "saved afbcde");
    EXPECT_EQ(changed([&] { model.move(0, 3); }), "saved fbacde");
    EXPECT_EQ(changed([&] { model.move(5, 1); }), "saved febacd");
    EXPECT_EQ(changed([&] { EXPECT_EQ(model.remove(4), preset("c")); }), "saved febad");
    EXPECT_EQ(changed([&] { model.edit(0, [](PromptData& first) { first.emoji = "x"; }); }), "");
    model.setPrompts({preset("a")});
    EXPECT_EQ(changed([&] { EXPECT_EQ(model.remove(0), std::nullopt); }), "unsaved a")
        << "the last one stays";
}

TEST_F(PromptModelTest, AFailedSaveIsLoggedAndKeepsFileAndMemory) {
    auto model = make();
    model.setPrompts({preset("a")});
    const std::string before = fake.documents.content("QuillmothPrompts.json");
    const auto failsToSave = [&](bool& failure) {
        failure = true;
        log.clear();
        model.setPrompts({preset("a"), preset("b")});
        failure = false;
        EXPECT_EQ(log.back(), "error writing data");
        EXPECT_EQ(fake.documents.content("QuillmothPrompts.json"), before);
        EXPECT_EQ(model.prompts().size(), 2U);
    };
    failsToSave(fake.documents.isDiskFull);
    failsToSave(fake.documents.isFolderUnwritable);
    failsToSave(fake.documents.hasNoDirectory);
    log.clear();
    model.setPrompts({preset("\xFF")});
    EXPECT_EQ(log.back(), "error writing data");
    EXPECT_EQ(fake.documents.content("QuillmothPrompts.json"), before);
}

TEST_F(PromptModelTest, ADamagedResourceEndsTheProgramEvenWhenTheUserHasAFile) {
    fake.documents.put("QuillmothPrompts.json", "[]");
    fake.bundle.resources["prompt.json"] = R"([{"emoji":"e"}])";
    EXPECT_EQ(fatalText(), R"("entry 0", "name" is missing)");
    fake.bundle.unreadable.insert("prompt.json");
    EXPECT_EQ(fatalText(), "Couldn't load prompt.json from main bundle:\nprompt.json cannot be read.");
    fake.bundle.resources.clear();
    EXPECT_EQ(fatalText(), "Couldn't find prompt.json in main bundle.");
}

} // namespace
} // namespace quillmoth
