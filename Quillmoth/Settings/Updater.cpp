#include "Quillmoth/Settings/Updater.h"

#include "Foundation/JSONReader.h"
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
constexpr double kTimeout = 30;

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

bool readFields(JSONFields& fields, UpdateFeed& feed) {
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

void Updater::refresh() {
    const bool can = !isChecking_ && isWebAddress(platform_.userDefaults.string(kFeedKey).value_or(""));
    if (can != canCheckForUpdates)
        canCheckForUpdates = can;
}

void Updater::checkForUpdates() {
    if (!canCheckForUpdates)
        return;
    isChecking_ = true;
    platform::URLRequest request;
    request.url = platform_.userDefaults.string(kFeedKey).value_or("");
    request.timeoutInterval = kTimeout;
    request.addValue("application/json", "Accept");
    refresh();
    auto completion = [mainQueue = &platform_.mainQueue, weak = std::weak_ptr(self_)](
                          std::optional<std::string> data, std::optional<platform::URLResponse> response,
                          std::optional<platform::URLError> error) {
        mainQueue->async(
            [weak, data = std::move(data), response = std::move(response), error = std::move(error)] {
                if (const auto self = weak.lock())
                    (*self)->finish(outcome(data, response, error, (*self)->platform_.bundle));
            });
    };
    platform_.urlSessions.sharedSession()->dataTask(request, std::move(completion))->resume();
}

void Updater::finish(const UpdateOutcome& outcome) {
    isChecking_ = false;
    refresh();
    if (onOutcome)
        onOutcome(outcome);
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
