// Tries capture and write-back in real programs and prints what came of it as a table.

#include "Foundation/Log.h"
#include "tests/desktop/matrix/Examination.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace {

using namespace quillmoth::test;

constexpr const char* kUsage =
    "Usage: matrix [--light] [--session x11|sway] [--window-manager NAME] [--only TEXT] [--output FILE]\n"
    "Tries every field in one session and prints a table.\n"
    "  --light    only programs that start quickly\n"
    "  --session  an X server, with this window manager, or else sway\n"
    "  --only     only programs whose name contains the text\n"
    "  --output   adds the table to a file too\n"
    "Exit codes: 0 where no cell says \"no\", 1 otherwise, 2 wrong use.\n";

struct Options {
    bool isLight = false;
    std::string session = "x11";
    std::string windowManager = "openbox";
    std::string only = {};
    std::string output = {};
};

std::optional<Options> optionsFrom(int argc, char** argv) {
    Options options;
    for (int index = 1; index < argc; ++index) {
        const std::string_view name = argv[index];
        if (name == "--light") {
            options.isLight = true;
            continue;
        }
        std::string* value = name == "--window-manager" ? &options.windowManager
                             : name == "--session"      ? &options.session
                             : name == "--only"         ? &options.only
                             : name == "--output"       ? &options.output
                                                        : nullptr;
        if (value == nullptr || index + 1 == argc)
            return std::nullopt;
        *value = argv[++index];
    }
    return options;
}

bool isInstalled(const std::string& executable) {
    if (executable.starts_with('/'))
        return access(executable.c_str(), R_OK) == 0;
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((folder + '/' + executable).c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

std::vector<Row> rowsOf(CapturingDesktop& desktop, const ProgramKind& kind) {
    if (!isInstalled(kind.executable))
        return {rowWithout(kind.name, "not installed")};
    std::vector<Row> rows;
    try {
        const RunningProgram program = kind.open(desktop);
        for (const Field& field : program.fields) {
            rows.push_back(examine(desktop, field));
            std::cerr << field.name << " done\n";
        }
    } catch (const std::exception& problem) {
        std::cerr << kind.name << ": " << problem.what() << '\n';
        desktop.session().saveScreenshot("matrix-failure.png");
        rows.push_back(rowWithout(kind.name, "-"));
        rows.back().cells.front() = "no: did not start";
    }
    waitFor([&] { return !desktop.session().hasWindows(); });
    return rows;
}

std::string line(const std::string& first, const std::vector<std::string>& cells) {
    std::string text = "| " + first + " |";
    for (const std::string& cell : cells)
        text += " " + cell + " |";
    return text + "\n";
}

std::string table(const std::vector<Row>& rows) {
    auto names = columnNames();
    const std::string first = names.front();
    names.erase(names.begin());
    std::string text = line(first, names) + line("---", std::vector<std::string>(names.size(), "---"));
    for (const Row& row : rows)
        text += line(row.name, row.cells);
    return text;
}

/// Tells of each cell that says "no".
bool isFine(const Row& row) {
    const auto columns = columnNames();
    bool result = true;
    for (std::size_t index = 0; index < row.cells.size(); ++index) {
        if (!row.cells[index].starts_with("no:"))
            continue;
        std::cerr << row.name << ", " << columns[index + 1] << ": " << row.cells[index] << '\n';
        result = false;
    }
    return result;
}

int run(const Options& options) {
    const quillmoth::ScopedLogCapture quiet([](const std::string&) {});
    CapturingDesktop desktop(MatrixSession::start(options.session, options.windowManager));
    std::vector<Row> rows;
    for (const ProgramKind& kind : programKinds()) {
        const bool isLeftOut = (options.isLight && !kind.isLight) ||
                               (kind.needsWayland && !desktop.session().isWayland()) ||
                               kind.name.find(options.only) == std::string::npos;
        if (isLeftOut)
            continue;
        for (Row& row : rowsOf(desktop, kind))
            rows.push_back(std::move(row));
    }
    const std::string text = "Under " + desktop.session().name() + ":\n\n" + table(rows) + "\n";
    std::cout << text;
    if (!options.output.empty())
        std::ofstream(options.output, std::ios::app) << text;
    return std::all_of(rows.begin(), rows.end(), isFine) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    const auto options = optionsFrom(argc, argv);
    if (!options) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    return run(*options);
}
