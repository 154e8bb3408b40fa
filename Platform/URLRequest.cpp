#include "Platform/URLRequest.h"

#include <algorithm>

namespace quillmoth::platform {

namespace {

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameField(const std::string& first, const std::string& second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](char a, char b) { return lowered(a) == lowered(b); });
}

template<class Headers>
auto findField(Headers& headers, const std::string& field) {
    return std::find_if(headers.begin(), headers.end(),
                        [&](const auto& header) { return sameField(header.first, field); });
}

} // namespace

void URLRequest::addValue(const std::string& value, const std::string& field) {
    const auto found = findField(headers, field);
    if (found == headers.end())
        headers.emplace_back(field, value);
    else
        found->second += "," + value;
}

void URLRequest::setValue(const std::string& value, const std::string& field) {
    const auto found = findField(headers, field);
    if (found == headers.end())
        headers.emplace_back(field, value);
    else
        found->second = value;
}

std::optional<std::string> URLRequest::value(const std::string& field) const {
    const auto found = findField(headers, field);
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

} // namespace quillmoth::platform
