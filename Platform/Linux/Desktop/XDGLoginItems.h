#pragma once

#include "Platform/LoginItem.h"

#include <filesystem>
#include <string>

namespace quillmoth::platform {

/// Login items as files "<identifier>.desktop" (freedesktop Desktop Application Autostart Specification).
class XDGLoginItems final : public LoginItems {
public:
    /// `command` is the absolute path of the program that items start.
    XDGLoginItems(std::filesystem::path folder, std::string command);

    /// Where there is a file that neither hides itself nor is switched off by a session tool.
    [[nodiscard]] bool isEnabled(const std::string& identifier) const override;
    Result<void> registerItem(const std::string& identifier) override;
    Result<void> unregisterItem(const std::string& identifier) override;

private:
    [[nodiscard]] std::filesystem::path file(const std::string& identifier) const;

    std::filesystem::path folder_;
    std::string command_;
};

/// $XDG_CONFIG_HOME/autostart, or ~/.config/autostart.
[[nodiscard]] std::filesystem::path autostartFolder();

/// `path` as one argument of an Exec key (Desktop Entry Specification, "The Exec key"), quoted where it must
/// be.
[[nodiscard]] std::string quotedForExec(const std::string& path);

} // namespace quillmoth::platform
