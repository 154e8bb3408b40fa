#include "Platform/Posix/FileUserDefaults.h"

#include "Foundation/Log.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Posix/Files.h"
#include "Platform/Posix/UnwrittenDefaults.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <utility>

namespace quillmoth::platform {

namespace {

std::optional<DefaultsValue> valueOf(const DefaultsObject& json) {
    if (json.is_boolean())
        return json.get<bool>();
    if (json.is_string())
        return json.get<std::string>();
    // Beyond the signed range a number keeps its magnitude rather than its last digits.
    if (json.is_number_unsigned() && json.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
        return json.get<double>();
    if (json.is_number_integer())
        return json.get<std::int64_t>();
    if (json.is_number_float())
        return json.get<double>();
    return std::nullopt;
}

std::string folderOf(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

} // namespace

FileUserDefaults::FileUserDefaults(std::string path, FileWriter& writer, WatchFiles watchFiles)
    : file_(std::move(path)), writer_(writer), unwritten_(std::make_shared<UnwrittenDefaults>(file_)),
      watchFiles_(std::move(watchFiles)) {
    refresh(AtDamage::keepFileAside);
    changedElsewhere_ = false;
}

std::optional<DefaultsValue> FileUserDefaults::object(std::string_view key) const {
    refresh(AtDamage::keepFormerValues);
    const auto found = object_.find(key);
    return found == object_.end() ? std::nullopt : valueOf(*found);
}

void FileUserDefaults::set(std::string_view key, DefaultsValue value) {
    const auto* real = std::get_if<double>(&value);
    if (real && !std::isfinite(*real)) {
        logLine("The setting \"" + std::string(key) + "\" was not stored: it is not a finite number.");
        return;
    }
    change(key, std::visit([](auto& alternative) { return DefaultsObject(std::move(alternative)); }, value));
}

void FileUserDefaults::remove(std::string_view key) {
    change(key, std::nullopt);
}

Subscription FileUserDefaults::onChange(std::function<void()> subscriber) {
    if (!watch_ && watchFiles_) {
        // A folder that does not exist cannot be watched.
        (void)makeFolders(folderOf(file_.path()));
        watch_ = watchFiles_([this] { return watchedPaths(); }, [this] { tellOfOtherProcesses(); });
    }
    return changed_.subscribe(std::move(subscriber));
}

/// The folders, in which it is replaced, and the file, which may be written in place.
std::vector<std::string> FileUserDefaults::watchedPaths() const {
    const std::string target = resolvedPath(file_.path());
    return {folderOf(file_.path()), folderOf(target), target};
}

void FileUserDefaults::setFaultHandler(std::function<void(const std::string& words)> handler) {
    unwritten_->setFaultHandler(std::move(handler));
}

void FileUserDefaults::refresh(AtDamage atDamage) const {
    if (file_.stamp() == stamp_ && atDamage == AtDamage::keepFormerValues)
        return;
    // Before the file is read: what is written and forgotten meanwhile is in one of the two.
    const UnwrittenDefaults::Changes changes = unwritten_->changes();
    auto content = readStamped();
    if (content.condition == DefaultsFile::Condition::unreadable) {
        problem_ = "The settings in \"" + file_.path() + "\" cannot be read: " + content.reason;
        logLine(problem_);
        return;
    }
    // Otherwise another process may be in the middle of writing it: the values read before hold until then.
    if (content.condition == DefaultsFile::Condition::damaged) {
        if (atDamage == AtDamage::keepFileAside)
            file_.keepAside(content.reason, problem_);
        return;
    }
    const auto former = std::exchange(object_, std::move(content.object));
    UnwrittenDefaults::apply(changes, object_);
    changedElsewhere_ = changedElsewhere_ || former != object_;
}

/// Reads the file, and the stamp of just that content, for which it takes a few turns where it is being
/// written.
DefaultsFile::Content FileUserDefaults::readStamped() const {
    constexpr int kTurns = 4;
    DefaultsFile::Content content;
    for (int turn = 0; turn < kTurns; ++turn) {
        stamp_ = file_.stamp();
        content = file_.read();
        if (file_.stamp() == stamp_)
            break;
    }
    return content;
}

void FileUserDefaults::change(std::string_view key, std::optional<DefaultsObject> value) {
    refresh(AtDamage::keepFormerValues);
    const UnwrittenDefaults::Changes one{{std::string(key), std::move(value)}};
    UnwrittenDefaults::apply(one, object_);
    if (unwritten_->add(one.front(), object_))
        writer_.run([unwritten = unwritten_] { unwritten->write(); });
    changed_.emit();
}

void FileUserDefaults::whenWritten(std::string key, std::function<void(bool isWritten)> completion) {
    writer_.run([unwritten = unwritten_, key = std::move(key), completion = std::move(completion)] {
        const auto changes = unwritten->changes();
        completion(std::none_of(changes.begin(), changes.end(),
                                [&](const auto& change) { return change.first == key; }));
    });
}

void FileUserDefaults::tellOfOtherProcesses() {
    refresh(AtDamage::keepFormerValues);
    if (std::exchange(changedElsewhere_, false))
        changed_.emit();
}

} // namespace quillmoth::platform
