// The reading of an array entry by entry against the parser's reading of the whole.

#include "Fuzz.h"

#include "Foundation/JSONReader.h"

namespace quillmoth::fuzz {

struct Item {
    std::string name;
    std::optional<std::int64_t> count;
    std::optional<double> share;

    friend bool operator==(const Item&, const Item&) = default;
};

struct List {
    std::vector<Item> items;
};

static bool visitFields(JSONFields& fields, Item& item) {
    return fields.required("name", item.name) && fields.optional("count", item.count) &&
           fields.optional("share", item.share);
}

static bool visitFields(JSONFields& fields, List& list) {
    return fields.required("items", list.items);
}

namespace {

struct Walk {
    std::vector<std::string_view> entries;
    bool isComplete = false;
};

Walk walk(std::string_view json) {
    JSONArray array(json);
    Walk result;
    while (const auto entry = array.next()) {
        promise(!entry->empty(), "no entry is empty");
        promise(entry->data() >= json.data() && entry->data() + entry->size() <= json.data() + json.size(),
                "entries are views into the text");
        promise(result.entries.empty() ||
                    entry->data() > result.entries.back().data() + result.entries.back().size(),
                "entries come in their order");
        result.entries.push_back(*entry);
    }
    result.isComplete = array.isComplete();
    return result;
}

void checkAgainstParser(std::string_view json) {
    simdjson::dom::parser whole;
    simdjson::dom::parser alone;
    const auto parsed = whole.parse(json.data(), json.size());
    const Walk walked = walk(json);
    simdjson::dom::array array;
    if (parsed.error() == simdjson::SUCCESS && parsed.get(array) == simdjson::SUCCESS) {
        promise(walked.isComplete, "an array is walked to its end");
        promise(walked.entries.size() == array.size(), "as many entries as the parser finds");
        std::size_t index = 0;
        for (const simdjson::dom::element expected : array) {
            const std::string_view text = walked.entries[index++];
            simdjson::dom::element entry;
            promise(alone.parse(text.data(), text.size()).get(entry) == simdjson::SUCCESS,
                    "each entry parses alone");
            promise(simdjson::minify(entry) == simdjson::minify(expected), "as what it is in the array");
        }
    }
}

/// The same text as one value within an object goes through the parser in one piece.
void checkRecords(std::string_view json) {
    const auto entries = readJSONArray<Item>(json);
    const auto list = readJSON<List>("{\"items\":" + std::string(withoutByteOrderMark(json)) + "}");
    promise(static_cast<bool>(entries) == static_cast<bool>(list), "read where the whole is readable");
    promise(!entries || *entries == list->items, "the records of the whole");
    promise(entries || !entries.error().description.empty(), "what is not read is told");
}

} // namespace

void check(std::string_view input) {
    if (!input.empty())
        checkAgainstParser(input);
    checkRecords(input);
}

} // namespace quillmoth::fuzz
