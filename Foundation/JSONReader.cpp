#include "Foundation/JSONReader.h"

#include <cmath>
#include <limits>

namespace quillmoth {

namespace {

using simdjson::dom::element;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Texts up to this size share one parser a thread, which keeps its memory: events of a stream allocate
/// nothing.
constexpr std::size_t kLargestShared = 256 * 1024;

simdjson::dom::parser& sharedParser() {
    thread_local simdjson::dom::parser parser;
    return parser;
}

template<class Value>
bool readScalar(JSONReader& reader, const element& element, Value& value, std::string_view description) {
    return element.get(value) == simdjson::SUCCESS || reader.fail(description);
}

} // namespace

std::string_view withoutByteOrderMark(std::string_view json) {
    if (json.starts_with(kByteOrderMark))
        json.remove_prefix(kByteOrderMark.size());
    return json;
}

simdjson::simdjson_result<element> JSONReader::parse(std::string_view json) {
    auto& parser = json.size() <= kLargestShared ? sharedParser() : ownParser_.emplace();
    // The parser copies even nothing, and not from a null pointer.
    auto result = parser.parse(json.empty() ? "" : json.data(), json.size());
    if (result.error() != simdjson::SUCCESS)
        fail(simdjson::error_message(result.error()));
    return result;
}

bool JSONReader::read(const element& element, std::string& value) {
    std::string_view text;
    if (!readScalar(*this, element, text, "is no text"))
        return false;
    value.assign(text);
    return true;
}

bool JSONReader::read(const element& element, bool& value) {
    return readScalar(*this, element, value, "is neither true nor false");
}

bool JSONReader::read(const element& element, std::int64_t& value) {
    // get converts no floating-point number. Integers with an exponent come as such, and are read from the
    // text in bounds.
    return readScalar(*this, element, value, "is no integer");
}

bool JSONReader::read(const element& element, double& value) {
    return readScalar(*this, element, value, "is no number");
}

bool JSONReader::read(const element& element, float& value) {
    double number = 0;
    if (!read(element, number))
        return false;
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max()))
        return fail("is too large a number");
    value = static_cast<float>(number);
    return true;
}

bool JSONReader::failAt(std::string_view key) {
    const bool isInner = error_.description.starts_with('"');
    error_.description.insert(0, "\"" + std::string(key) + (isInner ? "\", " : "\" "));
    return false;
}

bool JSONReader::fail(std::string_view description) {
    error_.description = description;
    return false;
}

std::optional<element> JSONFields::find(std::string_view key) {
    const auto start = next_;
    for (auto field = start; field != end_; ++field) {
        if (field.key() == key) {
            next_ = field;
            ++next_;
            return field.value();
        }
    }
    for (auto field = begin_; field != start; ++field) {
        if (field.key() == key) {
            next_ = field;
            ++next_;
            return field.value();
        }
    }
    return std::nullopt;
}

} // namespace quillmoth
