#include "tests/desktop/windows/WindowsSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
using nlohmann::json;

json preset(const std::string& name, const std::string& type) {
    return {{"id", "id of " + name},
            {"emoji", "🦉"},
            {"name", name},
            {"prompt", "prompt of " + name},
            {"promptType", type}};
}

class EditorDesktop : public WindowsSession {
protected:
    static void startWith(const json& list) {
        session().writeFile(ProgramSession::kPresets, list.dump());
        start();
    }

    static void open(const json& list) {
        startWith(list);
        run({"quillmoth://promptEditor"});
        awaitWindow("Prompt Editor");
    }

    static void awaitNames(const std::string& what, const std::vector<std::string>& expected) {
        eventually(what, [&] {
            std::vector<std::string> names;
            for (const auto& entry : presets())
                names.push_back(entry.value("name", ""));
            return names == expected;
        });
    }
};

} // namespace

TEST_F(EditorDesktop, APresetIsAddedEditedAndStandsInThePanelsListAtOnce) {
    open(json::array({preset("One", "context")}));
    EXPECT_TRUE(await("radio button", "Non-context").press());
    EXPECT_TRUE(goes("list item", "🦉One"));
    click(await("push button", "+ Add"));
    awaitNames("the preset is in the file", {"One", "New Prompt"});
    awaitWindow("Prompt Editor");
    input().type("Haiku");
    awaitNames("its name is typed over", {"One", "Haiku"});
    click(await("text", "System Prompt"));
    EXPECT_TRUE(soon([] { return await("text", "System Prompt").isFocused(); }));
    input().chord({KEY_LEFTCTRL, KEY_A});
    input().type("Poet.");
    eventually("the file holds it", [] { return presets()[1].value("systemPrompt", "") == "Poet."; });
    openPanel();
    EXPECT_NO_THROW(await("list item", "Haiku"));
    closePanelByHotKey();
    EXPECT_EQ(presets()[0], preset("One", "context"));
}

TEST_F(EditorDesktop, ALinkImportsAPresetIntoTheRunningProgramAndStartsTheOneThatDoesNotRun) {
    startWith(json::array({preset("One", "context")}));
    // A program that was built and not installed makes itself the handler of its links.
    eventually("the scheme has a handler", [] {
        return runChild({"xdg-mime", "query", "default", "x-scheme-handler/quillmoth"}, 5s)
                   .output.find("quillmoth-links.desktop") != std::string::npos;
    });
    const std::string link =
        "quillmoth://add?a=1&data=%7B%22id%22%3A%22x%22%2C%22emoji%22%3A%22%F0%9F%A6%89%22%2C%22name%22%3A%22"
        "Summary%22%2C%22prompt%22%3A%22Summarise%3A%20%7Bselected%20text%7D%22%7D&data=no";
    const ChildResult opened = runChild({"xdg-open", link}, 20s);
    EXPECT_EQ(opened.exitCode, 0) << opened.output;
    awaitWindow("Add a Preset?");
    awaitText("Summarise: {selected text}");
    EXPECT_EQ(presets().size(), 1U) << "nothing is added before the answer";
    EXPECT_TRUE(await("push button", "Add Preset").press());
    awaitNames("the running program imports it", {"One", "Summary"});
    awaitWindow("Prompt Editor");
    json imported = presets()[1];
    EXPECT_NE(imported.value("id", ""), "x");
    imported.erase("id");
    EXPECT_EQ(imported,
              (json{{"emoji", "🦉"}, {"name", "Summary"}, {"prompt", "Summarise: {selected text}"}}));
    awaitText("Summarise: {selected text}");
    quit();
    // What xdg-open starts stays in its process group, and so with this test.
    ChildProcess opener({"xdg-open", link});
    awaitWindow("Add a Preset?");
    run({"--quit"});
    awaitNames("the link starts the program, which asks too", {"One", "Summary"});
    EXPECT_TRUE(opener.waitForExit(20s).has_value());
}

TEST_F(EditorDesktop, TheWholeListGoesIntoAFileAndComesBackFromIt) {
    const json list = json::array({preset("One", "context"), preset("Two", "nonContext")});
    open(list);
    // Twice the same keys: the menu, its item, and the name of the file.
    const auto chooseFile = [&](int item, const char* dialog) {
        EXPECT_TRUE(await("push button", "Import and export").press());
        eventually("the menu opens", [] { return openMenu() != 0; });
        for (int count = 0; count < item; ++count)
            input().tapKey(KEY_DOWN);
        input().tapKey(KEY_ENTER);
        awaitWindow(dialog);
        input().chord({KEY_LEFTCTRL, KEY_A});
        input().type(session().path("copy.json"));
        input().tapKey(KEY_ENTER);
        eventually("the dialog closes", [&] { return !hasWindow(dialog); });
    };
    chooseFile(2, "Export All Presets");
    eventually("the file is there", [] { return json::accept(session().readFile("copy.json")); });
    EXPECT_EQ(json::parse(session().readFile("copy.json")), list);
    click(await("list item", "🦉One"));
    click(await("push button", "Delete"));
    awaitNames("the preset is deleted", {"Two"});
    chooseFile(1, "Import Presets");
    awaitText("1 preset was added.");
    EXPECT_TRUE(shows("1 preset of the file was in the list already."));
    awaitNames("the preset is back, at the end", {"Two", "One"});
}

} // namespace quillmoth::test
