#pragma once

#include "Foundation/Published.h"
#include "Foundation/Result.h"
#include "Platform/Platform.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quillmoth {

/// What a feed tells: a JSON object with "version", and maybe "build", "url" and "notes", all of them texts.
struct UpdateFeed {
    std::string version;
    std::optional<std::string> build;
    /// Where the new version is to be had.
    std::optional<std::string> url;
    std::optional<std::string> notes;

    friend bool operator==(const UpdateFeed&, const UpdateFeed&) = default;
};

struct UpToDate {};

struct UpdateAvailable {
    UpdateFeed feed;
};

struct UpdateCheckFailed {
    std::string description;
};

using UpdateOutcome = std::variant<UpToDate, UpdateAvailable, UpdateCheckFailed>;

/// Asks a feed whether there is a newer version, where somebody wants to know and by itself. The feed's
/// address is the default "updateFeedURL"; without one no check can start. Main thread.
class Updater : public ObservableObject {
public:
    /// The services outlive the object.
    explicit Updater(const platform::Platform& platform);

    /// True while an address is configured and no check runs.
    Published<bool> canCheckForUpdates{*this, "canCheckForUpdates", false};

    /// Why no check can start now, in words for the user; empty where one can.
    [[nodiscard]] std::string obstacle() const;

    /// Does nothing while no check can start; otherwise ends with a call of onOutcome.
    void checkForUpdates();

    std::function<void(const UpdateOutcome&)> onOutcome;

    /// From now on checks by itself while a feed is configured: some seconds from now, and then once a day.
    void startChecking();

    /// Such a check has found a newer version. Each is told once, over all runs of the program.
    std::function<void(const UpdateFeed&)> onFound;

private:
    [[nodiscard]] std::string address() const;
    void refresh();
    void scheduleCheck(double seconds);
    void checkByItself();
    void check(std::function<void(const UpdateOutcome&)> finished);
    void tellOnce(const UpdateOutcome& outcome);

    const platform::Platform platform_;
    bool isChecking_ = false;
    bool checksByItself_ = false;
    bool isScheduled_ = false;
    Subscription defaultsChange_;
    // Lets an answer that comes late find out that the object has gone.
    std::shared_ptr<Updater*> self_;
};

/// Hands on whether a check can start now.
class CheckForUpdatesViewModel : public ObservableObject {
public:
    /// `updater` outlives the object.
    explicit CheckForUpdatesViewModel(Updater& updater);

    Published<bool> _canCheckForUpdates{*this, "_canCheckForUpdates", false};
    /// Called after the field has changed.
    std::function<void()> onChange;

private:
    Subscription change_;
};

[[nodiscard]] Result<UpdateFeed> readUpdateFeed(std::string_view json);

/// Whether the feed's version, or at an equal version its build, is higher. Versions are compared number by
/// number; a missing one counts as 0.
[[nodiscard]] bool isNewer(const UpdateFeed& feed, std::string_view version, std::string_view build);

} // namespace quillmoth
