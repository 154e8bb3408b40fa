#pragma once

#include "MarkdownUI/Document/Inline.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillmoth::markdown {

struct Block;
using Blocks = std::vector<Block>;

enum class TextTableColumnAlignment : std::uint8_t { leading, center, trailing };

struct ListItem {
    Blocks blocks;
};

struct TaskListItem {
    bool isCompleted = false;
    Blocks blocks;
};

/// The kinds of Block.
namespace blocks {

struct Blockquote {
    Blocks blocks;
};

/// A list in which at least one item has a check box.
struct TaskList {
    bool tight = false;
    std::vector<TaskListItem> items;
};

struct BulletedList {
    bool tight = false;
    std::vector<ListItem> items;
};

struct NumberedList {
    bool tight = false;
    std::int64_t start = 1;
    std::vector<ListItem> items;
};

/// Fenced or indented; `content` keeps its final line feed.
struct CodeBlock {
    std::optional<std::string> info;
    std::string content;
};

/// Raw markup, kept as text.
struct HTMLBlock {
    std::string content;
};

struct Paragraph {
    Inlines text;
};

struct Heading {
    int level = 1; ///< 1 to 6
    Inlines text;
};

/// Row 0 is the header row. A column's alignment is absent where the source gives none.
struct Table {
    using Row = std::vector<Inlines>;

    std::vector<std::optional<TextTableColumnAlignment>> columnAlignments;
    std::vector<Row> rows;
};

struct ThematicBreak {};

} // namespace blocks

/// A part of a document. Immutable by use; a value.
struct Block {
    using Value = std::variant<blocks::Blockquote, blocks::TaskList, blocks::BulletedList,
                               blocks::NumberedList, blocks::CodeBlock, blocks::HTMLBlock, blocks::Paragraph,
                               blocks::Heading, blocks::Table, blocks::ThematicBreak>;

    Value value;

    template<class Kind>
    [[nodiscard]] const Kind* get() const {
        return std::get_if<Kind>(&value);
    }
};

[[nodiscard]] bool operator==(const Block& first, const Block& second);
[[nodiscard]] bool operator==(const ListItem& first, const ListItem& second);
[[nodiscard]] bool operator==(const TaskListItem& first, const TaskListItem& second);
[[nodiscard]] std::size_t hashValue(const Block& value);
[[nodiscard]] std::size_t hashValue(const Blocks& values);

/// `text` less one final line feed.
[[nodiscard]] std::string_view withoutFinalLineFeed(std::string_view text);

} // namespace quillmoth::markdown

template<>
struct std::hash<quillmoth::markdown::Block> {
    std::size_t operator()(const quillmoth::markdown::Block& value) const { return hashValue(value); }
};
