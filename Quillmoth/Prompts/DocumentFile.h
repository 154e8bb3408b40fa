#pragma once

#include "Foundation/Result.h"
#include "Foundation/Subscription.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillmoth::platform {
class Documents;
}

namespace quillmoth {

/// One of the user's files in the folder "Quillmoth" of the documents. A file that is there and cannot be
/// read is never written over: what is saved goes to "<filename>.new-<n>" beside it, until a start can read
/// it and takes over what stands beside it. Main thread.
class DocumentFile {
public:
    /// `content` is what the user calls that which it holds: "presets".
    DocumentFile(std::string filename, std::string content, platform::Documents& documents);

    [[nodiscard]] const std::string& filename() const;

    /// A text, or why there is none. Where that is not for want of a file, it counts as unread from now on.
    [[nodiscard]] Result<std::string> read();

    /// Copies `bytes`, which are of no use for `reason`, to the first free "<filename>.damaged-<n>" beside
    /// it, and tells so; once for the same bytes. Where that fails, the file counts as unread.
    void keepAside(const std::string& bytes, const std::string& reason);

    [[nodiscard]] bool isUnread() const;

    /// The names of the files with what could not go into this one, that there are.
    [[nodiscard]] std::vector<std::string> filesBeside() const;
    [[nodiscard]] Result<std::string> readBeside(const std::string& name) const;

    /// What is saved goes to the file `name` beside it, whose content the user has.
    void continueBeside(const std::string& name);
    /// What is saved goes to a new file beside it.
    void beginBeside();

    /// What stands in `name` is in what is saved next, and `name` goes once that is on the disk.
    void takeOver(const std::string& name);

    /// Replaces the file in the background, making the folder where it is missing. `saved` is called once it
    /// is on the disk. A failure is logged and told, and leaves the file as it was.
    void save(Result<std::string> json, std::function<void()> saved);

    /// Why the file was of no use when it was read, and what became of it, in words for the user; empty where
    /// it was.
    [[nodiscard]] const std::string& fault() const;
    /// Called with what to tell the user when it could not be saved.
    Subscription onFault(std::function<void(const std::string& words)> subscriber);

private:
    struct State;

    /// Outlived by the answers to what was saved.
    std::shared_ptr<State> state_;
};

} // namespace quillmoth
