#pragma once

#include "Quillmoth/Capture/CaptureResult.h"

#include <optional>
#include <string>
#include <vector>

namespace quillmoth {

/// What the program finds of the desktop session around it. Nothing that the user wrote is in here.
struct DesktopFacts {
    /// As in XDG_SESSION_TYPE; empty where nobody says.
    std::string sessionType = {};
    /// Why no window can be shown, and what to do; empty where one can.
    std::string displayProblem = {};
    bool hasSessionBus = true;
    bool hasXServer = false;
    /// In a Wayland session: the toolkit shows windows there itself, rather than on the X server beside it.
    bool isToolkitOnWayland = false;
    /// The Wayland compositor that serves the program; empty for none.
    std::string compositorServing = {};
    /// How it is spoken to, such as "through its socket".
    std::string wayToCompositor = {};
    /// It shows the panel above all windows.
    bool hasLayers = false;
    /// It takes keys for other programs.
    bool sendsKeys = false;
    /// The name that it gives itself; empty where none runs.
    std::string windowManager = {};
    bool hasCompositor = false;

    bool isRunning = false;
    std::string hotKey = {};
    /// Another program has the hot key too.
    bool isHotKeyShared = false;
    /// Which; empty where that is not known.
    std::string hotKeyHolder = {};

    /// A row of the page, and what to do about it; empty where there is nothing to do.
    struct Way {
        std::string subject = {};
        std::string state = {};
        std::string advice = {};
    };

    /// What becomes of the hot key on a desktop that has its own way with it.
    std::optional<Way> hotKeyWay = {};
    /// How the desktop serves what the program needs of it.
    std::vector<Way> ways = {};

    enum class KeyPlace { nowhere, file, keyring };
    enum class Keyring { absent, locked, unlocked };

    KeyPlace keyPlace = KeyPlace::nowhere;
    /// The one of the desktop.
    Keyring keyring = Keyring::absent;

    bool answersAccessibility = false;
    bool isAccessibilityEnabled = false;

    struct Front {
        /// The name of the process.
        std::string program = {};
        std::string toolkit = {};
        bool isHung = false;
        /// An element has the focus.
        bool hasFocus = false;
        bool hasText = false;
        bool isSecret = false;
        bool isEditable = false;
        bool takesEdits = false;
        /// What a capture finds there now, without the text.
        CaptureWay way = CaptureWay::selectedText;
        std::optional<CaptureObstacle> obstacle = {};
        /// It is a terminal.
        bool runsCommands = false;
        /// Keys can be sent to it.
        bool takesPaste = true;
        /// Its selection is copied rather than read, as the settings want.
        bool isCopiedFrom = false;
    };

    std::optional<Front> front = {};

    struct Clipboard {
        bool hasOwner = false;
        bool answers = false;
        bool hasManager = false;
    };

    Clipboard clipboard = {};
    bool hasTray = false;
    bool hasPortal = false;
};

/// A page of plain lines for the user: what there is, and behind an arrow what to do about what is not good.
[[nodiscard]] std::vector<std::string> diagnosis(const DesktopFacts& facts);

} // namespace quillmoth
