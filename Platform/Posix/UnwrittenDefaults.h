#pragma once

#include "Platform/Posix/DefaultsFile.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {

/// The changes of settings that are not in the file yet. Any thread.
class UnwrittenDefaults {
public:
    /// In the order of their first mention; none stands for a removal.
    using Change = std::pair<std::string, std::optional<DefaultsObject>>;
    using Changes = std::vector<Change>;

    explicit UnwrittenDefaults(DefaultsFile file) : file_(std::move(file)) {}

    void setFaultHandler(std::function<void(const std::string& words)> handler);

    [[nodiscard]] Changes changes() const;

    static void apply(const Changes& changes, DefaultsObject& object);

    /// `known` is what holds with the change, and is written in the place of a file that has been damaged.
    /// True where write() is to be called, since it is not about to be already.
    [[nodiscard]] bool add(const Change& change, DefaultsObject known);

    /// Writes the changes on top of what the file holds, and forgets them. Waits for the disk.
    void write();

private:
    [[nodiscard]] std::optional<DefaultsObject> contentToChange() const;
    void forget(const Changes& written);
    void tell(const std::string& reason) const;

    const DefaultsFile file_;
    mutable std::mutex mutex_;
    Changes changes_;
    DefaultsObject known_ = DefaultsObject::object();
    std::function<void(const std::string&)> faultHandler_;
    bool isScheduled_ = false;
};

} // namespace quillmoth::platform
