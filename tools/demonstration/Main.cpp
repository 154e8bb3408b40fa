// Does the whole main job on a virtual desktop through the keyboard alone, and keeps pictures and a report of
// it.

#include "ChatScript.h"
#include "Scenes.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <string_view>

namespace {

using namespace quillmoth::test;

constexpr const char* kUsage = "Usage: demonstration [--output FOLDER] [--window-manager NAME]\n";
// As quick as a model that is in a hurry.
constexpr std::chrono::milliseconds kTimeOfAPiece(30);
constexpr const char* kIntroduction = "Quillmoth, shown on a virtual desktop with a real X server, window "
                                      "manager, accessibility bus and text editor.\n"
                                      "A scripted server on the loopback address stands in for the language "
                                      "model: its answers are fixed texts.";

struct Options {
    /// Where pictures and report go.
    std::string output = "demo-output";
    std::string windowManager = "openbox";
};

std::optional<Options> optionsFrom(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; i += 2) {
        const std::string_view name = argv[i];
        std::string* value = name == "--output"           ? &options.output
                             : name == "--window-manager" ? &options.windowManager
                                                          : nullptr;
        if (value == nullptr || i + 1 == argc)
            return std::nullopt;
        *value = argv[i + 1];
    }
    return options;
}

int demonstrate(const Options& options) {
    std::printf("%s\n\n", kIntroduction);
    Demonstration demonstration(options.output, options.windowManager);
    ProgramSession& session = demonstration.session();
    session.writeFile("script.json", demonstrationScript());
    ChatScript script;
    script.load(session.path("script.json"));
    script.serve(session.server(), kTimeOfAPiece);
    session.startEditor(demonstrationText());
    session.start();
    demonstration.check("The program starts and finds its presets",
                        [&] { return !session.readFile(ProgramSession::kPresets).empty(); });
    for (const auto part : {showSelectionToAnswer, showForm, showTypedCommand, showHistory,
                            showBesideSettings, showWhatIsNotWritten}) {
        if (!part(demonstration))
            break;
    }
    demonstration.check(
        "quillmoth --quit ends the program", [&] { return session.quit() == 0; },
        std::chrono::milliseconds(0));
    demonstration.report().write(options.output + "/report.txt", kIntroduction);
    std::printf("\nPictures and report: %s\n", std::filesystem::absolute(options.output).c_str());
    return demonstration.report().allPassed() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const auto options = optionsFrom(argc, argv);
    if (!options) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    try {
        return demonstrate(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "demonstration: %s\n", error.what());
        return 1;
    }
}
