#include "Quillmoth/Main/StartUp.h"

#include "Platform/Linux/Desktop/HandOver.h"
#include "Quillmoth/Application/CommandLine.h"

namespace quillmoth::platform {

namespace {

constexpr int kStartFailed = 1;
constexpr int kWrongUse = 2;

/// None for a plain start, which asks nothing of itself.
std::optional<InstanceRequest> requestOf(const CommandLine& commandLine) {
    using Kind = InstanceRequest::Kind;
    switch (commandLine.action) {
    case CommandLine::Action::toggle:
        return InstanceRequest{Kind::toggle};
    case CommandLine::Action::settings:
        return InstanceRequest{Kind::settings};
    case CommandLine::Action::quit:
        return InstanceRequest{Kind::quit};
    default:
        break;
    }
    if (commandLine.urls.empty())
        return std::nullopt;
    return InstanceRequest{Kind::open, commandLine.urls};
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
    const HandOver outcome = handOver(request.value_or(InstanceRequest{}));
    if (outcome == HandOver::delivered)
        return {0};
    if (outcome == HandOver::failed) {
        reportFailure(errors);
        return {kStartFailed};
    }
    if (commandLine->action == CommandLine::Action::quit) {
        errors << "quillmoth: Quillmoth is not running.\n";
        return {kStartFailed};
    }
    return {std::nullopt, request};
}

int yieldStart(const std::optional<InstanceRequest>& firstRequest, std::ostream& errors) {
    if (handOver(firstRequest.value_or(InstanceRequest{})) == HandOver::delivered)
        return 0;
    reportFailure(errors);
    return kStartFailed;
}

} // namespace quillmoth::platform
