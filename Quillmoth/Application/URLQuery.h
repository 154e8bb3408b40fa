#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// One item of a URL's query, percent-decoded. An item without "=" has no value.
struct URLQueryItem {
    std::string name;
    std::optional<std::string> value;

    friend bool operator==(const URLQueryItem&, const URLQueryItem&) = default;
};

/// The scheme as it is written; empty where the URL has none (RFC 3986, 3.1).
[[nodiscard]] std::string_view urlScheme(std::string_view url);

/// The items of the query, split at "&". None where the URL has no query, or where its percent-encoding is
/// broken. A "+" stands for itself (RFC 3986, 3.4).
[[nodiscard]] std::optional<std::vector<URLQueryItem>> urlQueryItems(std::string_view url);

} // namespace quillmoth
