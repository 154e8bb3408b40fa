#include "MarkdownUI/Document/Block.h"

#include "MarkdownUI/Document/Hash.h"

namespace quillmoth::markdown {

namespace blocks {

namespace {

bool operator==(const Blockquote& first, const Blockquote& second) {
    return first.blocks == second.blocks;
}

bool operator==(const TaskList& first, const TaskList& second) {
    return first.tight == second.tight && first.items == second.items;
}

bool operator==(const BulletedList& first, const BulletedList& second) {
    return first.tight == second.tight && first.items == second.items;
}

bool operator==(const NumberedList& first, const NumberedList& second) {
    return first.tight == second.tight && first.start == second.start && first.items == second.items;
}

bool operator==(const CodeBlock& first, const CodeBlock& second) {
    return first.info == second.info && first.content == second.content;
}

bool operator==(const HTMLBlock& first, const HTMLBlock& second) {
    return first.content == second.content;
}

bool operator==(const Paragraph& first, const Paragraph& second) {
    return first.text == second.text;
}

bool operator==(const Heading& first, const Heading& second) {
    return first.level == second.level && first.text == second.text;
}

bool operator==(const Table& first, const Table& second) {
    return first.columnAlignments == second.columnAlignments && first.rows == second.rows;
}

bool operator==(const ThematicBreak& /*first*/, const ThematicBreak& /*second*/) {
    return true;
}

template<class Item>
std::size_t hashOfItems(std::size_t seed, const std::vector<Item>& items) {
    for (const Item& item : items) {
        if constexpr (std::is_same_v<Item, TaskListItem>)
            seed = mixHash(seed, item.isCompleted ? 2 : 1);
        seed = mixHash(seed, hashValue(item.blocks));
    }
    return mixHash(seed, items.size());
}

std::size_t hashOfKind(const Blockquote& quote) {
    return hashValue(quote.blocks);
}

std::size_t hashOfKind(const TaskList& list) {
    return hashOfItems(hashOf(list.tight), list.items);
}

std::size_t hashOfKind(const BulletedList& list) {
    return hashOfItems(hashOf(list.tight), list.items);
}

std::size_t hashOfKind(const NumberedList& list) {
    return hashOfItems(hashOf(list.tight, list.start), list.items);
}

std::size_t hashOfKind(const CodeBlock& code) {
    return hashOf(code.info, code.content);
}

std::size_t hashOfKind(const HTMLBlock& html) {
    return hashOf(html.content);
}

std::size_t hashOfKind(const Paragraph& paragraph) {
    return hashValue(paragraph.text);
}

std::size_t hashOfKind(const Heading& heading) {
    return mixHash(hashOf(heading.level), hashValue(heading.text));
}

std::size_t hashOfKind(const Table& table) {
    std::size_t seed = table.rows.size();
    for (const auto& alignment : table.columnAlignments)
        seed = mixHash(seed, alignment ? static_cast<std::size_t>(*alignment) + 1 : 0);
    for (const Table::Row& row : table.rows) {
        seed = mixHash(seed, row.size());
        for (const Inlines& cell : row)
            seed = mixHash(seed, hashValue(cell));
    }
    return seed;
}

std::size_t hashOfKind(const ThematicBreak& /*kind*/) {
    return 0;
}

} // namespace

} // namespace blocks

bool operator==(const ListItem& first, const ListItem& second) {
    return first.blocks == second.blocks;
}

bool operator==(const TaskListItem& first, const TaskListItem& second) {
    return first.isCompleted == second.isCompleted && first.blocks == second.blocks;
}

bool operator==(const Block& first, const Block& second) {
    if (first.value.index() != second.value.index())
        return false;
    return std::visit(
        [&second](const auto& kind) {
            using Kind = std::decay_t<decltype(kind)>;
            return blocks::operator==(kind, std::get<Kind>(second.value));
        },
        first.value);
}

std::size_t hashValue(const Block& value) {
    const auto hash = [](const auto& kind) { return blocks::hashOfKind(kind); };
    return mixHash(value.value.index(), std::visit(hash, value.value));
}

std::size_t hashValue(const Blocks& values) {
    std::size_t seed = values.size();
    for (const Block& value : values)
        seed = mixHash(seed, hashValue(value));
    return seed;
}

std::string_view withoutFinalLineFeed(std::string_view text) {
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    return text;
}

} // namespace quillmoth::markdown
