#include "MarkdownUI/Style/InlineRendering.h"

#include "Foundation/URL.h"
#include "MarkdownUI/Style/Theme.h"

namespace quillmoth::markdown {

namespace {

/// Appends to one text, so that the cost does not grow with the depth.
class InlineRenderer {
public:
    InlineRenderer(const InlineEnvironment& environment, AttributedText& result)
        : environment_(environment), result_(result) {}

    void render(const Inline& value, const SharedAttributes& bag) {
        std::visit([&](const auto& kind) { renderKind(kind, bag); }, value.value);
    }

private:
    void renderKind(const inlines::Text& text, const SharedAttributes& bag) {
        result_.append(text.literal, bag);
    }

    void renderKind(const inlines::Code& code, const SharedAttributes& bag) {
        result_.append(code.literal, collecting(environment_.code, bag));
    }

    void renderKind(const inlines::HTML& html, const SharedAttributes& bag) {
        result_.append(html.literal, bag);
    }

    void renderKind(const inlines::Emphasis& emphasis, const SharedAttributes& bag) {
        renderChildren(emphasis.children, collecting(environment_.emphasis, bag));
    }

    void renderKind(const inlines::Strong& strong, const SharedAttributes& bag) {
        renderChildren(strong.children, collecting(environment_.strong, bag));
    }

    void renderKind(const inlines::Strikethrough& strikethrough, const SharedAttributes& bag) {
        renderChildren(strikethrough.children, collecting(environment_.strikethrough, bag));
    }

    void renderKind(const inlines::Link& link, const SharedAttributes& bag) {
        AttributeContainer inner = collecting(environment_.link, bag);
        inner.link = resolveLink(link.destination, environment_.baseURL);
        renderChildren(link.children, std::move(inner));
    }

    void renderKind(const inlines::Image& /*image*/, const SharedAttributes& /*bag*/) {}

    void renderKind(const inlines::SoftBreak& /*softBreak*/, const SharedAttributes& bag) {
        result_.append(" ", bag);
    }

    void renderKind(const inlines::LineBreak& /*lineBreak*/, const SharedAttributes& bag) {
        result_.append("\n", bag);
    }

    void renderChildren(const Inlines& children, const SharedAttributes& bag) {
        for (const Inline& child : children)
            render(child, bag);
    }

    const InlineEnvironment& environment_;
    AttributedText& result_;
};

} // namespace

InlineEnvironment::InlineEnvironment(std::string base, const Theme& theme)
    : baseURL(std::move(base)), code(theme.code), emphasis(theme.emphasis), strong(theme.strong),
      strikethrough(theme.strikethrough), link(theme.link) {}

AttributedText inlineToAttributed(const Inline& value, const InlineEnvironment& environment,
                                  const AttributeContainer& attributes) {
    AttributedText result;
    InlineRenderer(environment, result).render(value, attributes);
    return result;
}

AttributedText inlinesToText(const Inlines& values, const InlineEnvironment& environment,
                             const AttributeContainer& attributes, const InlineImages& images) {
    AttributedText result;
    InlineRenderer renderer(environment, result);
    const SharedAttributes shared(attributes);
    for (const Inline& value : values) {
        const auto* image = value.get<inlines::Image>();
        if (image == nullptr) {
            renderer.render(value, shared);
        } else if (auto attachment = images ? images(image->source) : std::nullopt) {
            attachment->alt = inlinesAsText(image->children);
            AttributeContainer bag = attributes;
            bag.attachment = std::move(attachment);
            result.append(kObjectReplacement, std::move(bag));
        }
    }
    realizeFonts(result);
    return result;
}

} // namespace quillmoth::markdown
