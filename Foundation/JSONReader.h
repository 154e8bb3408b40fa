#pragma once

#include "Foundation/JSONArray.h"
#include "Foundation/JSONInBounds.h"
#include "Foundation/JSONRecord.h"
#include "Foundation/Result.h"

#include <simdjson.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Reads records from JSON texts (RFC 8259), strictly. For .cpp files only. A record takes part by a list of
/// its fields, see RecordOf; the first one that cannot be read ends the reading of the whole text.
namespace quillmoth {

class JSONFields;

/// `json` without a byte order mark in front, which RFC 8259, 8.1, lets a reader ignore.
[[nodiscard]] std::string_view withoutByteOrderMark(std::string_view json);

/// The reading of one text: its values, and what was wrong with it.
class JSONReader {
public:
    /// Reads the record that is the whole of `json`. What stands under keys that nobody reads may be beyond
    /// the bounds of the parser.
    template<class Record>
    bool readText(std::string_view json, Record& record);

    [[nodiscard]] const Error& error() const { return error_; }

    bool read(const simdjson::dom::element& element, std::string& value);
    bool read(const simdjson::dom::element& element, bool& value);
    /// A number with a fraction is no integer, though the fraction be zero.
    bool read(const simdjson::dom::element& element, std::int64_t& value);
    bool read(const simdjson::dom::element& element, double& value);
    bool read(const simdjson::dom::element& element, float& value);

    template<class Record>
    bool read(const simdjson::dom::element& element, std::vector<Record>& values);
    template<class Record>
    bool read(const simdjson::dom::element& element, Record& record);

    /// Puts `key` in front of what is known of the error. False, for the caller to return.
    bool failAt(std::string_view key);
    bool fail(std::string_view description);

private:
    /// The values of `json`, or the error. They live in a parser of the thread until its next reading.
    [[nodiscard]] simdjson::simdjson_result<simdjson::dom::element> parse(std::string_view json);

    // Frees the memory of a large text with the reader.
    std::optional<simdjson::dom::parser> ownParser_;
    Error error_;
};

/// The keys of one object.
class JSONFields {
public:
    JSONFields(JSONReader& reader, simdjson::dom::object object)
        : reader_(reader), begin_(object.begin()), end_(object.end()), next_(begin_) {}

    /// False when the key is missing, or its value null or of another type.
    template<class Value>
    bool required(std::string_view key, Value& value) {
        if (const auto found = find(key))
            return reader_.read(*found, value) || reader_.failAt(key);
        reader_.fail("is missing");
        return reader_.failAt(key);
    }

    /// A missing key or null is no value. False when the value is of another type.
    template<class Value>
    bool optional(std::string_view key, std::optional<Value>& value) {
        const auto found = find(key);
        if (!found || found->is_null())
            return true;
        return reader_.read(*found, value.emplace()) || reader_.failAt(key);
    }

    template<class Value>
    bool ignoredOnWrite(std::string_view key, std::optional<Value>& value) {
        return optional(key, value);
    }

private:
    /// Starts behind the key found last, since keys mostly come in the order of the record.
    std::optional<simdjson::dom::element> find(std::string_view key);

    JSONReader& reader_;
    simdjson::dom::object::iterator begin_;
    simdjson::dom::object::iterator end_;
    simdjson::dom::object::iterator next_;
};

template<class Record>
bool JSONReader::read(const simdjson::dom::element& element, std::vector<Record>& values) {
    simdjson::dom::array array;
    if (element.get(array) != simdjson::SUCCESS)
        return fail("is no array");
    values.reserve(array.size());
    for (const simdjson::dom::element entry : array) {
        if (!read(entry, values.emplace_back()))
            return failAt("entry " + std::to_string(values.size() - 1));
    }
    return true;
}

template<class Record>
bool JSONReader::read(const simdjson::dom::element& element, Record& record) {
    simdjson::dom::object object;
    if (element.get(object) != simdjson::SUCCESS)
        return fail("is no object");
    JSONFields fields(*this, object);
    return visitFields(fields, record);
}

template<class Record>
bool JSONReader::readText(std::string_view json, Record& record) {
    simdjson::dom::element root;
    if (parse(json).get(root) == simdjson::SUCCESS && read(root, record))
        return true;
    const auto inBounds = jsonInBounds(json);
    if (!inBounds)
        return false;
    record = Record();
    return parse(*inBounds).get(root) == simdjson::SUCCESS && read(root, record);
}

/// The record that stands in `json`.
template<class Record>
[[nodiscard]] Result<Record> readJSON(std::string_view json) {
    JSONReader reader;
    Record record;
    if (reader.readText(withoutByteOrderMark(json), record))
        return record;
    return reader.error();
}

/// The records of the array that stands in `json`. They are parsed one by one: that takes little memory
/// beside the records' own, however long the array is.
template<class Record>
[[nodiscard]] Result<std::vector<Record>> readJSONArray(std::string_view json) {
    JSONReader reader;
    std::vector<Record> records;
    JSONArray array(withoutByteOrderMark(json));
    while (const auto entry = array.next()) {
        if (!reader.readText(*entry, records.emplace_back())) {
            reader.failAt("entry " + std::to_string(records.size() - 1));
            return reader.error();
        }
    }
    if (!array.isComplete())
        return Error{"is no complete JSON array"};
    return records;
}

} // namespace quillmoth
