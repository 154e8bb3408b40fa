#pragma once

#include "MarkdownUI/Document/Inline.h"
#include "MarkdownUI/Style/AttributedText.h"
#include "MarkdownUI/Style/TextStyle.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace quillmoth::markdown {

struct Theme;

/// What inline rendering needs from its surroundings.
struct InlineEnvironment {
    std::string baseURL; ///< empty for none
    AnyTextStyle code;
    AnyTextStyle emphasis;
    AnyTextStyle strong;
    AnyTextStyle strikethrough;
    AnyTextStyle link;

    InlineEnvironment() = default;
    InlineEnvironment(std::string base, const Theme& theme);
};

/// One inline as text in the style of `attributes`. Images inside give nothing; a link whose destination is
/// no URL, or a relative one without a base, gives plain text. Fonts are not realized yet.
[[nodiscard]] AttributedText inlineToAttributed(const Inline& value, const InlineEnvironment& environment,
                                                const AttributeContainer& attributes);

/// The loaded image of a source as it stands in the document; nothing where there is none.
using InlineImages = std::function<std::optional<ImageAttachment>(const std::string& source)>;

/// A list of inlines as one text with real fonts. Images of the top level come from `images` (may be empty)
/// and stand as one U+FFFC each; those that are not loaded give nothing.
[[nodiscard]] AttributedText inlinesToText(const Inlines& values, const InlineEnvironment& environment,
                                           const AttributeContainer& attributes, const InlineImages& images);

/// The character that stands for an image.
constexpr std::string_view kObjectReplacement = "\xEF\xBF\xBC";

} // namespace quillmoth::markdown
