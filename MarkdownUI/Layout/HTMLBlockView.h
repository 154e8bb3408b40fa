#pragma once

#include "MarkdownUI/Layout/FlowBuilder.h"
#include "MarkdownUI/Layout/InlineText.h"

namespace quillmoth::markdown {

/// Raw markup, shown as it is in the style of paragraphs. It is never interpreted.
class HTMLBlockView {
public:
    explicit HTMLBlockView(const blocks::HTMLBlock& html) : html_(html) {}

    void addTo(FlowBuilder& flow, const FlowContext& context) const {
        InlineText(withoutFinalLineFeed(html_.content)).addTo(flow, flow.theme().paragraph, context);
    }

private:
    const blocks::HTMLBlock& html_;
};

} // namespace quillmoth::markdown
