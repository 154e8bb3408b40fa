#include "Quillmoth/Diagnosis/Diagnosis.h"

namespace quillmoth {

namespace {

using Front = DesktopFacts::Front;

using Finding = DesktopFacts::Way;

constexpr const char* kBindToggle = "bind \"quillmoth --toggle\" to a key in the settings of the desktop";

Finding session(const DesktopFacts& facts) {
    const std::string type = facts.sessionType.empty() ? "unknown" : facts.sessionType;
    if (!facts.displayProblem.empty())
        return {"Session", type + ", without a display", facts.displayProblem};
    if (facts.hasXServer)
        return {"Session", type + ", with an X server"};
    if (!facts.compositorServing.empty())
        return {"Session", type + ", served by " + facts.compositorServing + ' ' + facts.wayToCompositor};
    if (type == "wayland" && !facts.isToolkitOnWayland)
        return {"Session", "wayland, used through the X server beside it",
                "install the package qt6-wayland; the panel is an ordinary window here; " +
                    std::string(kBindToggle)};
    if (type == "wayland")
        return {"Session", "wayland", "the panel is an ordinary window here; " + std::string(kBindToggle)};
    return {"Session", type + ", without an X server",
            "the panel is an ordinary window here; " + std::string(kBindToggle)};
}

Finding windowManager(const DesktopFacts& facts) {
    if (!facts.windowManager.empty())
        return {"Window manager", facts.windowManager};
    return {"Window manager", "none",
            "without one the program in front is not known; start a window manager that supports EWMH"};
}

Finding compositor(const DesktopFacts& facts) {
    return {"Compositor", facts.hasCompositor ? "running" : "none; the panel is drawn with sharp corners"};
}

Finding hotKey(const DesktopFacts& facts) {
    if (facts.hotKeyWay)
        return {"Hot key", facts.hotKey + ", " + facts.hotKeyWay->state, facts.hotKeyWay->advice};
    const bool isServed = facts.hasXServer || !facts.compositorServing.empty();
    if (!facts.compositorServing.empty() && facts.isHotKeyShared)
        return {"Hot key", facts.hotKey + ", not active: " + facts.hotKeyHolder + " has it",
                "record another one in the settings, or take it away there"};
    if (!isServed && facts.sessionType == "wayland")
        return {"Hot key", facts.hotKey.empty() ? "none" : facts.hotKey + ", not active on Wayland",
                kBindToggle};
    if (!isServed)
        return {"Hot key",
                (facts.hotKey.empty() ? "none; one" : facts.hotKey + ", which") + " needs an X server",
                kBindToggle};
    if (facts.hotKey.empty())
        return {"Hot key", "none", "record one in the settings, or " + std::string(kBindToggle)};
    const std::string holder = facts.windowManager.empty() ? "another program" : facts.windowManager;
    const std::string shared = facts.isHotKeyShared ? "; " + holder + " has it too" : "";
    if (!facts.isRunning)
        return {"Hot key", facts.hotKey + ", not active: Quillmoth does not run" + shared,
                "start Quillmoth with \"quillmoth\""};
    if (facts.isHotKeyShared)
        return {"Hot key", facts.hotKey + ", active" + shared,
                "where it does not open the panel, record another one in the settings"};
    return {"Hot key", facts.hotKey + ", active"};
}

Finding panel(const DesktopFacts& facts) {
    if (facts.hasLayers)
        return {"Panel", "above all windows, on a layer of " + facts.compositorServing};
    return {"Panel", "an ordinary window: " + facts.compositorServing + " has no layers"};
}

Finding syntheticKeys(const DesktopFacts& facts) {
    if (facts.sendsKeys)
        return {"Synthetic keys", "sent through " + facts.compositorServing};
    if (facts.compositorServing != "KWin")
        return {"Synthetic keys", "none: " + facts.compositorServing + " takes none"};
    return {
        "Synthetic keys", "none: KWin takes them from installed programs alone",
        "install Quillmoth, or start it once and log in again; until then an answer that cannot be written "
        "through accessibility goes to the clipboard"};
}

Finding key(const DesktopFacts& facts) {
    using Keyring = DesktopFacts::Keyring;
    const bool hasKeyring = facts.keyring != Keyring::absent;
    switch (facts.keyPlace) {
    case DesktopFacts::KeyPlace::nowhere:
        return {"Key", hasKeyring ? "none; the desktop has a keyring for one" : "none"};
    case DesktopFacts::KeyPlace::file:
        return {"Key", hasKeyring ? "in the settings file; the desktop has a keyring for it"
                                  : "in the settings file; the desktop has no keyring"};
    case DesktopFacts::KeyPlace::keyring:
        break;
    }
    if (!hasKeyring)
        return {"Key", "in the keyring, which does not answer",
                "start the Secret Service of the desktop, such as gnome-keyring, or fill the key in again in "
                "the settings"};
    return {"Key", facts.keyring == Keyring::locked ? "in the keyring, locked until the first request"
                                                    : "in the keyring"};
}

Finding accessibility(const DesktopFacts& facts) {
    if (!facts.answersAccessibility)
        return {
            "Accessibility bus", "does not answer",
            "install the package at-spi2-core and log in again; until then switch on \"Use an alternative "
            "method to obtain the text\" in the settings"};
    if (!facts.isAccessibilityEnabled)
        return {"Accessibility bus", "answers, but is not enabled",
                "switch it on in the settings of Quillmoth, then restart the programs that they name"};
    return {"Accessibility bus", "enabled"};
}

std::string nameOf(const Front& front) {
    return front.program + (front.toolkit.empty() ? "" : " (" + front.toolkit + ")");
}

Finding capture(const Front& front) {
    constexpr const char* kByCopy =
        "switch on \"Use an alternative method to obtain the text\" in the settings";
    if (front.isHung)
        return {"Capture", "not possible now: the program does not answer", "wait until it does"};
    if (front.isSecret)
        return {"Capture", "never: the focus is in a password field"};
    if (front.isCopiedFrom)
        return {"Capture", "by a copy, as the settings say"};
    if (!front.obstacle)
        return {"Capture",
                front.way == CaptureWay::primary ? "through its mouse selection" : "through accessibility"};
    if (front.hasText)
        return {"Capture", "through accessibility; nothing is selected now"};
    if (front.runsCommands)
        return {"Capture", "through its mouse selection; nothing is selected now"};
    if (front.hasFocus)
        return {"Capture", "not through accessibility: what has the focus shows no text",
                "click into a text, or " + std::string(kByCopy)};
    return {"Capture", "not through accessibility: the program shows nothing there",
            "restart it, if it was started before accessibility was switched on; otherwise " +
                std::string(kByCopy)};
}

Finding writeBack(const Front& front) {
    if (front.isHung || front.isSecret)
        return {"Write-back", front.isHung ? "not possible now" : "never into a password field"};
    if (front.takesEdits && front.isEditable)
        return {"Write-back", "through accessibility"};
    if (front.runsCommands)
        return {"Write-back", "never into a terminal, which would run the lines of an answer",
                "copy the answer with Ctrl+Shift+C and paste it"};
    if (front.takesPaste && (front.isEditable || !front.hasText))
        return {"Write-back", "by pasting"};
    return {"Write-back", "not possible: nothing there can be edited",
            "copy the answer with Ctrl+Shift+C and paste it"};
}

Finding clipboard(const DesktopFacts::Clipboard& clipboard) {
    const std::string manager = clipboard.hasManager ? "a clipboard manager runs" : "no clipboard manager";
    if (clipboard.hasOwner && !clipboard.answers)
        return {"Clipboard", "its owner does not answer; " + manager,
                "copy something else; until then nothing is copied or pasted for you"};
    const std::string state = clipboard.hasOwner ? "works; " : "empty; ";
    if (!clipboard.hasManager)
        return {"Clipboard", state + manager,
                "what Quillmoth put there is gone when it quits; install one to keep it"};
    return {"Clipboard", state + manager};
}

Finding tray(const DesktopFacts& facts) {
    if (facts.hasTray)
        return {"Tray", "there"};
    return {"Tray", "none",
            "reach the program with the hot key, \"quillmoth --toggle\" and \"quillmoth --settings\""};
}

Finding portal(const DesktopFacts& facts) {
    return {"Desktop portal", facts.hasPortal ? "there" : "none; web pages are opened by xdg-open"};
}

/// What there is to be told where no window can be shown.
std::vector<Finding> withoutDisplay(const DesktopFacts& facts) {
    std::vector<Finding> findings = {session(facts),
                                     {"Hot key", facts.hotKey.empty() ? "none" : facts.hotKey}};
    if (!facts.hasSessionBus) {
        findings.push_back({"Session bus", "none", "log in to a desktop session"});
        return findings;
    }
    findings.push_back({"Quillmoth", facts.isRunning ? "runs in this session" : "does not run"});
    findings.push_back(key(facts));
    findings.push_back(accessibility(facts));
    findings.push_back(portal(facts));
    return findings;
}

std::vector<Finding> withDisplay(const DesktopFacts& facts) {
    std::vector<Finding> findings = {session(facts)};
    const bool isOnWayland = facts.sessionType == "wayland";
    if (!isOnWayland)
        findings.insert(findings.end(), {windowManager(facts), compositor(facts)});
    findings.push_back(hotKey(facts));
    if (!facts.compositorServing.empty() && facts.ways.empty())
        findings.insert(findings.end(), {panel(facts), syntheticKeys(facts)});
    findings.insert(findings.end(), facts.ways.begin(), facts.ways.end());
    findings.insert(findings.end(), {key(facts), accessibility(facts)});
    if (facts.front) {
        findings.push_back({"Program in front", nameOf(*facts.front)});
        findings.push_back(capture(*facts.front));
        findings.push_back(writeBack(*facts.front));
    } else {
        findings.push_back({"Program in front", "none", "click into the window that you want to ask about"});
    }
    if (!isOnWayland)
        findings.push_back(clipboard(facts.clipboard));
    findings.insert(findings.end(), {tray(facts), portal(facts)});
    return findings;
}

std::string lineOf(const Finding& finding) {
    std::string line = finding.subject + ": " + finding.state;
    return finding.advice.empty() ? line : line + "\n    -> " + finding.advice;
}

} // namespace

std::vector<std::string> diagnosis(const DesktopFacts& facts) {
    const std::vector<Finding> findings =
        facts.displayProblem.empty() ? withDisplay(facts) : withoutDisplay(facts);
    std::vector<std::string> lines;
    lines.reserve(findings.size());
    for (const Finding& finding : findings)
        lines.push_back(lineOf(finding));
    return lines;
}

} // namespace quillmoth
