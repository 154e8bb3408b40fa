// The file of settings: read, a setting changed, read again.

#include "Fuzz.h"

#include "KeyboardShortcuts/Center.h"
#include "Platform/Fake/FakeHotKeyCenter.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Posix/Files.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace quillmoth::fuzz {

namespace {

using platform::DefaultsFile;
using platform::DefaultsObject;

constexpr const char* kKey = "fuzzed";

class Folder {
public:
    Folder() {
        std::string path = std::filesystem::temp_directory_path() / "quillmoth-fuzz-XXXXXX";
        promise(mkdtemp(path.data()) != nullptr, "there is room for a folder");
        path_ = path;
    }

    ~Folder() { std::filesystem::remove_all(path_); }

    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    /// A file of this content, alone in the folder.
    [[nodiscard]] std::string put(std::string_view bytes) const {
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            std::filesystem::remove_all(entry);
        const std::string file = path_ + "/defaults.json";
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

private:
    std::string path_;
};

/// A value as the store gives it; none for what it has no type for.
void checkValue(const platform::UserDefaults& defaults, const std::string& key, const DefaultsObject& json) {
    const auto value = defaults.object(key);
    promise(value.has_value() == (json.is_boolean() || json.is_string() || json.is_number()),
            "values of four types");
    promise(!json.is_string() || defaults.string(key) == json.get<std::string>(), "texts");
    promise(!json.is_boolean() || defaults.boolean(key, !json.get<bool>()) == json.get<bool>(),
            "truth values");
    promise(!json.is_number() || defaults.number(key, -1) == json.get<double>(), "numbers");
}

void checkShortcut(platform::UserDefaults& defaults) {
    platform::FakeHotKeyCenter hotKeys;
    KeyboardShortcuts::Center center(defaults, hotKeys);
    const KeyboardShortcuts::Name name("showFloatingPanel");
    const auto shortcut = center.getShortcut(name);
    center.onKeyUp(name, [] {});
    promise(!shortcut || KeyboardShortcuts::Shortcut::fromJSON(shortcut->toJSON()) == shortcut,
            "a shortcut is stored as it was");
    promise(!(shortcut && center.hasUnusableShortcut(name)), "a shortcut is of use or is none");
}

} // namespace

void check(std::string_view input) {
    static const Folder folder;
    static platform::FileWriter writer;
    const std::string path = folder.put(input);
    const DefaultsFile file(path);
    auto before = file.read();
    const bool isSound = before.condition == DefaultsFile::Condition::sound;
    promise(isSound || before.condition == DefaultsFile::Condition::damaged, "sound or damaged");

    platform::FileUserDefaults defaults(path, writer);
    promise(isSound == defaults.problem().empty(), "told where it is damaged");
    for (const auto& [key, value] : before.object.items())
        checkValue(defaults, key, value);
    checkShortcut(defaults);

    defaults.set(kKey, std::string("value"));
    writer.flush();
    auto after = file.read();
    promise(after.condition == DefaultsFile::Condition::sound, "a change makes the file sound");
    before.object[kKey] = "value";
    promise(after.object == before.object, "the change is stored, and all else stays");
    const auto aside = platform::readWholeFile(path + ".damaged-1");
    promise(isSound ? !aside : aside && *aside == input, "a damaged file is kept as it was");
}

} // namespace quillmoth::fuzz
