#include "Foundation/JSONArray.h"

#include <algorithm>

namespace quillmoth {

namespace {

constexpr std::string_view kSpace = " \t\r\n";
constexpr std::size_t kNowhere = std::string_view::npos;

} // namespace

JSONArray::JSONArray(std::string_view json) : json_(json) {}

void JSONArray::skipSpace() {
    position_ = std::min(json_.find_first_not_of(kSpace, position_), json_.size());
}

bool JSONArray::take(char c) {
    skipSpace();
    if (position_ == json_.size() || json_[position_] != c)
        return false;
    ++position_;
    return true;
}

std::optional<std::string_view> JSONArray::next() {
    if (isComplete_)
        return std::nullopt;
    if (isFirst_ && !take('['))
        return std::nullopt;
    if (take(']')) {
        skipSpace();
        isComplete_ = position_ == json_.size();
        return std::nullopt;
    }
    if (!isFirst_ && !take(','))
        return std::nullopt;
    isFirst_ = false;
    skipSpace();
    const std::size_t start = position_;
    if (!skipValue())
        return std::nullopt;
    return json_.substr(start, position_ - start);
}

bool JSONArray::skipValue() {
    if (position_ == json_.size())
        return false;
    const char c = json_[position_];
    if (c == '"')
        return skipText();
    if (c == '{' || c == '[')
        return skipNested();
    const std::size_t start = position_;
    position_ = std::min(json_.find_first_of(",] \t\r\n", position_), json_.size());
    return position_ > start;
}

bool JSONArray::skipText() {
    const std::size_t start = position_;
    for (std::size_t quote = json_.find('"', start + 1); quote != kNowhere;
         quote = json_.find('"', quote + 1)) {
        const std::size_t before = json_.find_last_not_of('\\', quote - 1);
        if ((quote - before) % 2 != 0) {
            position_ = quote + 1;
            return true;
        }
    }
    return false;
}

bool JSONArray::skipNested() {
    std::size_t depth = 0;
    while (position_ < json_.size()) {
        const char c = json_[position_];
        if (c == '"') {
            if (!skipText())
                return false;
            continue;
        }
        ++position_;
        if (c == '{' || c == '[')
            ++depth;
        else if ((c == '}' || c == ']') && --depth == 0)
            return true;
    }
    return false;
}

} // namespace quillmoth
