#include "Quillmoth/Highlighting/SwiftKeywords.h"

#include <array>
#include <cstddef>

namespace quillmoth::highlighting {

namespace {

constexpr auto kReserved = std::to_array<std::string_view>({"_",
                                                            "as",
                                                            "associatedtype",
                                                            "async",
                                                            "await",
                                                            "break",
                                                            "case",
                                                            "catch",
                                                            "class",
                                                            "continue",
                                                            "default",
                                                            "defer",
                                                            "deinit",
                                                            "do",
                                                            "else",
                                                            "enum",
                                                            "extension",
                                                            "fallthrough",
                                                            "fileprivate",
                                                            "final",
                                                            "for",
                                                            "func",
                                                            "guard",
                                                            "if",
                                                            "import",
                                                            "in",
                                                            "init",
                                                            "inout",
                                                            "internal",
                                                            "is",
                                                            "let",
                                                            "mutating",
                                                            "nonisolated",
                                                            "nonmutating",
                                                            "operator",
                                                            "override",
                                                            "precedencegroup",
                                                            "private",
                                                            "protocol",
                                                            "public",
                                                            "repeat",
                                                            "rethrows",
                                                            "return",
                                                            "static",
                                                            "struct",
                                                            "subscript",
                                                            "switch",
                                                            "throw",
                                                            "throws",
                                                            "try",
                                                            "typealias",
                                                            "unowned",
                                                            "var",
                                                            "weak",
                                                            "where",
                                                            "while"});

constexpr auto kLiteral =
    std::to_array<std::string_view>({"Any", "Self", "false", "nil", "self", "super", "true"});

constexpr auto kContextual = std::to_array<std::string_view>(
    {"actor",       "any",     "borrowing", "consume",  "consuming", "convenience", "didSet",
     "distributed", "dynamic", "each",      "get",      "indirect",  "infix",       "isolated",
     "lazy",        "macro",   "open",      "optional", "package",   "postfix",     "prefix",
     "required",    "sending", "set",       "some",     "willSet",   "yield"});

constexpr std::size_t kSlots = 512;

constexpr std::size_t slotOf(std::string_view word) {
    std::uint32_t hash = 2166136261U;
    for (const char byte : word) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
    }
    return (hash ^ (hash >> 15U)) % kSlots;
}

struct Entry {
    std::string_view word;
    KeywordClass keyword = KeywordClass::none;
};

/// Open addressing, sparse enough that most misses end at the first slot.
constexpr std::array<Entry, kSlots> makeTable() {
    std::array<Entry, kSlots> table{};
    const auto insert = [&table](const auto& words, KeywordClass keyword) {
        for (const std::string_view word : words) {
            std::size_t slot = slotOf(word);
            while (!table[slot].word.empty()) {
                slot = (slot + 1) % kSlots;
            }
            table[slot] = {word, keyword};
        }
    };
    insert(kReserved, KeywordClass::reserved);
    insert(kLiteral, KeywordClass::literal);
    insert(kContextual, KeywordClass::contextual);
    return table;
}

constexpr std::array<Entry, kSlots> kTable = makeTable();
constexpr std::size_t kLongestKeyword = 15;

} // namespace

KeywordClass keywordClass(std::string_view word) {
    if (word.size() > kLongestKeyword) {
        return KeywordClass::none;
    }
    for (std::size_t slot = slotOf(word); !kTable[slot].word.empty(); slot = (slot + 1) % kSlots) {
        if (kTable[slot].word == word) {
            return kTable[slot].keyword;
        }
    }
    return KeywordClass::none;
}

} // namespace quillmoth::highlighting
