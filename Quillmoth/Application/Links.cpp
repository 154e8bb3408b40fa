#include "Quillmoth/Application/Links.h"

#include "Foundation/Limits.h"

#include "Foundation/ASCII.h"
#include "Foundation/URL.h"

#include <algorithm>
#include <array>

namespace quillmoth {

namespace {

constexpr std::array<std::string_view, 4> kOpenedSchemes{"http", "https", "mailto", kOwnScheme};
// No scheme that means anything is longer.
constexpr std::size_t kLongestScheme = 30;

std::string_view schemeOf(std::string_view url) {
    return url.substr(0, url.find(':'));
}

} // namespace

bool isOpenedFromAnswer(std::string_view url) {
    return std::any_of(kOpenedSchemes.begin(), kOpenedSchemes.end(), [&](std::string_view scheme) {
        return url.size() > scheme.size() && equalIgnoringASCIICase(schemeOf(url), scheme);
    });
}

std::string unopenedLinkWords(std::string_view url) {
    return "Links that begin with “" + std::string(schemeOf(url).substr(0, kLongestScheme)) +
           ":” are not opened.";
}

Result<std::optional<PromptData>> presetOfLink(const std::string& url) {
    if (url.size() > limits::kLink)
        return Error{"The link is longer than 64 KB."};
    const auto parsed = URL::parse(url, URL::kAnything);
    if (!parsed)
        return Error{"The link is no valid address."};
    const auto items = parsed->queryItems();
    if (!items)
        return std::optional<PromptData>();
    const auto data = std::find_if(items->begin(), items->end(),
                                   [](const URLQueryItem& item) { return item.name == "data"; });
    if (data == items->end() || !data->value)
        return std::optional<PromptData>();
    auto preset = readPromptData(*data->value);
    if (!preset)
        return Error{"What the link carries is no preset: " + preset.error().description + "."};
    return std::optional(std::move(*preset));
}

} // namespace quillmoth
