#include "Platform/URLRequest.h"

#include "Foundation/ASCII.h"

#include <algorithm>

namespace quillmoth::platform {

namespace {

template<class Headers>
auto findField(Headers& headers, const std::string& field) {
    return std::find_if(headers.begin(), headers.end(),
                        [&](const auto& header) { return equalIgnoringASCIICase(header.first, field); });
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
