#include "MarkdownUI/Style/Theme.h"

#include "MarkdownUI/Style/TextStyleBuilder.h"

namespace quillmoth::markdown {

namespace {

using Weight = FontProperties::Weight;

AnyTextStyle codeTextStyle() {
    return TextStyleBuilder::Pair<FontFamilyVariant, FontSize>{{FontProperties::FamilyVariant::monospaced},
                                                               {RelativeSize::em(0.94)}};
}

void setInlineStyles(Theme& theme) {
    theme.code = codeTextStyle();
    theme.emphasis = FontStyle{FontProperties::Style::italic};
    theme.strong = FontWeight{Weight::semibold};
    theme.strikethrough = StrikethroughStyle{LineStyle::single};
}

BlockStyle headingStyle(double ems) {
    return [ems](BlockConfiguration block) {
        return block.label.markdownTextStyle(FontWeight{Weight::semibold})
            .markdownTextStyle(FontSize{RelativeSize::em(ems)})
            .markdownMargin(RelativeSize::rem(1.5), RelativeSize::rem(1));
    };
}

BlockView paragraphStyle(BlockConfiguration block) {
    return block.label.relativeLineSpacing(RelativeSize::em(0.15))
        .markdownMargin(RelativeSize::zero, RelativeSize::em(1));
}

BlockView blockquoteStyle(BlockConfiguration block) {
    return block.label.markdownTextStyle(FontStyle{FontProperties::Style::italic})
        .relativePadding(Edges::leading, RelativeSize::em(2))
        .relativePadding(Edges::trailing, RelativeSize::em(1));
}

BlockView codeBlockStyle(BlockConfiguration block) {
    return block.label.markdownTextStyle(codeTextStyle())
        .relativeLineSpacing(RelativeSize::em(0.15))
        .relativePadding(Edges::leading, RelativeSize::rem(1))
        .markdownMargin(RelativeSize::zero, RelativeSize::em(1));
}

BlockView tableStyle(BlockConfiguration block) {
    return block.label.markdownMargin(RelativeSize::zero, RelativeSize::em(1));
}

BlockView tableCellStyle(TableCellConfiguration cell) {
    if (cell.row == 0)
        cell.label.markdownTextStyle(FontWeight{Weight::semibold});
    return cell.label.relativeLineSpacing(RelativeSize::em(0.15))
        .relativePadding(Edges::horizontal, RelativeSize::em(0.72))
        .relativePadding(Edges::vertical, RelativeSize::em(0.35));
}

BlockView thematicBreakStyle(BlockConfiguration block) {
    return block.label.markdownMargin(RelativeSize::em(2), RelativeSize::em(2));
}

Theme makeBasic() {
    Theme theme;
    setInlineStyles(theme);
    theme.headings = {headingStyle(2), headingStyle(1.5),  headingStyle(1.17),
                      headingStyle(1), headingStyle(0.83), headingStyle(0.67)};
    theme.paragraph = paragraphStyle;
    theme.blockquote = blockquoteStyle;
    theme.codeBlock = codeBlockStyle;
    theme.taskListMarker = markers::checkmarkSquare;
    theme.bulletedListMarker = markers::discCircleSquare;
    theme.numberedListMarker = markers::decimal;
    theme.table = tableStyle;
    theme.tableCell = tableCellStyle;
    theme.thematicBreak = thematicBreakStyle;
    return theme;
}

} // namespace

const Theme& Theme::basic() {
    static const Theme theme = makeBasic();
    return theme;
}

} // namespace quillmoth::markdown
