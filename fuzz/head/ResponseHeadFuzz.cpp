// The head of an answer, line by line as the network library gives it, and where it redirects to.

#include "Fuzz.h"

#include "Foundation/ASCII.h"
#include "Foundation/Text.h"
#include "Foundation/URL.h"
#include "Platform/Curl/ResponseHead.h"
#include "Platform/Curl/Server.h"

#include <optional>

namespace quillmoth::fuzz {

namespace {

using platform::ResponseHead;
using Headers = std::vector<std::pair<std::string, std::string>>;

constexpr const char* kAddress = "https://user@host.example:8443/a/b?c#d";

std::vector<std::string> linesOf(std::string_view input) {
    std::vector<std::string> lines;
    for (const std::string_view part : split(input, '\n'))
        lines.push_back(std::string(part) + "\n");
    return lines;
}

Headers plainHeaders(const std::vector<std::string>& lines, std::size_t first, std::size_t end) {
    Headers headers;
    for (std::size_t i = first; i < end; ++i) {
        const std::string_view line = trimmed(lines[i]);
        if (const std::size_t colon = line.find(':'); colon != std::string_view::npos)
            headers.emplace_back(trimmed(line.substr(0, colon)), trimmed(line.substr(colon + 1)));
    }
    return headers;
}

void checkLookUp(const ResponseHead& head, const Headers& headers) {
    for (const auto& [name, value] : headers) {
        std::optional<std::string> first;
        for (auto each = headers.rbegin(); each != headers.rend(); ++each) {
            if (lowercasedASCII(each->first) == lowercasedASCII(name))
                first = each->second;
        }
        promise(head.header(lowercasedASCII(name)) == first, "the first header of a name is found");
    }
}

void checkLocation(const std::string& location) {
    const auto url = resolveURL(location, kAddress, URL::kAnything);
    if (!url)
        return;
    const auto parsed = URL::parse(*url, URL::kAnything);
    promise(parsed && parsed->text() == *url, "an address is written as it is read");
    promise(parsed->scheme.has_value(), "an address seen from another one is absolute");
    promise(isASCII(*url) && url->find_first_of("\r\n \t") == std::string::npos,
            "an address fits into a request's line");
    const auto server = platform::serverOf(*url);
    if (!server)
        return;
    promise(server->scheme == "http" || server->scheme == "https", "a server of the web");
    promise(!server->host.empty() && !server->port.empty(), "a server has a host and a port");
}

} // namespace

void check(std::string_view input) {
    const auto lines = linesOf(input);
    ResponseHead head;
    std::optional<std::size_t> completed;
    std::size_t start = 0;
    platform::URLResponse atCompletion;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!completed && lines[i].starts_with("HTTP/"))
            start = i;
        const bool completes = head.addLine(lines[i]);
        promise(!completes || !completed, "a head is completed once");
        if (completes) {
            completed = i;
            atCompletion = head.response(kAddress);
        }
    }
    promise(head.isComplete() == completed.has_value(), "complete from then on");
    if (!completed)
        return;
    promise(head.statusCode() >= 200, "interim answers are passed over");
    promise(trimmed(lines[*completed]).empty(), "an empty line ends a head");
    const auto response = head.response(kAddress);
    promise(response.statusCode == atCompletion.statusCode && response.headers == atCompletion.headers,
            "what follows a head changes nothing");
    promise(response.headers == plainHeaders(lines, start + 1, *completed), "the headers of the last answer");
    checkLookUp(head, response.headers);
    if (const auto location = head.header("Location"))
        checkLocation(*location);
}

} // namespace quillmoth::fuzz
