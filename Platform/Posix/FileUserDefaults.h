#pragma once

#include "Platform/Posix/DefaultsFile.h"
#include "Platform/UserDefaults.h"

#include <map>
#include <vector>

namespace quillmoth::platform {

class DiskSync;

/// The defaults store as one JSON object in a file of mode 0600. Main thread.
///
/// A read compares the file's stamp and reads it again where another process has changed it. A change is
/// written at once, on top of what the file holds at that moment. Where it cannot be written it holds for
/// this process and goes into the file with the next change that can be. Values are never logged.
class FileUserDefaults final : public UserDefaults {
public:
    /// Calls `changed` when one of what `paths` names may have changed, as long as the subscription lives.
    using WatchFiles = std::function<Subscription(std::function<std::vector<std::string>()> paths,
                                                  std::function<void()> changed)>;

    /// Without `watchFiles` nobody hears of other processes' changes.
    FileUserDefaults(std::string path, DiskSync& diskSync, WatchFiles watchFiles = {});

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;

    /// A number that JSON cannot hold (infinite, not a number) is not stored, and logged as such.
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;

    /// Other processes' changes are looked for only once somebody has asked to listen.
    Subscription onChange(std::function<void()> subscriber) override;

private:
    enum class AtDamage { keepFormerValues, keepFileAside };

    /// False where the file holds something that must not be written over.
    bool refresh(AtDamage atDamage) const;
    void applyUnwritten() const;
    void change(std::string_view key, std::optional<DefaultsObject> value);
    void write();
    void tellOfOtherProcesses();
    [[nodiscard]] std::vector<std::string> watchedPaths() const;

    DefaultsFile file_;
    DiskSync& diskSync_;
    // A read brings these up to date.
    mutable DefaultsObject object_ = DefaultsObject::object();
    mutable FileStamp stamp_;
    mutable bool changedElsewhere_ = false;
    /// None stands for a removal.
    std::map<std::string, std::optional<DefaultsObject>, std::less<>> unwritten_;
    Signal<> changed_;
    WatchFiles watchFiles_;
    Subscription watch_;
};

} // namespace quillmoth::platform
