#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::sweep {

namespace {

namespace fs = std::filesystem;

/// A call of fatalError: what from outside could reach it, and who checks before.
struct Site {
    /// The end of its path.
    std::string_view file;
    /// What is in its line behind "fatalError(".
    std::string_view call;
    std::string_view reachedBy;
    std::string_view checkedBy;
};

constexpr Site kSites[] = {
    // The model, behind its controller
    {"Quillmoth/Assistant/PromptExecution.cpp", "Index out of range",
     "Return with no conversation stored; Return in a form after a capture, a new command or an edit of the "
     "presets",
     "FloatingViewController::isRunnable"},
    {"Quillmoth/Assistant/AnswerStream.cpp", "Nothing to regenerate",
     "Ctrl+R after a failed first request, or in a stored conversation without messages",
     "FloatingViewController::askAgain"},
    {"Quillmoth/Assistant/Lists.cpp", "There is no preset to list",
     "a presets file that holds []; deleting the last preset", "PromptModel: readOwnPrompts, remove"},
    {"Quillmoth/Assistant/Lists.cpp", "The selected preset",
     "Up, with a row selected that a filter or a form has taken off the list",
     "FloatingViewController::leaveUnlistedRow"},
    {"Quillmoth/Assistant/ConversationHistory.cpp", "Index out of range",
     "nothing: the index is that of a conversation that was opened, and none is ever taken out",
     "PromptExecution: openStoredConversation"},
    {"Quillmoth/Prompts/PromptModel.cpp", "There is no preset at index",
     "the editor's form and rows after a deletion or an import",
     "PromptEditorView: its selections follow each change"},
    // The panel is made before hot key, tray and bus can ask for it, and kept to the end of the process
    {"Quillmoth/Assistant/DismissStep.cpp", "There is no panel", "nothing", "AppDelegate::finishLaunching"},
    {"Quillmoth/Assistant/FloatingViewActions.cpp", "There is no panel", "nothing",
     "AppDelegate::finishLaunching"},
    {"Quillmoth/Assistant/FloatingViewController.cpp", "There is no panel", "nothing",
     "AppDelegate::finishLaunching"},
    {"Quillmoth/Application/AppDelegate.cpp", "There is no panel", "nothing", "AppDelegate::finishLaunching"},
    // Other programs
    {"Quillmoth/Capture/SelectionCapture.cpp", "There is no application in front",
     "the hot key on an empty desktop", "DataModel::captureContext; DesktopServices::frontProcess"},
    {"Quillmoth/Capture/FocusedElement.cpp", "The focused element",
     "nothing: no success is told without an element", "AtSpiAccessibility::copyFocusedElement"},
    {"Quillmoth/Capture/CopyCapture.cpp", "The key events",
     "the alternative method on a server without XTEST", "DataModel::copyCapture, by CopyCapture::canCopy"},
    {"KeyboardShortcuts/CarbonKeyboardShortcuts.cpp", "Not an unsigned 32-bit value", "a stored hot key",
     "Shortcut::fromJSON"},
    {"Platform/Linux/X11/Panel/X11PanelFocus.cpp", "The toolkit does not run on X11",
     "a session without an X server", "X11BackEnd::create"},
    // An answer in Markdown: the parser gives nodes of such a type a text, if an empty one
    {"CommonMarkNode.cpp", "A Markdown node", "nothing", "cmark_node_get_literal"},
    // What is built in
    {"Quillmoth/Prompts/JSONFunction.cpp", "Couldn't find", "nothing: a resource of the program",
     "the build"},
    {"Quillmoth/Prompts/JSONFunction.cpp", "Couldn't load", "nothing: a resource of the program",
     "the build"},
    {"Quillmoth/Prompts/PromptModel.cpp", "shipped.error()", "nothing: a resource of the program",
     "ShippedPromptsTest"},
    {"Quillmoth/Settings/SettingsModel.cpp", "The bundle", "nothing: a constant", "ResourceBundle"},
    {"Quillmoth/Settings/LaunchAtLogin.cpp", "The bundle", "nothing: a constant", "ResourceBundle"},
    {"Quillmoth/Settings/Recording.cpp", "The recorder has no text", "nothing: its keys are literals",
     "the callers"},
    {"QtStatusItems.cpp", "There is no symbol", "nothing: a resource of the program", "the build"},
};

/// Where fatalError is called, as "file: what stands behind the bracket".
std::vector<std::string> callsIn(const fs::path& root, const std::string& folder) {
    constexpr std::string_view kCall = " fatalError(";
    std::vector<std::string> calls;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const std::string file = fs::relative(entry.path(), root).string();
        if (entry.path().extension() != ".cpp" || file.find("Platform/Fake/") == 0 ||
            file == "Foundation/FatalError.cpp")
            continue;
        std::ifstream source(entry.path());
        for (std::string line; std::getline(source, line);) {
            if (const auto place = line.find(kCall); place != std::string::npos)
                calls.push_back(file + ": " + line.substr(place + kCall.size()));
        }
    }
    return calls;
}

bool isRowOf(const Site& site, const std::string& call) {
    return call.find(std::string(site.file) + ": ") != std::string::npos &&
           call.find(site.call) != std::string::npos;
}

TEST(FatalSites, EachCallOfFatalErrorSaysWhoKeepsTheWorldAwayFromIt) {
    std::vector<std::string> calls;
    for (const char* folder :
         {"Foundation", "Platform", "EventSource", "KeyboardShortcuts", "MarkdownUI", "Quillmoth"}) {
        const auto found = callsIn(QUILLMOTH_SOURCES, folder);
        calls.insert(calls.end(), found.begin(), found.end());
    }
    for (const std::string& call : calls)
        EXPECT_EQ(std::count_if(std::begin(kSites), std::end(kSites),
                                [&](const Site& site) { return isRowOf(site, call); }),
                  1)
            << "wants one row in the table: " << call;
    for (const Site& site : kSites)
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                                [&](const std::string& call) { return isRowOf(site, call); }),
                  1)
            << "is of no call: " << site.file << ": " << site.call << ", reached by " << site.reachedBy
            << ", checked by " << site.checkedBy;
}

} // namespace

} // namespace quillmoth::sweep
