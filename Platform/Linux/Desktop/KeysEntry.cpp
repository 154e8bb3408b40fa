#include "Platform/Linux/Desktop/KeysEntry.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Desktop/EntryFile.h"
#include "Platform/Linux/Desktop/XDGLoginItems.h"

#include <QStandardPaths>

namespace quillmoth::platform {

Result<void> writeKeysEntry(const std::string& executable, const std::filesystem::path& folder) {
    const std::string program = quotedForExec(executable);
    return writeEntryFile(folder / "quillmoth-keys.desktop",
                          "[Desktop Entry]\n"
                          "Type=Application\n"
                          "Version=1.4\n"
                          "Name=Quillmoth\n"
                          "Comment=Lets Quillmoth paste answers into other programs\n"
                          "Icon=quillmoth\n"
                          // The entry counts for nothing once the program has gone.
                          "TryExec=" +
                              program + "\nExec=" + program +
                              "\n"
                              "Terminal=false\n"
                              "NoDisplay=true\n"
                              "StartupNotify=false\n"
                              "X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n");
}

void offerKeysEntry(const std::string& executable) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
    const auto written = writeKeysEntry(executable, folder.toStdString());
    if (!written)
        logLine("KWin will not let Quillmoth paste into other programs. " + written.error().description);
}

} // namespace quillmoth::platform
