#include "Foundation/JSONInBounds.h"

#include <simdjson.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmoth {

namespace {

/// No record is nested nearly as deep, and the parser holds four times as much.
constexpr std::size_t kDeepest = 256;
/// Reads as no text, number, truth value or object, and as no array of records either.
constexpr std::string_view kOfNoType = "[[]]";
/// Any number of so many characters without an exponent is within bounds.
constexpr std::size_t kAlwaysHeld = 18;
constexpr std::string_view kDigits = "0123456789";

/// The parts of a number (RFC 8259, 6), views into it.
struct Number {
    std::string_view sign;
    std::string_view integer;
    std::string_view fraction;
    std::string_view exponent;
};

std::string_view takeDigits(std::string_view& rest) {
    const auto digits = rest.substr(0, rest.find_first_not_of(kDigits));
    rest.remove_prefix(digits.size());
    return digits;
}

std::optional<Number> parseNumber(std::string_view token) {
    Number number;
    if (token.starts_with('-')) {
        number.sign = token.substr(0, 1);
        token.remove_prefix(1);
    }
    number.integer = takeDigits(token);
    if (number.integer.empty() || (number.integer.size() > 1 && number.integer.front() == '0'))
        return std::nullopt;
    if (token.starts_with('.')) {
        token.remove_prefix(1);
        number.fraction = takeDigits(token);
        if (number.fraction.empty())
            return std::nullopt;
    }
    if (token.starts_with('e') || token.starts_with('E')) {
        token.remove_prefix(1);
        const auto exponent = token;
        if (token.starts_with('+') || token.starts_with('-'))
            token.remove_prefix(1);
        if (takeDigits(token).empty())
            return std::nullopt;
        number.exponent = exponent.substr(0, exponent.size() - token.size());
    }
    return token.empty() ? std::optional(number) : std::nullopt;
}

/// The digits of an integer that is written with an exponent; none where it is no integer of 64 bits.
std::optional<std::string> inDigits(const Number& number) {
    auto exponentText = number.exponent;
    if (exponentText.starts_with('+'))
        exponentText.remove_prefix(1);
    std::int64_t exponent = 0;
    const auto* const end = exponentText.data() + exponentText.size();
    if (std::from_chars(exponentText.data(), end, exponent).ec != std::errc())
        return std::nullopt;
    std::string digits(number.integer);
    constexpr std::int64_t kMostDigits = 19;
    if (digits == "0")
        exponent = 0;
    if (exponent > kMostDigits)
        return std::nullopt;
    for (; exponent > 0; --exponent)
        digits += '0';
    for (; exponent < 0; ++exponent) {
        if (digits.size() < 2 || digits.back() != '0')
            return std::nullopt;
        digits.pop_back();
    }
    digits.insert(0, number.sign);
    std::int64_t value = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc())
        return std::nullopt;
    return digits;
}

/// Goes over the text once and writes it anew.
class Rewriter {
public:
    explicit Rewriter(std::string_view json) : json_(json) { result_.reserve(json.size()); }

    std::optional<std::string> run() {
        bool isSound = true;
        while (isSound && position_ < json_.size()) {
            switch (const char c = json_[position_]) {
            case '"':
                isSound = text();
                break;
            case '[':
            case '{':
                open(c);
                break;
            case ']':
            case '}':
                isSound = close(c);
                break;
            default:
                (kDigits.find(c) == std::string_view::npos && c != '-') ? copy(1) : number();
            }
        }
        return isSound && changed_ ? std::optional(std::move(result_)) : std::nullopt;
    }

private:
    void copy(std::size_t length) {
        result_ += json_.substr(position_, length);
        position_ += length;
    }

    void replace(std::size_t length, std::string_view by) {
        result_ += by;
        position_ += length;
        changed_ = true;
    }

    bool parses(std::string_view json) {
        return parser_.parse(json.data(), json.size()).error() == simdjson::SUCCESS;
    }

    void open(char c) {
        if (++depth_ % kDeepest == 0)
            deepStarts_.push_back(result_.size());
        result_ += c;
        ++position_;
    }

    bool close(char c) {
        result_ += c;
        ++position_;
        if (depth_ == 0)
            return false;
        if (depth_-- % kDeepest != 0)
            return true;
        const std::size_t start = deepStarts_.back();
        deepStarts_.pop_back();
        if (!parses(std::string_view(result_).substr(start)))
            return false;
        result_.resize(start);
        result_ += "null";
        return changed_ = true;
    }

    /// A text with half of a surrogate pair stands for no Unicode text, and is JSON all the same.
    bool text() {
        std::size_t end = position_ + 1;
        bool hasSurrogate = false;
        for (; end < json_.size() && json_[end] != '"'; ++end) {
            if (json_[end] != '\\')
                continue;
            const auto escape = json_.substr(++end, 2);
            hasSurrogate = hasSurrogate || escape == "ud" || escape == "uD";
        }
        if (end >= json_.size())
            return false;
        const auto token = json_.substr(position_, end + 1 - position_);
        if (!hasSurrogate || parses(token))
            copy(token.size());
        else if (isKey(end + 1) || !parses(withoutSurrogates(token)))
            return false;
        else
            replace(token.size(), kOfNoType);
        return true;
    }

    [[nodiscard]] bool isKey(std::size_t behind) const {
        const std::size_t next = json_.find_first_not_of(" \t\r\n", behind);
        return next != std::string_view::npos && json_[next] == ':';
    }

    static std::string withoutSurrogates(std::string_view token) {
        std::string other(token);
        for (std::size_t i = 0; i + 2 < other.size(); ++i) {
            if (other[i] != '\\')
                continue;
            if (other[++i] == 'u' && (other[i + 1] == 'd' || other[i + 1] == 'D'))
                other[i + 1] = '0';
        }
        return other;
    }

    void number() {
        const auto end = json_.find_first_not_of("0123456789+-.eE", position_);
        const auto token = json_.substr(position_, end == std::string_view::npos ? end : end - position_);
        const auto number = parseNumber(token);
        if (!number || (number->exponent.empty() && token.size() <= kAlwaysHeld))
            return copy(token.size());
        if (number->fraction.empty() && !number->exponent.empty()) {
            if (const auto digits = inDigits(*number))
                return replace(token.size(), *digits);
        }
        if (parses(token))
            return copy(token.size());
        const std::string floating = std::string(token) + "e0";
        replace(token.size(), parses(floating) ? std::string_view(floating) : kOfNoType);
    }

    const std::string_view json_;
    std::size_t position_ = 0;
    std::string result_;
    std::size_t depth_ = 0;
    // Where in the result the containers begin that are as deep as a multiple of kDeepest.
    std::vector<std::size_t> deepStarts_;
    bool changed_ = false;
    simdjson::dom::parser parser_;
};

} // namespace

std::optional<std::string> jsonInBounds(std::string_view json) {
    return Rewriter(json).run();
}

} // namespace quillmoth
