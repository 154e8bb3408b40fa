#include "Quillmoth/Main/DesktopFactsOf.h"

#include "Foundation/Log.h"
#include "KeyboardShortcuts/Center.h"
#include "KeyboardShortcuts/ShortcutText.h"
#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Linux/Desktop/InstanceRequest.h"
#include "Platform/Linux/Keyring/KeyringUserDefaults.h"
#include "Platform/Linux/Keyring/QtKeychainStore.h"
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/X11BackEnd.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtWorkspace.h"
#include "Platform/Qt/UserFolders.h"
#include "Quillmoth/Capture/SelectionCapture.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QEventLoop>
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

void addHotKey(DesktopFacts& facts, platform::X11BackEnd* x11) {
    platform::UnavailableKeyboardLayout noLayout;
    platform::KeyboardLayout& layout =
        x11 != nullptr ? static_cast<platform::KeyboardLayout&>(x11->keyboardLayout()) : noLayout;
    const auto shortcut = hotKey();
    if (!shortcut)
        return;
    facts.hotKey = KeyboardShortcuts::spokenDescription(*shortcut, layout);
    facts.isHotKeyShared = x11 != nullptr && x11->hotKeyProbe().isShortcutTaken(
                                                 static_cast<std::uint32_t>(shortcut->carbonKeyCode),
                                                 static_cast<std::uint32_t>(shortcut->carbonModifiers));
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

/// What a capture would find, by the very steps of one; the text itself is dropped.
CaptureResult captureNow(platform::X11FrontApplication& x11) {
    platform::QtMainQueue mainQueue;
    platform::QtWorkspace workspace(mainQueue,
                                    {.process = [&x11] { return x11.processIdentifier(); },
                                     .primarySelection = [&x11] { return x11.primarySelection(); }});
    platform::AtSpiAccessibility accessibility(
        {.frontProcess = [&x11] { return x11.processIdentifier(); },
         .frontPrimarySelection = [&x11] { return x11.primarySelection(); }});
    return SelectionCapture(accessibility, workspace).capture();
}

DesktopFacts::Front frontOf(platform::AtSpiAccessibility& accessibility, platform::X11BackEnd& x11,
                            std::int64_t process) {
    const platform::FieldReport field = accessibility.reportField(process);
    const auto hasOtherFocus = [&field](std::int64_t) { return field.hasFocus && !field.isTerminal; };
    const auto habit = x11.frontApplication().pasteHabit(hasOtherFocus);
    DesktopFacts::Front front;
    std::ifstream name("/proc/" + std::to_string(process) + "/comm");
    std::getline(name, front.program);
    front.toolkit = field.toolkit;
    front.isHung = field.isHung;
    front.hasFocus = field.hasFocus;
    front.hasText = field.hasText;
    front.isSecret = field.isSecret;
    front.isEditable = field.isEditable;
    front.takesEdits = field.takesEdits;
    front.runsCommands = habit == platform::PasteHabit::none;
    front.isCopiedFrom = copiesSelection() && !x11.frontApplication().selectionInsteadOfCopy(hasOtherFocus);
    const CaptureResult capture = captureNow(x11.frontApplication());
    front.way = capture.way;
    front.obstacle = capture.obstacle;
    return front;
}

} // namespace

DesktopFacts desktopFacts(const std::string& displayProblem) {
    DesktopFacts facts;
    const ScopedLogCapture quiet([](const std::string&) {});
    facts.sessionType = qEnvironmentVariable("XDG_SESSION_TYPE").toStdString();
    facts.displayProblem = displayProblem;
    auto* bus = QDBusConnection::sessionBus().interface();
    facts.hasSessionBus = bus != nullptr;
    facts.isRunning = bus != nullptr && bus->isServiceRegistered(platform::kInstanceService);
    // Without a display a connection to its server is not to be had either, and may be waited for.
    auto created = displayProblem.empty() ? platform::X11BackEnd::create() : Error{displayProblem};
    const auto x11 = created ? std::move(*created) : nullptr;
    facts.hasXServer = x11 != nullptr;
    addHotKey(facts, x11.get());
    facts.keyPlace = keyPlace();
    if (facts.hasSessionBus)
        facts.keyring = keyringState();
    platform::AtSpiAccessibility accessibility({});
    facts.answersAccessibility = accessibility.busAnswers();
    facts.isAccessibilityEnabled = accessibility.isProcessTrusted();
    facts.hasTray = displayProblem.empty() && QSystemTrayIcon::isSystemTrayAvailable();
    facts.hasPortal = isOnSessionBus("org.freedesktop.portal.Desktop");
    if (!x11)
        return facts;
    facts.windowManager = x11->hotKeyProbe().windowManagerName();
    facts.hasCompositor = x11->screen().isComposited();
    if (const auto process = x11->frontApplication().processIdentifier())
        facts.front = frontOf(accessibility, *x11, *process);
    const platform::X11Pasteboard pasteboard;
    facts.clipboard = {.hasOwner = pasteboard.hasOwner("CLIPBOARD"),
                       .answers = true,
                       .hasManager = pasteboard.hasOwner("CLIPBOARD_MANAGER")};
    if (facts.clipboard.hasOwner) {
        // Only whether it answers; the text itself is dropped.
        [[maybe_unused]] const auto text = pasteboard.string();
        facts.clipboard.answers = pasteboard.isKept();
    }
    return facts;
}

} // namespace quillmoth
