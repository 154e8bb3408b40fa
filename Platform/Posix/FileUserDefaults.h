#pragma once

#include "Platform/Posix/DefaultsFile.h"
#include "Platform/UserDefaults.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillmoth::platform {

class FileWriter;
class UnwrittenDefaults;

/// The defaults store as one JSON object in a file of mode 0600. Main thread.
///
/// A read compares the file's stamp and reads it again where another process has changed it. A change holds
/// at once and is written in the background, on top of what the file holds at that moment. Where it cannot be
/// written it holds for this process and goes into the file with the next change that can be. A file that
/// cannot be read is not written over. Values are never logged.
class FileUserDefaults final : public UserDefaults {
public:
    /// Calls `changed` when one of what `paths` names may have changed, as long as the subscription lives.
    using WatchFiles = std::function<Subscription(std::function<std::vector<std::string>()> paths,
                                                  std::function<void()> changed)>;

    /// Without `watchFiles` nobody hears of other processes' changes.
    FileUserDefaults(std::string path, FileWriter& writer, WatchFiles watchFiles = {});

    /// Called on the writer's thread with what to tell the user where settings could not be saved.
    void setFaultHandler(std::function<void(const std::string& words)> handler);

    /// Calls `completion` on the writer's thread when the changes so far are on the disk, or have failed to
    /// get there, with whether the one of `key` is.
    void whenWritten(std::string key, std::function<void(bool isWritten)> completion);

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;

    /// A number that JSON cannot hold (infinite, not a number) is not stored, and logged as such.
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;

    [[nodiscard]] std::string problem() const override { return problem_; }

    /// Other processes' changes are looked for only once somebody has asked to listen.
    Subscription onChange(std::function<void()> subscriber) override;

private:
    enum class AtDamage { keepFormerValues, keepFileAside };

    void refresh(AtDamage atDamage) const;
    [[nodiscard]] DefaultsFile::Content readStamped() const;
    void change(std::string_view key, std::optional<DefaultsObject> value);
    void tellOfOtherProcesses();
    [[nodiscard]] std::vector<std::string> watchedPaths() const;

    DefaultsFile file_;
    FileWriter& writer_;
    // A read brings these up to date.
    mutable DefaultsObject object_ = DefaultsObject::object();
    mutable FileStamp stamp_;
    mutable bool changedElsewhere_ = false;
    mutable std::string problem_;
    std::shared_ptr<UnwrittenDefaults> unwritten_;
    Signal<> changed_;
    WatchFiles watchFiles_;
    Subscription watch_;
};

} // namespace quillmoth::platform
