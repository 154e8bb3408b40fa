#include "Platform/Linux/Gnome/GnomeBackEnd.h"

#include "Platform/Linux/Gnome/GnomeExtensionFiles.h"
#include "Platform/Linux/Gnome/GnomeKeySettings.h"
#include "Platform/Linux/Gnome/MutterKeys.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr const char* kShortcutPurpose = "GNOME runs “quillmoth --toggle” when the hot key is pressed. "
                                         "Switching this off takes the shortcut out of "
                                         "GNOME’s settings again.";
constexpr const char* kExtensionPurpose = "It adds to what works here: the hot key as it is released, the "
                                          "panel above all windows and where you left "
                                          "it, the program in front for certain, and pasting without the "
                                          "sign of a shared screen. It serves Quillmoth "
                                          "alone.";
constexpr const char* kNextLogIn = "Installed. GNOME starts it at your next log-in.";
constexpr const char* kRuns = "Installed, and at work.";

bool isShellOnBus() {
    auto* bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr && bus->isServiceRegistered(QStringLiteral("org.gnome.Shell")).value();
}

} // namespace

Result<std::unique_ptr<GnomeBackEnd>> GnomeBackEnd::create(const Toolkit& toolkit) {
    if (!qGuiApp || !QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        return Error{"the toolkit does not run on Wayland"};
    if (!isShellOnBus() && !MutterKeys::areThere())
        return Error{"neither the shell nor its compositor are on the session bus"};
    auto wayland = WaylandConnection::open();
    if (!wayland)
        return wayland.error();
    return std::unique_ptr<GnomeBackEnd>(new GnomeBackEnd(std::move(*wayland), toolkit));
}

GnomeBackEnd::GnomeBackEnd(std::unique_ptr<WaylandConnection> wayland, Toolkit toolkit)
    : toolkit_(std::move(toolkit)), wayland_(std::move(wayland)), layout_(*wayland_),
      front_(extension_, toolkit_.activeProcess), clipboard_(XwaylandClipboard::create()),
      keys_(extension_, [this](const std::string& name) { return layout_.keycodeOf(name); }),
      hotKeys_(extension_, layout_, toolkit_.toggleCommand) {
    if (clipboard_) {
        clipboard_->onPrimaryChange = [this] { notePrimary(); };
        keys_.setVeto([this] { return !clipboard_->pasteboard().isKept(); });
    }
    wayland_->start();
}

GnomeBackEnd::~GnomeBackEnd() {
    wayland_->stop();
}

std::optional<std::int64_t> GnomeBackEnd::frontProcess() {
    const auto window = front_.window();
    return window ? std::optional(window->process) : std::nullopt;
}

void GnomeBackEnd::notePrimary() {
    const bool isOwn = QGuiApplication::clipboard()->ownsSelection();
    primaryProcess_ = isOwn ? std::nullopt : frontProcess();
}

std::optional<std::string> GnomeBackEnd::primarySelection() {
    if (!clipboard_ || !primaryProcess_ || primaryProcess_ != frontProcess())
        return std::nullopt;
    return XwaylandClipboard::primary();
}

std::optional<std::string> GnomeBackEnd::selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) {
    return front_.isTerminal(hasOtherFocus) ? std::optional(primarySelection().value_or("")) : std::nullopt;
}

PasteOutcome GnomeBackEnd::paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                                 const OtherFocus& hasOtherFocus) {
    const auto process = frontProcess();
    if (front_.isTerminal(hasOtherFocus))
        return PasteOutcome::terminal;
    // What is not known may be a terminal.
    if (!process || !sendsKeys() || front_.hasOwnPasteKeys())
        return PasteOutcome::impossible;
    if (text.empty())
        return keys_.postDelete() ? PasteOutcome::fetched : PasteOutcome::impossible;
    return clipboard_->paste(
        text, *process,
        {.paste = [this] { return keys_.pressPaste(); }, .release = [this] { keys_.releasePaste(); }},
        deadline);
}

void GnomeBackEnd::withdrawPaste() {
    if (clipboard_)
        clipboard_->pasteboard().takeBack();
}

std::vector<DesktopOffer> GnomeBackEnd::offers() {
    std::vector<DesktopOffer> all;
    if (hasCustomShortcuts())
        all.push_back(shortcutOffer());
    if (!shellVersion().empty())
        all.push_back(extensionOffer());
    return all;
}

DesktopOffer GnomeBackEnd::shortcutOffer() {
    return {.title = "Open the panel with a shortcut of GNOME’s",
            .isOn = [] { return GnomeHotKeyCenter::usesCustomShortcut(); },
            .note = [] { return std::string(kShortcutPurpose); },
            .set = [this](bool isOn) { hotKeys_.setUsesCustomShortcut(isOn); }};
}

DesktopOffer GnomeBackEnd::extensionOffer() {
    return {.title = "Install Quillmoth’s extension for GNOME Shell",
            .isOn = [] { return isShellExtensionInstalled(); },
            .note =
                [this] {
                    if (!extensionNote_.empty())
                        return extensionNote_;
                    if (!isShellExtensionInstalled())
                        return std::string(kExtensionPurpose);
                    return std::string(extension_.isThere() ? kRuns : kNextLogIn);
                },
            .set =
                [this](bool isOn) {
                    extensionNote_ = isOn ? installShellExtension(shellVersion()) : std::string();
                    if (!isOn)
                        removeShellExtension();
                }};
}

} // namespace quillmoth::platform
