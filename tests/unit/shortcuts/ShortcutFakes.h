#pragma once

#include "Platform/HotKeyCenter.h"
#include "Platform/KeyboardLayout.h"
#include "Platform/UserDefaults.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::KeyboardShortcuts::test {

/// Writes down what is asked of it; the test plays the system.
class RecordingHotKeyCenter : public platform::HotKeyCenter {
public:
    struct Registration {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        platform::EventHotKeyID identifier;
    };

    bool hasTarget = true;
    platform::OSStatus registrationStatus = platform::noErr;
    bool givesHandle = true;
    std::vector<platform::SymbolicHotKey> symbolicHotKeys;

    /// All that were ever asked for, refused ones included.
    std::vector<Registration> requests;
    std::map<Handle, Registration> registered;
    std::vector<Handler> handlers;

    bool hasEventTarget() const override { return hasTarget; }

    platform::OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                           platform::EventHotKeyID id, Handle& handle) override {
        requests.push_back({keyCode, carbonModifiers, id});
        if (registrationStatus != platform::noErr || !givesHandle)
            return registrationStatus;
        handle = requests.size();
        registered[handle] = requests.back();
        return platform::noErr;
    }

    platform::OSStatus unregisterEventHotKey(Handle handle) override {
        return registered.erase(handle) ? platform::noErr : -1;
    }

    platform::OSStatus installEventHandler(Handler handler) override {
        handlers.push_back(std::move(handler));
        return platform::noErr;
    }

    std::vector<platform::SymbolicHotKey> copySymbolicHotKeys() override { return symbolicHotKeys; }

    platform::OSStatus send(const platform::HotKeyEvent& event) { return handlers.at(0)(&event); }

    /// As the system does when the combination is used; false where nobody registered it.
    bool strike(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t kind) {
        for (const auto& [handle, registration] : std::map(registered)) {
            if (registration.keyCode == keyCode && registration.carbonModifiers == carbonModifiers)
                return send({.kind = kind, .hotKeyID = registration.identifier}) == platform::noErr;
        }
        return false;
    }
};

class MapDefaults : public platform::UserDefaults {
public:
    std::map<std::string, platform::DefaultsValue, std::less<>> values;

    std::optional<platform::DefaultsValue> object(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void set(std::string_view key, platform::DefaultsValue value) override {
        values.insert_or_assign(std::string(key), std::move(value));
    }

    void remove(std::string_view key) override { values.erase(std::string(key)); }

    Subscription onChange(std::function<void()>) override { return {}; }
};

class TableLayout : public platform::KeyboardLayout {
public:
    std::map<int, std::string> texts;

    std::optional<std::string> translate(std::uint16_t keyCode) override {
        const auto found = texts.find(keyCode);
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
};

} // namespace quillmoth::KeyboardShortcuts::test
