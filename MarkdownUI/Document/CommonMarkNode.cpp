#include "MarkdownUI/Document/CommonMarkNode.h"

#include "Foundation/FatalError.h"

namespace quillmoth::markdown {

CommonMarkNode::~CommonMarkNode() {
    if (pointer != nullptr && type() == CMARK_NODE_DOCUMENT)
        cmark_node_free(pointer);
}

std::string CommonMarkNode::literal() const {
    const char* text = cmark_node_get_literal(pointer);
    if (text == nullptr)
        fatalError("A Markdown node of type " + std::string(typeString()) + " has no text");
    return text;
}

std::string CommonMarkNode::url() const {
    const char* text = cmark_node_get_url(pointer);
    return text == nullptr ? std::string() : std::string(text);
}

} // namespace quillmoth::markdown
