// Does the whole main job on a virtual desktop through the keyboard alone, and keeps pictures and a report of
// it.

#include "tests/desktop/demonstration/Scenes.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <string_view>

namespace {

using namespace quillmoth::test;

constexpr const char* kUsage = "Usage: demonstration --program FILE --server FILE [--output FOLDER] "
                               "[--window-manager NAME]\n";
constexpr const char* kIntroduction = "Quillmoth, shown on a virtual desktop with a real X server, window "
                                      "manager, accessibility bus and text editor.\n"
                                      "A scripted server on the loopback address stands in for the language "
                                      "model: its answers are fixed texts.";

std::optional<DemonstrationOptions> optionsFrom(int argc, char** argv) {
    DemonstrationOptions options;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string_view name = argv[i];
        std::string* value = name == "--program"          ? &options.program
                             : name == "--server"         ? &options.server
                             : name == "--output"         ? &options.output
                             : name == "--window-manager" ? &options.windowManager
                                                          : nullptr;
        if (value == nullptr)
            return std::nullopt;
        *value = argv[i + 1];
    }
    const bool complete = argc % 2 == 1 && !options.program.empty() && !options.server.empty();
    return complete ? std::optional(options) : std::nullopt;
}

int demonstrate(const DemonstrationOptions& options) {
    std::printf("%s\n\n", kIntroduction);
    DemonstrationDesktop desktop(options);
    desktop.startServer(demonstrationScript());
    desktop.startEditor(demonstrationText());
    desktop.startProgram();
    desktop.check(
        "The program starts and finds its presets",
        [&] { return !desktop.document("QuillmothPrompts.json").empty(); },
        [&] { return desktop.programOutput(); });
    for (const auto part :
         {showSelectionToAnswer, showForm, showTypedCommand, showHistory, showBesideSettings}) {
        if (!part(desktop))
            break;
    }
    std::optional<int> exitCode;
    desktop.check(
        "quillmoth --quit ends the program",
        [&] {
            exitCode = desktop.quitProgram();
            return exitCode == 0;
        },
        [&] { return desktop.programOutput(); }, std::chrono::milliseconds(0));
    const std::string report = options.output + "/report.txt";
    desktop.report().write(report, kIntroduction);
    std::printf("\nPictures and report: %s\n", std::filesystem::absolute(options.output).c_str());
    return desktop.report().allPassed() ? 0 : 1;
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
