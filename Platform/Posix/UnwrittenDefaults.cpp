#include "Platform/Posix/UnwrittenDefaults.h"

#include "Foundation/Log.h"

#include <algorithm>
#include <filesystem>

namespace quillmoth::platform {

void UnwrittenDefaults::setFaultHandler(std::function<void(const std::string& words)> handler) {
    const std::lock_guard lock(mutex_);
    faultHandler_ = std::move(handler);
}

UnwrittenDefaults::Changes UnwrittenDefaults::changes() const {
    const std::lock_guard lock(mutex_);
    return changes_;
}

void UnwrittenDefaults::apply(const Changes& changes, DefaultsObject& object) {
    for (const auto& [key, value] : changes) {
        if (value)
            object[key] = *value;
        else
            object.erase(key);
    }
}

bool UnwrittenDefaults::add(const Change& change, DefaultsObject known) {
    const std::lock_guard lock(mutex_);
    const auto former = std::find_if(changes_.begin(), changes_.end(),
                                     [&](const Change& each) { return each.first == change.first; });
    if (former != changes_.end())
        *former = change;
    else
        changes_.push_back(change);
    known_ = std::move(known);
    return !std::exchange(isScheduled_, true);
}

void UnwrittenDefaults::write() {
    Changes written;
    {
        const std::lock_guard lock(mutex_);
        isScheduled_ = false;
        written = changes_;
    }
    const DefaultsLock lock(std::filesystem::path(file_.path()).parent_path().string());
    auto object = contentToChange();
    if (!object)
        return;
    apply(written, *object);
    if (const auto result = file_.write(*object); result)
        forget(written);
    else
        tell(result.error().description);
}

/// None where there is something that must not be written over, which is told.
std::optional<DefaultsObject> UnwrittenDefaults::contentToChange() const {
    auto content = file_.read();
    if (content.condition == DefaultsFile::Condition::sound)
        return std::move(content.object);
    if (content.condition == DefaultsFile::Condition::unreadable) {
        tell("What the file holds cannot be read, and is not written over: " + content.reason);
        return std::nullopt;
    }
    std::string told;
    if (!file_.keepAside(content.reason, told)) {
        tell("What the file holds is damaged, and could not be kept elsewhere.");
        return std::nullopt;
    }
    const std::lock_guard lock(mutex_);
    return known_;
}

void UnwrittenDefaults::forget(const Changes& written) {
    const std::lock_guard lock(mutex_);
    for (const Change& each : written)
        std::erase(changes_, each);
}

void UnwrittenDefaults::tell(const std::string& reason) const {
    const std::string words = "The settings were not saved. " + reason;
    logLine(words);
    std::function<void(const std::string&)> handler;
    {
        const std::lock_guard lock(mutex_);
        handler = faultHandler_;
    }
    if (handler)
        handler(words +
                " They hold until Quillmoth ends, and are saved with the next change of a setting that "
                "can be.");
}

} // namespace quillmoth::platform
