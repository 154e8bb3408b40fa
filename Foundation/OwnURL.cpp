#include "Foundation/OwnURL.h"

#include <algorithm>

namespace quillmoth {

std::optional<std::string> ownURL(std::string_view url) {
    const auto lowerCase = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    const bool isOwn = url.size() > kOwnScheme.size() + 1 && url[kOwnScheme.size()] == ':' &&
                       std::equal(kOwnScheme.begin(), kOwnScheme.end(), url.begin(),
                                  [&](char expected, char given) { return expected == lowerCase(given); });
    if (!isOwn)
        return std::nullopt;
    return std::string(kOwnScheme).append(url.substr(kOwnScheme.size()));
}

} // namespace quillmoth
