#include "Quillmoth/Prompts/PromptModel.h"
#include "Quillmoth/Prompts/ExtractedText.h"
#include "tests/unit/PlatformFixture.h"

namespace quillmoth {
namespace {

PromptData preset(const std::string& name) {
    PromptData prompt;
    prompt.name = name;
    return prompt;
}

class PromptModelTest : public PlatformFixture {
protected:
    static constexpr const char* kFile = "QuillmothPrompts.json";

    PromptModel make() { return {platform.bundle, platform.documents}; }

    std::string fatalText() {
        try {
            (void)make();
        } catch (const FatalFault& error) {
            return error.what();
        }
        return "none";
    }
};

TEST_F(PromptModelTest, WithoutAFileTheShippedPresetsAreTakenAndNothingIsWritten) {
    const auto model = make();
    EXPECT_EQ(model.prompts().size(), 3U);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].starts_with("error reading data file:QuillmothPrompts.json :")) << lines[0];
    EXPECT_TRUE(platform.documents.files.empty());
}

TEST_F(PromptModelTest, TheUsersFileReplacesTheShippedPresetsUnlessItHoldsNone) {
    platform.documents.put(kFile, R"([{"emoji":"e","name":"own","prompt":"p"}])");
    EXPECT_EQ(make().prompts().at(0).name, "own");
    EXPECT_EQ(make().file().fault(), "");
    platform.documents.put(kFile, "[]");
    EXPECT_EQ(make().prompts().size(), 3U);
    EXPECT_EQ(make().file().fault(),
              "QuillmothPrompts.json cannot be used: it holds no preset. What it held is kept in "
              "\"/documents/Quillmoth/QuillmothPrompts.json.damaged-1\".");
}

TEST_F(PromptModelTest, AFileThatCannotBeReadIsKeptAsideOnceAndWhereIsLogged) {
    const auto loadsDamaged = [&](const char* bytes) {
        lines.clear();
        platform.documents.put(kFile, bytes);
        EXPECT_EQ(make().prompts().size(), 3U);
    };
    loadsDamaged("[{]");
    EXPECT_EQ(lines.back(),
              "What it held is kept in \"/documents/Quillmoth/QuillmothPrompts.json.damaged-1\".");
    loadsDamaged("[1]");
    loadsDamaged("[{]");
    loadsDamaged("");
    EXPECT_EQ(platform.documents.content("QuillmothPrompts.json.damaged-1"), "[{]");
    EXPECT_EQ(platform.documents.content("QuillmothPrompts.json.damaged-2"), "[1]");
    EXPECT_EQ(platform.documents.files.size(), 3U);
}

TEST_F(PromptModelTest, EveryChangeIsToldFirstAndThenSaved) {
    auto model = make();
    lines.clear();
    const Subscription subscription = model.objectWillChange([&](std::string_view field) {
        lines.push_back(std::string(field) + " " + std::to_string(model.prompts().size()));
    });
    model.setPrompts({preset("a")});
    EXPECT_EQ(lines, (Texts{"_prompts 3", "Saved to JSON"}));
    lines.clear();
    model.append({preset("b")});
    EXPECT_EQ(lines, (Texts{"_prompts 1", "Saved to JSON", "Already dictionary created."}));
    EXPECT_EQ(*readPrompts(platform.documents.content(kFile)), (std::vector{preset("a"), preset("b")}));
}

TEST_F(PromptModelTest, AnArrangementIsSavedAndThenTold) {
    auto model = make();
    model.setPrompts({preset("a"), preset("b"), preset("c")});
    const auto changed = [&](auto&& change) {
        std::string told;
        const Subscription subscription = model.didArrange([&] {
            told = lines.back() == "Already dictionary created." ? "saved " : "unsaved ";
            for (const PromptData& each : model.prompts())
                told += each.name;
        });
        lines = {""};
        change();
        return told;
    };
    EXPECT_EQ(changed([&] { model.append({preset("d"), preset("e")}); }), "saved abcde");
    EXPECT_EQ(changed([&] { model.insert(1, preset("f")); }), "saved afbcde");
    EXPECT_EQ(changed([&] { model.move(0, 3); }), "saved fbacde");
    EXPECT_EQ(changed([&] { model.move(5, 1); }), "saved febacd");
    EXPECT_EQ(changed([&] { EXPECT_EQ(model.remove(4), preset("c")); }), "saved febad");
    EXPECT_THROW(static_cast<void>(model.preset(5)), FatalFault);
    EXPECT_THROW(static_cast<void>(model.preset(-1)), FatalFault);
    EXPECT_EQ(changed([&] { model.edit(0, [](PromptData& first) { first.emoji = "x"; }); }), "");
    model.setPrompts({preset("a")});
    EXPECT_EQ(changed([&] { EXPECT_EQ(model.remove(0), std::nullopt); }), "unsaved a")
        << "the last one stays";
}

