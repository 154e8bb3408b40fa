#include "Quillmoth/Main/StartUp.h"

#include "Platform/Linux/Desktop/HandOver.h"
#include "Quillmoth/Application/CommandLine.h"

namespace quillmoth {

namespace {

constexpr int kStartFailed = 1;
constexpr int kWrongUse = 2;

/// None for a plain start, which asks nothing of itself.
std::optional<platform::InstanceRequest> requestOf(const CommandLine& commandLine) {
    using Kind = platform::InstanceRequest::Kind;
    switch (commandLine.action) {
    case CommandLine::Action::toggle:
        return platform::InstanceRequest{Kind::toggle};
    case CommandLine::Action::settings:
        return platform::InstanceRequest{Kind::settings};
    case CommandLine::Action::quit:
        return platform::InstanceRequest{Kind::quit};
    default:
        break;
    }
    if (commandLine.urls.empty())
        return std::nullopt;
    return platform::InstanceRequest{Kind::open, commandLine.urls};
}

void reportFailure(std::ostream& errors) {
    errors << "quillmoth: Quillmoth runs already, but does not answer.\n";
}

} // namespace

StartUp beginStart(std::span<const std::string_view> arguments, std::string_view version,
                   std::ostream& output, std::ostream& errors) {
    const auto commandLine = parseCommandLine(arguments);
    if (!commandLine) {
        errors << "quillmoth: " << commandLine.error().description << "\nTry \"quillmoth --help\".\n";
        return {kWrongUse};
    }
    if (commandLine->action == CommandLine::Action::showHelp) {
        output << commandLineHelp() << std::flush;
        return {0};
    }
    if (commandLine->action == CommandLine::Action::showVersion) {
        output << "Quillmoth " << version << std::endl;
        return {0};
    }
    if (commandLine->action == CommandLine::Action::diagnose)
        return {.exitCode = std::nullopt, .diagnoses = true};
    const auto request = requestOf(*commandLine);
    const platform::HandOver outcome = platform::handOver(request.value_or(platform::InstanceRequest{}));
    if (outcome == platform::HandOver::delivered)
        return {0};
    if (outcome == platform::HandOver::failed) {
        reportFailure(errors);
        return {kStartFailed};
    }
    if (commandLine->action == CommandLine::Action::quit) {
        errors << "quillmoth: Quillmoth is not running.\n";
        return {kStartFailed};
    }
    return {std::nullopt, request};
}

int yieldStart(const std::optional<platform::InstanceRequest>& firstRequest, std::ostream& errors) {
    if (platform::handOver(firstRequest.value_or(platform::InstanceRequest{})) ==
        platform::HandOver::delivered)
        return 0;
    reportFailure(errors);
    return kStartFailed;
}

} // namespace quillmoth
