#include "MarkdownUI/Document/MarkdownContent.h"

#include "Foundation/Text.h"
#include "MarkdownUI/Document/CommonMarkConversion.h"
#include "MarkdownUI/Document/CommonMarkExtension.h"

#include <cmark-gfm-core-extensions.h>

#include <memory>

namespace quillmoth::markdown {

namespace {

struct FreeParser {
    void operator()(cmark_parser* parser) const { cmark_parser_free(parser); }
};

void registerExtensions() {
    // The library's own guard is not meant for several threads.
    static const bool once = (cmark_gfm_core_extensions_ensure_registered(), true);
    (void)once;
}

cmark_node* parse(std::string_view text) {
    registerExtensions();
    const std::unique_ptr<cmark_parser, FreeParser> parser(cmark_parser_new(CMARK_OPT_DEFAULT));
    for (const CommonMarkExtension& name : CommonMarkExtension::all()) {
        if (cmark_syntax_extension* extension = cmark_find_syntax_extension(name.rawValue.c_str()))
            cmark_parser_attach_syntax_extension(parser.get(), extension);
    }
    // The parser hands ill-formed bytes through, which nothing behind it expects.
    if (isValidUTF8(text)) {
        cmark_parser_feed(parser.get(), text.data(), text.size());
    } else {
        const std::string wellFormed = sanitizedUTF8(text);
        cmark_parser_feed(parser.get(), wellFormed.data(), wellFormed.size());
    }
    return cmark_parser_finish(parser.get());
}

} // namespace

MarkdownContent::MarkdownContent(std::string_view text) {
    const CommonMarkNode document(parse(text));
    if (document.pointer != nullptr)
        blocks = blocksOfDocument(document);
}

} // namespace quillmoth::markdown