TEST_F(PromptModelTest, AFailedSaveIsLoggedAndKeepsFileAndMemory) {
    auto model = make();
    model.setPrompts({preset("a")});
    const std::string before = platform.documents.content(kFile);
    const auto failsToSave = [&](bool& failure) {
        failure = true;
        lines.clear();
        model.setPrompts({preset("a"), preset("b")});
        failure = false;
        EXPECT_EQ(lines.back(), "error writing data");
        EXPECT_EQ(platform.documents.content(kFile), before);
        EXPECT_EQ(model.prompts().size(), 2U);
    };
    failsToSave(platform.documents.isDiskFull);
    failsToSave(platform.documents.isFolderUnwritable);
    failsToSave(platform.documents.hasNoDirectory);
    lines.clear();
    model.setPrompts({preset("\xFF")});
    EXPECT_EQ(lines.back(), "error writing data");
    EXPECT_EQ(platform.documents.content(kFile), before);
}

TEST_F(PromptModelTest, ADamagedResourceEndsTheProgramEvenWhenTheUserHasAFile) {
    platform.documents.put(kFile, "[]");
    platform.bundle.resources["prompt.json"] = R"([{"emoji":"e"}])";
    EXPECT_EQ(fatalText(), R"("entry 0", "name" is missing)");
    platform.bundle.unreadable.insert("prompt.json");
    EXPECT_EQ(fatalText(), "Couldn't load prompt.json from main bundle:\nprompt.json cannot be read.");
    platform.bundle.resources.clear();
    EXPECT_EQ(fatalText(), "Couldn't find prompt.json in main bundle.");
}

TEST(PromptDataJSON, WritesTheKeysInOrderAndLeavesOutWhatIsAbsent) {
    const PromptData full{.id = "I",
                          .emoji = "🪶",
                          .name = "n",
                          .prompt = "p",
                          .systemPrompt = "s",
                          .promptType = "other",
                          .programType = "g"};
    PromptData sparse;
    sparse.name = "n";
    const auto json = writeJSON(std::vector{full, sparse});
    ASSERT_TRUE(json);
    EXPECT_EQ(*json,
              R"([{"id":"I","emoji":"🪶","name":"n","prompt":"p","systemPrompt":"s","promptType":"other",)"
              R"("programType":"g"},{"emoji":"","name":"n","prompt":""}])");
    EXPECT_EQ(*readPrompts(*json), (std::vector{full, sparse}));
}

TEST(PromptDataJSON, NullIsAbsentAndOneDamagedPresetFailsTheWholeArray) {
    const auto read =
        readPromptData(R"({"id":null,"emoji":"e","name":"n","prompt":"p","promptType":null,"x":1})");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name, "n");
    EXPECT_FALSE(read->id || read->promptType);
    EXPECT_FALSE(readPrompts(R"([{"emoji":"e","name":"n","prompt":"p"},{"emoji":"e","name":"n"}])"));
    EXPECT_FALSE(readPrompts(R"([{"emoji":null,"name":"n","prompt":"p"}])"));
    EXPECT_FALSE(readPrompts(R"({"emoji":"e","name":"n","prompt":"p"})"));
    EXPECT_TRUE(readPrompts("\xEF\xBB\xBF[]")) << "with a byte order mark";
}

/// The pieces as "fixed" and "<blank>", which no case holds otherwise, with a bar between them.
std::string split(std::string_view prompt) {
    std::string result;
    std::string joined;
    std::int64_t id = 0;
    for (const ExtractedText& piece : extractBracketedTexts(prompt)) {
        EXPECT_EQ(piece.id, id++);
        result += result.empty() ? "" : "|";
        result += piece.isBracketed ? "<" + piece.text + ">" : piece.text;
        joined += piece.text;
    }
    EXPECT_EQ(joined, prompt);
    return result;
}

TEST(ExtractBracketedTexts, SplitsAtBracketsAndLosesNothing) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"[x]", "<[x]>"},
        {"[]", "<[]>"},
        {"[a][b]", "<[a]>|<[b]>"},
        {"a]b", "<a]>|b"},
        {"]", "<]>"},
        {"x[y", "x|[y"},
        {"[a[b]c]", "[a|<[b]>|<c]>"},
        {"[[", "[|["},
        {"für [Ziel 🦋]!", "für |<[Ziel 🦋]>|!"},
        {"no [\u0301bracket]\u0301 here", "no [\u0301bracket]\u0301 here"},
        {"line\r\n[a\r\nb]\r\n", "line\r\n|<[a\r\nb]>|\r\n"},
    };

    for (const auto& [prompt, pieces] : cases)
        EXPECT_EQ(split(prompt), pieces) << prompt;
}

} // namespace
} // namespace quillmoth
