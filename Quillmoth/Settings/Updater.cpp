#include "Quillmoth/Settings/Updater.h"

#include "Foundation/JSONReader.h"
#include "Foundation/Limits.h"
#include "Platform/Bundle.h"
#include "Platform/MainQueue.h"
#include "Platform/URLSession.h"
#include "Platform/UserDefaults.h"
#include "Quillmoth/Chat/ServiceAddresses.h"

#include <charconv>
#include <compare>
#include <cstdint>
#include <utility>

namespace quillmoth {

namespace {

constexpr const char* kFeedKey = "updateFeedURL";
/// What a check by itself has told last.
constexpr const char* kToldKey = "toldUpdateVersion";
constexpr double kFeedSeconds = 30;
// Behind the first picture, and what else is put off at the start.
constexpr double kFirstCheck = 5;
constexpr double kBetweenChecks = 24 * 60 * 60;

/// A web address, with or without a query.
bool isWebAddress(std::string_view address) {
    return isServiceAddress(address.substr(0, address.find('?')));
}

/// Takes the number in front, and what parts it from the next one.
std::uint64_t takeNumber(std::string_view& version) {
    std::uint64_t number = 0;
    const auto result = std::from_chars(version.data(), version.data() + version.size(), number);
    version.remove_prefix(static_cast<std::size_t>(result.ptr - version.data()));
    const auto next = version.find_first_of("0123456789");
    version.remove_prefix(next == std::string_view::npos ? version.size() : next);
    return number;
}

std::strong_ordering compareVersions(std::string_view first, std::string_view second) {
    while (!first.empty() || !second.empty()) {
        if (const auto order = takeNumber(first) <=> takeNumber(second); std::is_neq(order))
            return order;
    }
    return std::strong_ordering::equal;
}

UpdateOutcome outcome(const std::optional<std::string>& data,
                      const std::optional<platform::URLResponse>& response,
                      const std::optional<platform::URLError>& error, const platform::Bundle& bundle) {
    if (error)
        return UpdateCheckFailed{error->localizedDescription};
    if (!response || response->statusCode != 200 || !data)
        return UpdateCheckFailed{
            "The update feed answered with the status " +
            std::to_string(response && response->statusCode ? *response->statusCode : 0) + "."};
    const auto feed = readUpdateFeed(*data);
    if (!feed)
        return UpdateCheckFailed{"The update feed could not be read: " + feed.error().description};
    if (isNewer(*feed, bundle.info("CFBundleShortVersionString").value_or(""),
                bundle.info("CFBundleVersion").value_or("")))
        return UpdateAvailable{*feed};
    return UpToDate{};
}

} // namespace

bool visitFields(JSONFields& fields, UpdateFeed& feed) {
    return fields.required("version", feed.version) && fields.optional("build", feed.build) &&
           fields.optional("url", feed.url) && fields.optional("notes", feed.notes);
}

Result<UpdateFeed> readUpdateFeed(std::string_view json) {
    auto feed = readJSON<UpdateFeed>(json);
    if (feed && feed->version.find_first_of("0123456789") != 0)
        return Error{"\"version\" is no version"};
    // Only what a browser may be given.
    if (feed && feed->url && !isWebAddress(*feed->url))
        feed->url.reset();
    return feed;
}

bool isNewer(const UpdateFeed& feed, std::string_view version, std::string_view build) {
    const auto order = compareVersions(feed.version, version);
    if (std::is_neq(order) || !feed.build)
        return std::is_gt(order);
    return std::is_gt(compareVersions(*feed.build, build));
}

Updater::Updater(const platform::Platform& platform)
    : platform_(platform), defaultsChange_(platform.userDefaults.onChange([this] { refresh(); })),
      self_(std::make_shared<Updater*>(this)) {
    refresh();
}

std::string Updater::address() const {
    return platform_.userDefaults.string(kFeedKey).value_or("");
}

std::string Updater::obstacle() const {
    const std::string feed = address();
    if (feed.empty())
        return "No update feed is configured: “updateFeedURL” is not set.";
    if (!isWebAddress(feed))
        return "“" + feed + "” is no web address: “updateFeedURL” wants one.";
    return isChecking_ ? "The update feed is being asked." : "";
}

void Updater::refresh() {
    const bool can = obstacle().empty();
    if (can != canCheckForUpdates)
        canCheckForUpdates = can;
    if (can && checksByItself_ && !isScheduled_)
        scheduleCheck(kFirstCheck);
}

void Updater::checkForUpdates() {
    if (!canCheckForUpdates)
        return;
    check([this](const UpdateOutcome& outcome) {
        if (onOutcome)
            onOutcome(outcome);
    });
}

void Updater::startChecking() {
    checksByItself_ = true;
    refresh();
}

void Updater::scheduleCheck(double seconds) {
    isScheduled_ = true;
    platform_.mainQueue.asyncAfter(platform::MainQueue::Seconds(seconds), [weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock())
            (*self)->checkByItself();
    });
}

void Updater::checkByItself() {
    isScheduled_ = false;
    if (!isWebAddress(address()))
        return;
    scheduleCheck(kBetweenChecks);
    if (canCheckForUpdates)
        check([this](const UpdateOutcome& outcome) { tellOnce(outcome); });
}

void Updater::tellOnce(const UpdateOutcome& outcome) {
    const auto* available = std::get_if<UpdateAvailable>(&outcome);
    if (available == nullptr || !onFound)
        return;
    const UpdateFeed& feed = available->feed;
    const std::string version = feed.build ? feed.version + " build " + *feed.build : feed.version;
    if (platform_.userDefaults.string(kToldKey) == version)
        return;
    platform_.userDefaults.set(kToldKey, version);
    onFound(feed);
}

void Updater::check(std::function<void(const UpdateOutcome&)> finished) {
    isChecking_ = true;
    platform::URLRequest request;
    request.url = address();
    request.timeoutInterval = kFeedSeconds;
    request.largestAnswer = limits::kFeed;
    request.addValue("application/json", "Accept");
    refresh();
    auto completion = [mainQueue = &platform_.mainQueue, weak = std::weak_ptr(self_),
                       finished = std::move(finished)](std::optional<std::string> data,
                                                       std::optional<platform::URLResponse> response,
                                                       std::optional<platform::URLError> error) {
        mainQueue->async([weak, finished, data = std::move(data), response = std::move(response),
                          error = std::move(error)] {
            const auto self = weak.lock();
            if (!self)
                return;
            (*self)->isChecking_ = false;
            (*self)->refresh();
            finished(outcome(data, response, error, (*self)->platform_.bundle));
        });
    };
    platform_.urlSessions.sharedSession()->dataTask(request, std::move(completion))->resume();
}

CheckForUpdatesViewModel::CheckForUpdatesViewModel(Updater& updater) {
    const auto take = [this](bool value) {
        _canCheckForUpdates = value;
        if (onChange)
            onChange();
    };
    take(updater.canCheckForUpdates);
    // The notice comes before the change, and the value has two states only.
    change_ = updater.objectWillChange([take, &updater](std::string_view field) {
        if (field == "canCheckForUpdates")
            take(!updater.canCheckForUpdates.get());
    });
}

} // namespace quillmoth
