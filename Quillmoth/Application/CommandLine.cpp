#include "Quillmoth/Application/CommandLine.h"

#include "Foundation/URL.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quillmoth {

namespace {

struct Option {
    std::string_view name;
    CommandLine::Action action;
};

constexpr std::array kOptions{
    Option{"--toggle", CommandLine::Action::toggle},
    Option{"--settings", CommandLine::Action::settings},
    Option{"--quit", CommandLine::Action::quit},
    Option{"--version", CommandLine::Action::showVersion},
    Option{"--diagnose", CommandLine::Action::diagnose},
    Option{"--help", CommandLine::Action::showHelp},
    Option{"-h", CommandLine::Action::showHelp},
};

constexpr std::string_view kHelp = R"(Usage: quillmoth [OPTION]
       quillmoth URL...

Quillmoth waits in the tray and opens its panel over the application in front
when the hot key is pressed. Where it runs already, a second start hands over
what it was given and ends.

Options:
  --toggle     Show or hide the panel; start Quillmoth where it does not run
  --settings   Open the settings
  --quit       End the running Quillmoth
  --diagnose   Print what works on this desktop, and what to do where it does
               not; nothing that you wrote is in it
  --version    Print the version and end
  -h, --help   Print this text and end

URLs:
  quillmoth://onboardingView   Open "Get Started"
  quillmoth://promptEditor     Open the prompt editor
  quillmoth://...?data=...     Import a prompt

Exit codes: 0 done, 1 failed, 2 wrong use.
)";

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

} // namespace

Result<CommandLine> parseCommandLine(std::span<const std::string_view> arguments) {
    CommandLine result;
    std::optional<std::string_view> chosen;
    bool optionsEnded = false;
    for (const std::string_view argument : arguments) {
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
            continue;
        }
        if (optionsEnded || !argument.starts_with('-')) {
            auto url = ownURL(argument);
            if (!url)
                return Error{quoted(argument) + " is not a URL that starts with \"quillmoth:\"."};
            result.urls.push_back(std::move(*url));
            continue;
        }
        const auto* option = std::find_if(kOptions.begin(), kOptions.end(),
                                          [&](const Option& known) { return known.name == argument; });
        if (option == kOptions.end())
            return Error{"There is no option " + quoted(argument) + "."};
        if (chosen && result.action != option->action)
            return Error{"The options " + quoted(*chosen) + " and " + quoted(argument) +
                         " do not go together."};
        chosen = argument;
        result.action = option->action;
    }
    if (chosen && !result.urls.empty())
        return Error{"The option " + quoted(*chosen) + " takes no URL."};
    return result;
}

std::string_view commandLineHelp() {
    return kHelp;
}

} // namespace quillmoth
