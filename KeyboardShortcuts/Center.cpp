#include "KeyboardShortcuts/Center.h"

#include "Foundation/Log.h"

#include <memory>
#include <set>
#include <utility>

namespace quillmoth::KeyboardShortcuts {

Center::Center(platform::UserDefaults& userDefaults, platform::HotKeyCenter& hotKeyCenter)
    : userDefaults_(userDefaults), registry_(hotKeyCenter), self_(std::make_shared<Center*>(this)) {}

std::optional<Shortcut> Center::getShortcut(const Name& name) const {
    const auto text = userDefaults_.string(name.defaultsKey());
    return text ? Shortcut::fromJSON(*text) : std::nullopt;
}

void Center::setShortcut(const std::optional<Shortcut>& shortcut, const Name& name) {
    const auto former = getShortcut(name);
    if (former)
        unregister(*former);
    else if (!shortcut)
        return;
    // Before the store changes, which tells at once.
    if (known_.contains(name))
        known_[name] = shortcut;
    if (shortcut) {
        registerIfNeeded(*shortcut);
        userDefaults_.set(name.defaultsKey(), shortcut->toJSON());
    } else {
        storeCleared(name);
    }
    changed_.emit(name);
}

void Center::followStore() {
    storeChange_ = userDefaults_.onChange([this] { takeStoredChanges(); });
}

void Center::takeStoredChanges() {
    // A copy: a subscriber may set a slot.
    const auto former = known_;
    for (const auto& [name, shortcut] : former) {
        const auto stored = getShortcut(name);
        if (stored == shortcut)
            continue;
        known_[name] = stored;
        if (shortcut)
            unregister(*shortcut);
        if (stored)
            registerIfNeeded(*stored);
        changed_.emit(name);
    }
}

void Center::storeCleared(const Name& name) {
    // Without the mark the default would come back at the next start.
    if (name.defaultShortcut())
        userDefaults_.set(name.defaultsKey(), false);
    else
        userDefaults_.remove(name.defaultsKey());
}

bool Center::hasStoredObject(const Name& name) const {
    return userDefaults_.object(name.defaultsKey()).has_value();
}

bool Center::hasUnusableShortcut(const Name& name) const {
    return userDefaults_.string(name.defaultsKey()) && !getShortcut(name);
}

void Center::onKeyDown(const Name& name, Action action) {
    keyDownActions_[name].push_back(std::move(action));
    registerFor(name);
}

void Center::onKeyUp(const Name& name, Action action) {
    keyUpActions_[name].push_back(std::move(action));
    registerFor(name);
}

Subscription Center::events(const Name& name, Listener listener) {
    auto down = std::make_shared<Subscription>(events(EventType::keyDown, name, listener));
    auto up = std::make_shared<Subscription>(events(EventType::keyUp, name, std::move(listener)));
    return Subscription([down, up] {
        down->reset();
        up->reset();
    });
}

Subscription Center::events(EventType type, const Name& name, Listener listener) {
    const auto identifier = ++lastStreamIdentifier_;
    streams(type)[name].emplace(identifier, std::move(listener));
    registerFor(name);
    return Subscription([weak = std::weak_ptr(self_), type, name, identifier] {
        const auto self = weak.lock();
        if (!self)
            return;
        auto& streams = (*self)->streams(type);
        const auto found = streams.find(name);
        if (found == streams.end())
            return;
        found->second.erase(identifier);
        if (found->second.empty())
            streams.erase(found);
    });
}

Subscription Center::on(EventType type, const Name& name, Action action) {
    return events(type, name, [action = std::move(action)](EventType) { action(); });
}

void Center::enable(const Name& name) {
    registerFor(name);
}

void Center::disable(const Name& name) {
    if (const auto shortcut = getShortcut(name))
        unregister(*shortcut);
}

void Center::reset(std::span<const Name> names) {
    for (const auto& name : names)
        setShortcut(name.defaultShortcut(), name);
}

void Center::removeAllHandlers() {
    std::set<Name> names;
    for (const auto* table : {&keyDownActions_, &keyUpActions_}) {
        for (const auto& [name, actions] : *table)
            names.insert(name);
    }
    for (const auto* table : {&keyDownStreams_, &keyUpStreams_}) {
        for (const auto& [name, listeners] : *table)
            names.insert(name);
    }
    for (const auto& name : names) {
        if (const auto shortcut = getShortcut(name))
            unregister(*shortcut);
    }
    keyDownActions_.clear();
    keyUpActions_.clear();
    keyDownStreams_.clear();
    keyUpStreams_.clear();
    activeShortcuts_.clear();
}

void Center::registerFor(const Name& name) {
    const auto shortcut = getShortcut(name);
    known_[name] = shortcut;
    if (shortcut)
        registerIfNeeded(*shortcut);
    else if (hasUnusableShortcut(name))
        logLine("The shortcut that is stored as \"" + name.defaultsKey() +
                "\" cannot be used. Record another one.");
}

void Center::registerIfNeeded(const Shortcut& shortcut) {
    if (activeShortcuts_.contains(shortcut))
        return;
    registry_.registerShortcut(
        shortcut, [this](const Shortcut& pressed) { dispatch(EventType::keyDown, pressed); },
        [this](const Shortcut& released) { dispatch(EventType::keyUp, released); });
    activeShortcuts_.insert(shortcut);
}

void Center::unregister(const Shortcut& shortcut) {
    registry_.unregisterShortcut(shortcut);
    activeShortcuts_.erase(shortcut);
}

void Center::dispatch(EventType type, const Shortcut& shortcut) {
    if (recordingPause_)
        return;
    // Copies: a handler may add or remove handlers, or change a slot.
    const auto actions = type == EventType::keyDown ? keyDownActions_ : keyUpActions_;
    for (const auto& [name, list] : actions) {
        if (getShortcut(name) != shortcut)
            continue;
        for (const auto& action : list)
            action();
    }
    const auto streams = this->streams(type);
    for (const auto& [name, listeners] : streams) {
        if (getShortcut(name) != shortcut)
            continue;
        for (const auto& [identifier, listener] : listeners) {
            if (hasStream(type, name, identifier))
                listener(type);
        }
    }
}

bool Center::hasStream(EventType type, const Name& name, std::uint64_t identifier) {
    const auto& streams = this->streams(type);
    const auto found = streams.find(name);
    return found != streams.end() && found->second.contains(identifier);
}

} // namespace quillmoth::KeyboardShortcuts
