#include "Platform/Linux/Desktop/SchemeHandler.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Desktop/EntryFile.h"
#include "Platform/Linux/Desktop/XDGLoginItems.h"

#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

constexpr const char* kInstalledName = "org.quillmoth.Quillmoth.desktop";
// An entry of the user's own hides an installed one of the same name.
constexpr const char* kOwnName = "quillmoth-links.desktop";

/// A path as the value of a key (Desktop Entry Specification 1.5, "Possible value types").
std::string escapedValue(const std::string& path) {
    std::string escaped;
    for (const char c : path)
        escaped += c == '\\' ? std::string("\\\\") : c == '\n' ? std::string("\\n") : std::string(1, c);
    return escaped;
}

std::string entryFor(const std::string& executable) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=Quillmoth\n"
           "Comment=Ask an AI model about the text that is selected in any application\n"
           "Icon=quillmoth\n"
           // The entry counts for nothing once the build folder has gone.
           "TryExec=" +
           escapedValue(executable) + "\nExec=" + quotedForExec(executable) +
           " %U\n"
           "Terminal=false\n"
           "NoDisplay=true\n"
           "StartupNotify=false\n"
           "MimeType=x-scheme-handler/quillmoth;\n";
}

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string withoutCommands(const std::string& entry) {
    std::istringstream lines(entry);
    std::string rest;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("Exec=") && !line.starts_with("TryExec="))
            rest += line + '\n';
    }
    return rest;
}

/// Whether a start from some build folder wrote it.
bool isOurs(const fs::path& path) {
    return withoutCommands(contentOf(path)) == withoutCommands(entryFor({}));
}

bool removeOurs(const fs::path& path) {
    std::error_code ignored;
    return isOurs(path) && fs::remove(path, ignored);
}

} // namespace

Result<std::string> arrangeSchemeEntries(const std::string& executable,
                                         const std::vector<fs::path>& folders) {
    const fs::path own = folders.front() / kOwnName;
    const bool hadFormer = removeOurs(folders.front() / kInstalledName);
    const bool isInstalled = std::any_of(folders.begin(), folders.end(), [](const fs::path& folder) {
        std::error_code ignored;
        return fs::exists(folder / kInstalledName, ignored);
    });
    if (isInstalled)
        return std::string(removeOurs(own) || hadFormer ? kInstalledName : "");
    const std::string entry = entryFor(executable);
    if (contentOf(own) == entry)
        return std::string(hadFormer ? kOwnName : "");
    if (const auto written = writeEntryFile(own, entry); !written)
        return written.error();
    return std::string(kOwnName);
}

void offerSchemeHandler(const std::string& executable) {
    std::vector<fs::path> folders;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
        folders.emplace_back(folder.toStdString());
    if (folders.empty())
        return;
    const auto handler = arrangeSchemeEntries(executable, folders);
    if (!handler)
        logLine("Links to Quillmoth will not open it. " + handler.error().description);
    else if (!handler->empty() &&
             !QProcess::startDetached(QStringLiteral("xdg-mime"),
                                      {QStringLiteral("default"), QString::fromStdString(*handler),
                                       QStringLiteral("x-scheme-handler/quillmoth")}))
        logLine("Links to Quillmoth may not open it: xdg-mime is not installed.");
}

} // namespace quillmoth::platform
