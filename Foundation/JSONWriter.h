#pragma once

#include "Foundation/JSONRecord.h"
#include "Foundation/Result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// Appends one JSON text (RFC 8259) to a string, without white space between tokens. The caller keeps the
/// nesting in order; commas and colons are put in by the writer. Keys and texts are escaped; ill-formed UTF-8
/// becomes U+FFFD.
class JSONWriter {
public:
    explicit JSONWriter(std::string& output) : output_(output) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view name);
    void value(std::string_view text);

    void value(const char* text) { value(std::string_view(text)); }

    void value(bool boolean);
    void value(std::int64_t number);
    /// The shortest decimal form that reads back as the same value. Not for infinities and NaN.
    void value(double number);
    void value(float number);

    /// A record is written as an object of its fields, see RecordOf.
    template<class Value>
    void write(const Value& written) {
        if constexpr (requires { value(written); }) {
            value(written);
        } else {
            beginObject();
            visitFields(*this, written);
            endObject();
        }
    }

    template<class Value>
    void write(const std::vector<Value>& values) {
        beginArray();
        for (const Value& entry : values)
            write(entry);
        endArray();
    }

    // Writing a field cannot fail: each gives true.

    template<class Value>
    bool required(std::string_view name, const Value& written) {
        key(name);
        write(written);
        return true;
    }

    /// Nothing at all without a value.
    template<class Value>
    bool optional(std::string_view name, const std::optional<Value>& written) {
        return !written || required(name, *written);
    }

    template<class Value>
    bool ignoredOnWrite(std::string_view /*name*/, const std::optional<Value>& /*written*/) {
        return true;
    }

    /// True once a text was not well-formed UTF-8.
    [[nodiscard]] bool hasReplacedText() const { return hasReplacedText_; }

private:
    void separate();

    std::string& output_;
    bool needsComma_ = false;
    bool hasReplacedText_ = false;
};

/// The JSON text of a record, or of a vector of records. Fails where a text is not UTF-8. Room for
/// `expectedSize` bytes is made at once.
template<class Value>
[[nodiscard]] Result<std::string> writeJSONText(const Value& value, std::size_t expectedSize = 0) {
    std::string text;
    text.reserve(expectedSize);
    JSONWriter writer(text);
    writer.write(value);
    if (writer.hasReplacedText())
        return Error{"A text is not well-formed UTF-8."};
    return text;
}

} // namespace quillmoth
