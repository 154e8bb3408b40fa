#include "Quillmoth/Application/URLQuery.h"

#include <algorithm>

namespace quillmoth {

namespace {

bool isAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSchemeCharacter(char c) {
    return isAlpha(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

int hexadecimalDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? hexadecimalDigit(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? hexadecimalDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

std::optional<URLQueryItem> queryItem(std::string_view text) {
    const std::size_t equals = text.find('=');
    auto name = percentDecoded(text.substr(0, equals));
    if (!name)
        return std::nullopt;
    URLQueryItem item{std::move(*name), std::nullopt};
    if (equals == std::string_view::npos)
        return item;
    item.value = percentDecoded(text.substr(equals + 1));
    return item.value ? std::optional(std::move(item)) : std::nullopt;
}

} // namespace

std::string_view urlScheme(std::string_view url) {
    const std::size_t colon = url.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isAlpha(url.front()))
        return {};
    const std::string_view scheme = url.substr(0, colon);
    return std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter) ? scheme : std::string_view();
}

std::optional<std::vector<URLQueryItem>> urlQueryItems(std::string_view url) {
    url = url.substr(0, url.find('#'));
    const std::size_t mark = url.find('?');
    if (mark == std::string_view::npos)
        return std::nullopt;
    std::vector<URLQueryItem> items;
    for (std::string_view rest = url.substr(mark + 1); !rest.empty();) {
        const std::size_t end = rest.find('&');
        auto item = queryItem(rest.substr(0, end));
        if (!item)
            return std::nullopt;
        items.push_back(std::move(*item));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return items;
}

} // namespace quillmoth
