#include "MarkdownUI/Document/CommonMarkConversion.h"

#include "MarkdownUI/Document/MarkdownContent.h"

#include <cmark-gfm-core-extensions.h>

#include <algorithm>
#include <span>

namespace quillmoth::markdown {

namespace {

/// Calls visit(node) for each node below `root` in document order; where it returns false, for none below
/// that node. Needs no stack, however deep the tree is.
template<class Visit>
void walkBelow(cmark_node* root, Visit visit) {
    cmark_node* node = cmark_node_first_child(root);
    while (node != nullptr) {
        cmark_node* next = visit(node) ? cmark_node_first_child(node) : nullptr;
        while (next == nullptr && node != root) {
            next = cmark_node_next(node);
            if (next == nullptr)
                node = cmark_node_parent(node);
        }
        node = next;
    }
}

std::optional<Inline> leafInline(const CommonMarkNode& node) {
    switch (node.type()) {
    case CMARK_NODE_TEXT:
        return Inline{inlines::Text{node.literal()}};
    case CMARK_NODE_SOFTBREAK:
        return Inline{inlines::SoftBreak{}};
    case CMARK_NODE_LINEBREAK:
        return Inline{inlines::LineBreak{}};
    case CMARK_NODE_CODE:
        return Inline{inlines::Code{node.literal()}};
    case CMARK_NODE_HTML_INLINE:
        return Inline{inlines::HTML{node.literal()}};
    default:
        return std::nullopt;
    }
}

/// The leaves below, one after the other.
Inlines flattenedInlines(const CommonMarkNode& node) {
    Inlines result;
    walkBelow(node.pointer, [&result](cmark_node* below) {
        if (auto leaf = leafInline(CommonMarkNode(below)))
            result.push_back(std::move(*leaf));
        return true;
    });
    return result;
}

Inlines inlinesOf(const CommonMarkNode& node, int depth);

std::optional<Inline> convertInline(const CommonMarkNode& node, int depth) {
    const cmark_node_type type = node.type();
    if (type == CMARK_NODE_EMPH)
        return Inline{inlines::Emphasis{inlinesOf(node, depth)}};
    if (type == CMARK_NODE_STRONG)
        return Inline{inlines::Strong{inlinesOf(node, depth)}};
    if (type == CMARK_NODE_STRIKETHROUGH)
        return Inline{inlines::Strikethrough{inlinesOf(node, depth)}};
    if (type == CMARK_NODE_LINK)
        return Inline{inlines::Link{node.url(), inlinesOf(node, depth)}};
    if (type == CMARK_NODE_IMAGE)
        return Inline{inlines::Image{node.url(), inlinesOf(node, depth)}};
    return leafInline(node);
}

Inlines inlinesOf(const CommonMarkNode& node, int depth) {
    if (depth >= kDeepestNesting)
        return flattenedInlines(node);
    Inlines result;
    node.forEachChild([&](const CommonMarkNode& child) {
        if (auto value = convertInline(child, depth + 1))
            result.push_back(std::move(*value));
    });
    return result;
}

Blocks blocksOf(const CommonMarkNode& node, int depth);

bool isTaskItem(const CommonMarkNode& item) {
    return item.type() == CMARK_NODE_ITEM && item.typeString() == "tasklist";
}

bool hasTaskItem(const CommonMarkNode& list) {
    bool found = false;
    list.forEachChild([&found](const CommonMarkNode& item) { found = found || isTaskItem(item); });
    return found;
}

template<class Item, class MakeItem>
std::vector<Item> itemsOf(const CommonMarkNode& list, MakeItem makeItem) {
    std::vector<Item> items;
    list.forEachChild([&](const CommonMarkNode& item) {
        if (item.type() == CMARK_NODE_ITEM)
            items.push_back(makeItem(item));
    });
    return items;
}

std::optional<Block> convertList(const CommonMarkNode& list, int depth) {
    const bool tight = cmark_node_get_list_tight(list.pointer) != 0;
    if (hasTaskItem(list)) {
        return Block{blocks::TaskList{tight, itemsOf<TaskListItem>(list, [depth](const CommonMarkNode& item) {
                                          // The extension answers for its own items alone.
                                          const bool done =
                                              isTaskItem(item) &&
                                              cmark_gfm_extensions_get_tasklist_item_checked(item.pointer);
                                          return TaskListItem{done, blocksOf(item, depth + 1)};
                                      })}};
    }
    const auto plainItem = [depth](const CommonMarkNode& item) {
        return ListItem{blocksOf(item, depth + 1)};
    };
    switch (cmark_node_get_list_type(list.pointer)) {
    case CMARK_BULLET_LIST:
        return Block{blocks::BulletedList{tight, itemsOf<ListItem>(list, plainItem)}};
    case CMARK_ORDERED_LIST:
        return Block{blocks::NumberedList{tight, cmark_node_get_list_start(list.pointer),
                                          itemsOf<ListItem>(list, plainItem)}};
    default:
        return std::nullopt;
    }
}

std::optional<TextTableColumnAlignment> alignmentOf(std::uint8_t letter) {
    switch (letter) {
    case 'l':
        return TextTableColumnAlignment::leading;
    case 'c':
        return TextTableColumnAlignment::center;
    case 'r':
        return TextTableColumnAlignment::trailing;
    default:
        return std::nullopt;
    }
}

blocks::Table::Row convertRow(const CommonMarkNode& row, int depth) {
    blocks::Table::Row cells;
    row.forEachChild([&](const CommonMarkNode& cell) {
        if (cell.type() == CMARK_NODE_TABLE_CELL)
            cells.push_back(inlinesOf(cell, depth));
    });
    return cells;
}

Block convertTable(const CommonMarkNode& node, int depth) {
    blocks::Table table;
    const std::size_t count = cmark_gfm_extensions_get_table_columns(node.pointer);
    const std::uint8_t* letters = cmark_gfm_extensions_get_table_alignments(node.pointer);
    if (letters != nullptr)
        std::ranges::transform(std::span(letters, count), std::back_inserter(table.columnAlignments),
                               alignmentOf);
    node.forEachChild([&](const CommonMarkNode& row) {
        if (row.type() == CMARK_NODE_TABLE_ROW)
            table.rows.push_back(convertRow(row, depth));
    });
    return Block{std::move(table)};
}

Block convertCode(const CommonMarkNode& node) {
    const char* info = cmark_node_get_fence_info(node.pointer);
    return Block{
        blocks::CodeBlock{info == nullptr ? std::nullopt : std::optional<std::string>(info), node.literal()}};
}

/// A block that holds no other blocks.
std::optional<Block> leafBlock(const CommonMarkNode& node, int depth) {
    const cmark_node_type type = node.type();
    if (type == CMARK_NODE_CODE_BLOCK)
        return convertCode(node);
    if (type == CMARK_NODE_HTML_BLOCK)
        return Block{blocks::HTMLBlock{node.literal()}};
    if (type == CMARK_NODE_PARAGRAPH)
        return Block{blocks::Paragraph{inlinesOf(node, depth)}};
    if (type == CMARK_NODE_HEADING)
        return Block{blocks::Heading{cmark_node_get_heading_level(node.pointer), inlinesOf(node, depth)}};
    if (type == CMARK_NODE_TABLE)
        return convertTable(node, depth);
    if (type == CMARK_NODE_THEMATIC_BREAK)
        return Block{blocks::ThematicBreak{}};
    return std::nullopt;
}

std::optional<Block> convertBlock(const CommonMarkNode& node, int depth) {
    switch (node.type()) {
    case CMARK_NODE_BLOCK_QUOTE:
        return Block{blocks::Blockquote{blocksOf(node, depth)}};
    case CMARK_NODE_LIST:
        return convertList(node, depth);
    default:
        return leafBlock(node, depth);
    }
}

/// The leaf blocks below, one after the other.
Blocks flattenedBlocks(const CommonMarkNode& node) {
    Blocks result;
    walkBelow(node.pointer, [&result](cmark_node* below) {
        auto leaf = leafBlock(CommonMarkNode(below), kDeepestNesting);
        if (leaf)
            result.push_back(std::move(*leaf));
        return !leaf.has_value();
    });
    return result;
}

Blocks blocksOf(const CommonMarkNode& node, int depth) {
    if (depth >= kDeepestNesting)
        return flattenedBlocks(node);
    Blocks result;
    node.forEachChild([&](const CommonMarkNode& child) {
        if (auto block = convertBlock(child, depth + 1))
            result.push_back(std::move(*block));
    });
    return result;
}

} // namespace

Blocks blocksOfDocument(const CommonMarkNode& document) {
    return blocksOf(document, 0);
}

} // namespace quillmoth::markdown
