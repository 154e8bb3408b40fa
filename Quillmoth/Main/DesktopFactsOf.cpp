#include "Quillmoth/Main/DesktopFactsOf.h"

#include "Foundation/Log.h"
#include "KeyboardShortcuts/Center.h"
#include "KeyboardShortcuts/ShortcutText.h"
#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Linux/Desktop/InstanceRequest.h"
#include "Platform/Linux/Desktop/SessionDisplay.h"
#include "Platform/Linux/Keyring/KeyringUserDefaults.h"
#include "Platform/Linux/Keyring/QtKeychainStore.h"
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtPanelFocus.h"
#include "Platform/Qt/QtPasteboard.h"
#include "Platform/Qt/QtWorkspace.h"
#include "Platform/Qt/UserFolders.h"
#include "Quillmoth/Capture/SelectionCapture.h"
#include "Quillmoth/Main/ServingBackEnds.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QEventLoop>
#include <QGuiApplication>
#include <QSystemTrayIcon>
#include <QTimer>
#include <fstream>

namespace quillmoth {

namespace {

// For a keyring that the bus has to start first.
constexpr int kSlowKeyringMilliseconds = 6000;

bool isOnSessionBus(const QString& name) {
    auto* bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr &&
           (bus->isServiceRegistered(name).value() || bus->activatableServiceNames().value().contains(name));
}

/// The stored hot key, or the one that a first start stores.
std::optional<KeyboardShortcuts::Shortcut> hotKey() {
    platform::FileWriter fileWriter;
    platform::FileUserDefaults defaults(platform::defaultsFilePath(), fileWriter);
    platform::UnavailableHotKeyCenter hotKeys;
    const KeyboardShortcuts::Center center(defaults, hotKeys);
    const KeyboardShortcuts::Name name("showFloatingPanel");
    if (!defaults.object(name.defaultsKey()))
        return KeyboardShortcuts::Shortcut{KeyboardShortcuts::Key::space, KeyboardShortcuts::kFlagOption};
    return center.getShortcut(name);
}

void addCompositor(DesktopFacts& facts, const ServingBackEnds& serving) {
    facts.compositorServing = serving.name;
    facts.wayToCompositor = serving.way;
    if (const platform::WaylandBackEnd* wayland = serving.wayland()) {
        facts.hasLayers = wayland->hasLayers();
        facts.sendsKeys = wayland->sendsKeys();
    }
}

/// What becomes of the hot key in GNOME.
DesktopFacts::Way gnomeHotKey(platform::GnomeBackEnd& gnome, std::uint32_t keyCode, std::uint32_t modifiers,
                              bool isRunning) {
    const bool hasShortcut = platform::GnomeHotKeyCenter::usesCustomShortcut();
    if (const auto holder = gnome.holderOf(keyCode, modifiers))
        return {.state = "not active: GNOME has it for \"" + *holder + "\"",
                .advice = "record another one in the settings, or free it in GNOME's, under Keyboard"};
    if (!gnome.hasExtension() && !hasShortcut)
        return {.state = "not active: GNOME gives programs no hot key",
                .advice =
                    "in the settings, switch on the shortcut of GNOME's or install the extension; or bind "
                    "\"quillmoth --toggle\" to a key in GNOME's settings, under Keyboard"};
    if (!gnome.hasExtension())
        return {.state = "active, as a shortcut of GNOME's"};
    if (!isRunning)
        return {.state = "not active: Quillmoth does not run",
                .advice = "start Quillmoth with \"quillmoth\""};
    return {.state = "active, by the extension"};
}

void addHotKey(DesktopFacts& facts, const ServingBackEnds& serving) {
    platform::UnavailableKeyboardLayout noLayout;
    platform::DesktopBackEnd* session = serving.session();
    platform::KeyboardLayout& layoutOfSession =
        session != nullptr ? session->keyboardLayout() : static_cast<platform::KeyboardLayout&>(noLayout);
    platform::KeyboardLayout& layout = serving.x11 ? serving.x11->keyboardLayout() : layoutOfSession;
    const auto shortcut = hotKey();
    if (!shortcut)
        return;
    facts.hotKey = KeyboardShortcuts::spokenDescription(*shortcut, layout);
    const auto keyCode = static_cast<std::uint32_t>(shortcut->carbonKeyCode);
    const auto modifiers = static_cast<std::uint32_t>(shortcut->carbonModifiers);
    if (serving.gnome)
        facts.hotKeyWay = gnomeHotKey(*serving.gnome, keyCode, modifiers, facts.isRunning);
    if (serving.plain)
        facts.hotKeyWay = {.state = "not active: this compositor gives programs none",
                           .advice = "bind \"quillmoth --toggle\" to a key in its configuration"};
    platform::WaylandBackEnd* wayland = serving.wayland();
    facts.isHotKeyShared =
        (serving.x11 && serving.x11->hotKeyProbe().isShortcutTaken(keyCode, modifiers)) ||
        (wayland != nullptr && wayland->hotKeyCenter().isTakenElsewhere(keyCode, modifiers));
    if (facts.isHotKeyShared && serving.sway)
        facts.hotKeyHolder = "the configuration of sway";
    else if (facts.isHotKeyShared && serving.kwin)
        facts.hotKeyHolder = serving.kwin->hotKeyCenter().holder(keyCode, modifiers);
}

/// Asks nothing of the user, and waits for a few seconds at most.
DesktopFacts::Keyring keyringState() {
    using State = platform::SecretStore::State;
    platform::QtKeychainStore store;
    State found = State::absent;
    QEventLoop loop;
    store.lookUpState([&](State state) {
        found = state;
        loop.quit();
    });
    QTimer::singleShot(kSlowKeyringMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    if (found == State::absent)
        return DesktopFacts::Keyring::absent;
    return found == State::locked ? DesktopFacts::Keyring::locked : DesktopFacts::Keyring::unlocked;
}

DesktopFacts::KeyPlace keyPlace() {
    using Place = platform::KeyringUserDefaults::KeyPlace;
    platform::FileWriter fileWriter;
    const platform::FileUserDefaults defaults(platform::defaultsFilePath(), fileWriter);
    const Place place = platform::KeyringUserDefaults::placeOfKey(defaults);
    if (place == Place::nowhere)
        return DesktopFacts::KeyPlace::nowhere;
    return place == Place::file ? DesktopFacts::KeyPlace::file : DesktopFacts::KeyPlace::keyring;
}

/// Whether the settings want a selection to be copied, rather than read.
bool copiesSelection() {
    platform::FileWriter fileWriter;
    return platform::FileUserDefaults(platform::defaultsFilePath(), fileWriter).boolean("useCopyHack", false);
}

/// What the desktop tells of the application in front.
struct FrontSource {
    std::optional<std::int64_t> process = {};
    std::function<std::optional<std::string>()> primarySelection = {};
    bool runsCommands = false;
    bool takesCopyKeys = true;
    bool takesPaste = true;
};

/// What a capture would find, by the very steps of one; the text itself is dropped.
CaptureResult captureNow(const FrontSource& source) {
    platform::QtMainQueue mainQueue;
    const auto process = [&source] { return source.process; };
    platform::QtWorkspace workspace(mainQueue,
                                    {.process = process, .primarySelection = source.primarySelection});
    platform::AtSpiAccessibility accessibility(
        {.frontProcess = process, .frontPrimarySelection = source.primarySelection});
    return SelectionCapture(accessibility, workspace).capture();
}

DesktopFacts::Front frontOf(const platform::FieldReport& field, const FrontSource& source) {
    DesktopFacts::Front front;
    std::ifstream name("/proc/" + std::to_string(*source.process) + "/comm");
    std::getline(name, front.program);
    front.toolkit = field.toolkit;
    front.isHung = field.isHung;
    front.hasFocus = field.hasFocus;
    front.hasText = field.hasText;
    front.isSecret = field.isSecret;
    front.isEditable = field.isEditable;
    front.takesEdits = field.takesEdits;
    front.runsCommands = source.runsCommands;
    front.takesPaste = source.takesPaste;
    front.isCopiedFrom = copiesSelection() && source.takesCopyKeys;
    const CaptureResult capture = captureNow(source);
    front.way = capture.way;
    front.obstacle = capture.obstacle;
    return front;
}

void addX11(DesktopFacts& facts, platform::X11BackEnd& x11, platform::AtSpiAccessibility& accessibility) {
    facts.windowManager = x11.hotKeyProbe().windowManagerName();
    facts.hasCompositor = x11.screen().isComposited();
    auto& inFront = x11.frontApplication();
    if (const auto process = inFront.processIdentifier()) {
        const platform::FieldReport field = accessibility.reportField(*process);
        const auto hasOtherFocus = [&field](std::int64_t) { return field.hasFocus && !field.isTerminal; };
        facts.front =
            frontOf(field, {.process = process,
                            .primarySelection = [&inFront] { return inFront.primarySelection(); },
                            .runsCommands = inFront.pasteHabit(hasOtherFocus) == platform::PasteHabit::none,
                            .takesCopyKeys = !inFront.selectionInsteadOfCopy(hasOtherFocus),
                            .takesPaste = x11.takesKeys()});
    }
    const platform::X11Pasteboard pasteboard;
    facts.clipboard = {.hasOwner = pasteboard.hasOwner("CLIPBOARD"),
                       .answers = true,
                       .hasManager = pasteboard.hasOwner("CLIPBOARD_MANAGER")};
    if (facts.clipboard.hasOwner) {
        // Only whether it answers; the text itself is dropped.
        [[maybe_unused]] const auto text = pasteboard.string();
        facts.clipboard.answers = pasteboard.isKept();
    }
}

void addWayland(DesktopFacts& facts, platform::WaylandBackEnd& wayland,
                platform::AtSpiAccessibility& accessibility) {
    const auto process = wayland.frontProcess();
    if (!process)
        return;
    const platform::FieldReport field = accessibility.reportField(*process);
    const auto hasOtherFocus = [&field](std::int64_t) { return field.hasFocus && !field.isTerminal; };
    const bool isTerminal = wayland.selectionInsteadOfCopy(hasOtherFocus).has_value();
    facts.front = frontOf(field, {.process = process,
                                  .primarySelection = [&wayland] { return wayland.primarySelection(); },
                                  .runsCommands = isTerminal,
                                  .takesCopyKeys = !isTerminal && wayland.sendsKeys(),
                                  .takesPaste = wayland.sendsKeys()});
}

/// Row by row, by what it is done and why.
std::vector<DesktopFacts::Way> gnomeWays(const platform::GnomeBackEnd& gnome) {
    const bool hasExtension = gnome.hasExtension();
    const std::string offer =
        hasExtension ? "" : "Quillmoth's extension for GNOME Shell does; install it in the settings";
    const std::string keys = hasExtension ? "by the extension" : "as a remote desktop, with the sign of one";
    return {{"Panel",
             hasExtension ? "above all windows and at its place, by the extension"
                          : "an ordinary window, which GNOME places and lets others cover",
             offer.empty() ? "" : "to keep it above the others and at its place: " + offer},
            {"Program in front is known",
             hasExtension ? "by the extension" : "by the active window on the accessibility bus",
             offer.empty() ? "" : "for programs that show nothing there: " + offer},
            gnome.hasClipboard() ? DesktopFacts::Way{"Clipboard and mouse selection",
                                                     "through the X server beside the session"}
                                 : DesktopFacts::Way{"Clipboard and mouse selection",
                                                     "the panel's alone, while it has the keyboard",
                                                     "install the package xwayland and log in again"},
            {"Synthetic keys", gnome.sendsKeys() ? keys : "none"}};
}

void addGnome(DesktopFacts& facts, platform::GnomeBackEnd& gnome,
              platform::AtSpiAccessibility& accessibility) {
    facts.ways = gnomeWays(gnome);
    // The extension serves the running program alone.
    const auto process = accessibility.activeProcess();
    if (!process)
        return;
    const platform::FieldReport field = accessibility.reportField(*process);
    const auto hasOtherFocus = [&field](std::int64_t) { return field.hasFocus && !field.isTerminal; };
    const bool isTerminal = gnome.selectionInsteadOfCopy(hasOtherFocus).has_value();
    facts.front = frontOf(field, {.process = process,
                                  .primarySelection = [&gnome] { return gnome.primarySelection(); },
                                  .runsCommands = isTerminal,
                                  .takesCopyKeys = !isTerminal && gnome.hasExtension() && gnome.sendsKeys(),
                                  .takesPaste = gnome.sendsKeys()});
}

} // namespace

DesktopFacts desktopFacts(const std::string& displayProblem) {
    DesktopFacts facts;
    const ScopedLogCapture quiet([](const std::string&) {});
    facts.sessionType =
        platform::isWaylandSession() ? "wayland" : qEnvironmentVariable("XDG_SESSION_TYPE").toStdString();
    facts.isToolkitOnWayland = QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    facts.displayProblem = displayProblem;
    auto* bus = QDBusConnection::sessionBus().interface();
    facts.hasSessionBus = bus != nullptr;
    facts.isRunning = bus != nullptr && bus->isServiceRegistered(platform::kInstanceService);
    // Without a display a connection to its server is not to be had either, and may be waited for.
    platform::QtPasteboard pasteboard;
    platform::QtPanelFocus panelFocus;
    platform::AtSpiAccessibility accessibility({});
    const ServingBackEnds serving =
        displayProblem.empty()
            ? servingBackEnds({.pasteboard = pasteboard, .panelFocus = panelFocus}, accessibility)
            : ServingBackEnds();
    facts.hasXServer = serving.x11 != nullptr;
    addCompositor(facts, serving);
    addHotKey(facts, serving);
    facts.keyPlace = keyPlace();
    if (facts.hasSessionBus)
        facts.keyring = keyringState();
    facts.answersAccessibility = accessibility.busAnswers();
    facts.isAccessibilityEnabled = accessibility.isProcessTrusted();
    facts.hasTray = displayProblem.empty() && QSystemTrayIcon::isSystemTrayAvailable();
    facts.hasPortal = isOnSessionBus("org.freedesktop.portal.Desktop");
    if (serving.x11)
        addX11(facts, *serving.x11, accessibility);
    else if (serving.wayland() != nullptr)
        addWayland(facts, *serving.wayland(), accessibility);
    else if (serving.gnome)
        addGnome(facts, *serving.gnome, accessibility);
    else if (const auto process = displayProblem.empty() ? accessibility.activeProcess() : std::nullopt)
        facts.front = frontOf(accessibility.reportField(*process),
                              {.process = process, .takesCopyKeys = false, .takesPaste = false});
    return facts;
}

} // namespace quillmoth
