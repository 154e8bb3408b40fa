#pragma once

#include <functional>
#include <string>

namespace quillmoth::platform {

/// Something that the desktop does for the program once the user has agreed: a switch in the settings. Main
/// thread.
struct DesktopOffer {
    /// What is switched.
    std::string title;
    std::function<bool()> isOn;
    /// What it does, or what became of it and what is to be done.
    std::function<std::string()> note;
    std::function<void(bool isOn)> set;
};

} // namespace quillmoth::platform
