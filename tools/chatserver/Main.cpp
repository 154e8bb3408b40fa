// A stand-in for a chat service, for trying the program out without one: it answers from a script, in small
// pieces, and no model is behind it.

#include "ChatScript.h"
#include "tests/support/ScriptedChatServer.h"

#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using namespace quillmoth::test;

constexpr const char* kUsage =
    "Usage: scripted-chat-server [--port N] [--delay-ms N] [--script FILE]\n"
    "\n"
    "A stand-in for a chat-completions service on 127.0.0.1. It has no model: the answers come from a "
    "script.\n"
    "\n"
    "  --port N       port to listen at; 0, the default, takes a free one, which is printed\n"
    "  --delay-ms N   pause before each piece of a streamed answer; the default is 15\n"
    "  --script FILE  JSON list of {\"match\": part of the last user message, \"answer\": text, \"topic\": "
    "title}\n";

struct Options {
    std::uint16_t port = 0;
    unsigned delay = 15;
    ChatScript script;
};

template<class Number>
Number parseNumber(std::string_view name, std::string_view text) {
    Number value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size() || text.empty())
        throw std::runtime_error(std::string(name) + " needs a number");
    return value;
}

Options parseOptions(int count, char** arguments) {
    Options options;
    for (int index = 1; index < count; index += 2) {
        const std::string name = arguments[index];
        if (index + 1 >= count)
            throw std::runtime_error(name + " is not known, or lacks its value");
        const std::string value = arguments[index + 1];
        if (name == "--port")
            options.port = parseNumber<std::uint16_t>(name, value);
        else if (name == "--delay-ms")
            options.delay = parseNumber<unsigned>(name, value);
        else if (name == "--script")
            options.script.load(value);
        else
            throw std::runtime_error(name + " is not known");
    }
    return options;
}

/// Until the process is asked to end.
void waitForEnd(const sigset_t& signals) {
    int signal = 0;
    sigwait(&signals, &signal);
}

int serve(const Options& options) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    // Before the server's threads begin, which inherit it.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    ScriptedChatServer server(options.port);
    options.script.serve(server, std::chrono::milliseconds(options.delay),
                         [](const ScriptedRequest& request, const std::string& message) {
                             std::printf("%s: %.60s\n", request.path.c_str(), message.c_str());
                             std::fflush(stdout);
                         });
    std::printf("Scripted answers, no model, at %s\nport %u\n", server.baseURL().c_str(),
                static_cast<unsigned>(server.port()));
    std::fflush(stdout);
    waitForEnd(signals);
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count == 2 && std::string_view(arguments[1]) == "--help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    try {
        return serve(parseOptions(count, arguments));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "scripted-chat-server: %s\n\n%s", error.what(), kUsage);
        return 2;
    }
}
