#pragma once

#include "Platform/Bundle.h"

namespace quillmoth::platform {

/// The resources that are compiled into the program and, for what is not among them, the files in
/// "share/quillmoth" beside the folder of the executable. Any thread, while the application object exists.
class ResourceBundle final : public Bundle {
public:
    ResourceBundle();

    [[nodiscard]] std::optional<std::string> urlForResource(std::string_view filename) const override;
    [[nodiscard]] Result<std::string> read(const std::string& resourceURL) const override;

    /// "CFBundleIdentifier", "CFBundleName", "CFBundleShortVersionString" and "CFBundleVersion".
    [[nodiscard]] std::optional<std::string> info(std::string_view key) const override;
};

} // namespace quillmoth::platform
