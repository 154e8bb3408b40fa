#pragma once

#include <cmark-gfm.h>

#include <string>
#include <string_view>

// Exported by the extensions' library, but declared in none of its installed headers.
extern "C" {
extern cmark_node_type CMARK_NODE_TABLE;
extern cmark_node_type CMARK_NODE_TABLE_ROW;
extern cmark_node_type CMARK_NODE_TABLE_CELL;
extern cmark_node_type CMARK_NODE_STRIKETHROUGH;
}

namespace quillmoth::markdown {

/// A node of cmark-gfm's tree. The wrapper of a document node owns the whole tree and frees it; any other
/// wrapper owns nothing and lives no longer than the document's. No heap work.
class CommonMarkNode {
public:
    explicit CommonMarkNode(cmark_node* node) : pointer(node) {}

    ~CommonMarkNode();
    CommonMarkNode(const CommonMarkNode&) = delete;
    CommonMarkNode& operator=(const CommonMarkNode&) = delete;

    [[nodiscard]] cmark_node_type type() const { return cmark_node_get_type(pointer); }

    [[nodiscard]] std::string_view typeString() const { return cmark_node_get_type_string(pointer); }

    /// The text of a node that must have one: none is a fatal fault.
    [[nodiscard]] std::string literal() const;
    /// Empty where there is none.
    [[nodiscard]] std::string url() const;

    /// Calls visit(const CommonMarkNode&) for each child in order.
    template<class Visit>
    void forEachChild(Visit visit) const {
        for (cmark_node* child = cmark_node_first_child(pointer); child != nullptr;
             child = cmark_node_next(child))
            visit(CommonMarkNode(child));
    }

    cmark_node* const pointer;
};

} // namespace quillmoth::markdown
