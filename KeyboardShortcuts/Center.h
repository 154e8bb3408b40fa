#pragma once

#include "Foundation/Subscription.h"
#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"
#include "KeyboardShortcuts/EventType.h"
#include "KeyboardShortcuts/Name.h"
#include "Platform/UserDefaults.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

namespace quillmoth::KeyboardShortcuts {

/// The program's shortcuts by name: what is stored for each, what runs on it. The store is read anew at every
/// use. Main thread; made once.
class Center {
public:
    using Action = std::function<void()>;
    using Listener = std::function<void(EventType)>;

    /// The services outlive the object.
    Center(platform::UserDefaults& userDefaults, platform::HotKeyCenter& hotKeyCenter);

    [[nodiscard]] std::optional<Shortcut> getShortcut(const Name& name) const;
    /// Stores the shortcut, or clears the slot, registers anew and tells the subscribers.
    void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name);
    /// True where the store has anything for the slot, the mark of a cleared one included.
    [[nodiscard]] bool hasStoredObject(const Name& name) const;

    /// True where the store has a text for the slot that is no shortcut.
    [[nodiscard]] bool hasUnusableShortcut(const Name& name) const;

    /// Adds to the actions of the name; there is no taking back but removeAllHandlers.
    void onKeyDown(const Name& name, Action action);
    void onKeyUp(const Name& name, Action action);

    /// Both events, or those of one type, as long as the subscription lives.
    Subscription events(const Name& name, Listener listener);
    Subscription events(EventType type, const Name& name, Listener listener);
    Subscription on(EventType type, const Name& name, Action action);

    void enable(const Name& name);
    /// The stored shortcut stays.
    void disable(const Name& name);
    void reset(std::span<const Name> names);
    void removeAllHandlers();

    /// True while a shortcut is being recorded: no handler runs then.
    [[nodiscard]] bool recordingPause() const { return recordingPause_; }

    void setRecordingPause(bool paused) { recordingPause_ = paused; }

    /// Whether the desktop or another program has the shortcut already.
    [[nodiscard]] bool isSystems(const Shortcut& shortcut) const { return registry_.isSystems(shortcut); }

    /// From now on a slot that another process changes in the store is registered anew, and told of.
    void followStore();

    /// Called after a slot has changed.
    Subscription shortcutByNameDidChange(std::function<void(const Name&)> subscriber) {
        return changed_.subscribe(std::move(subscriber));
    }

private:
    using Actions = std::map<Name, std::vector<Action>>;
    using Streams = std::map<Name, std::map<std::uint64_t, Listener>>;

    Streams& streams(EventType type) { return type == EventType::keyDown ? keyDownStreams_ : keyUpStreams_; }

    void registerIfNeeded(const Shortcut& shortcut);
    void unregister(const Shortcut& shortcut);
    void registerFor(const Name& name);
    void takeStoredChanges();
    void dispatch(EventType type, const Shortcut& shortcut);
    [[nodiscard]] bool hasStream(EventType type, const Name& name, std::uint64_t identifier);
    void storeCleared(const Name& name);

    platform::UserDefaults& userDefaults_;
    std::unordered_set<Shortcut> activeShortcuts_;
    /// What each slot with handlers held when it was last looked at.
    std::map<Name, std::optional<Shortcut>> known_;
    Actions keyDownActions_;
    Actions keyUpActions_;
    Streams keyDownStreams_;
    Streams keyUpStreams_;
    std::uint64_t lastStreamIdentifier_ = 0;
    bool recordingPause_ = false;
    CarbonKeyboardShortcuts registry_;
    Signal<const Name&> changed_;
    Subscription storeChange_;
    // Lets a subscription that outlives the object find out that it has gone.
    std::shared_ptr<Center*> self_;
};

} // namespace quillmoth::KeyboardShortcuts
