#include "MarkdownUI/Style/Theme.h"

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

void setHeadings(Theme& theme) {
    constexpr std::array kSizes{2.0, 1.5, 1.17, 1.0, 0.83, 0.67};
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        BlockStyle& heading = theme.headings.at(i);
        heading.textStyle = TextStyleBuilder::Pair<FontWeight, FontSize>{{Weight::semibold},
                                                                         {RelativeSize::em(kSizes.at(i))}};
        heading.marginTop = RelativeSize::rem(1.5);
        heading.marginBottom = RelativeSize::rem(1);
    }
}

void setTextBlocks(Theme& theme) {
    theme.paragraph.lineSpacing = RelativeSize::em(0.15);
    theme.paragraph.marginTop = RelativeSize::zero;
    theme.paragraph.marginBottom = RelativeSize::em(1);

    theme.blockquote.textStyle = FontStyle{FontProperties::Style::italic};
    theme.blockquote.padding.leading = RelativeSize::em(2);
    theme.blockquote.padding.trailing = RelativeSize::em(1);

    theme.codeBlock.lineSpacing = RelativeSize::em(0.15);
    theme.codeBlock.padding.leading = RelativeSize::rem(1);
    theme.codeBlock.textStyle = codeTextStyle();
    theme.codeBlock.marginTop = RelativeSize::zero;
    theme.codeBlock.marginBottom = RelativeSize::em(1);

    theme.thematicBreak.marginTop = RelativeSize::em(2);
    theme.thematicBreak.marginBottom = RelativeSize::em(2);
}

BlockStyle basicTableCell(const TableCellConfiguration& configuration) {
    BlockStyle cell;
    if (configuration.row == 0)
        cell.textStyle = FontWeight{Weight::semibold};
    cell.lineSpacing = RelativeSize::em(0.15);
    cell.padding.leading = cell.padding.trailing = RelativeSize::em(0.72);
    cell.padding.top = cell.padding.bottom = RelativeSize::em(0.35);
    return cell;
}

Theme makeBasic() {
    Theme theme;
    setInlineStyles(theme);
    setHeadings(theme);
    setTextBlocks(theme);
    theme.taskListMarker = markers::checkmarkSquare;
    theme.bulletedListMarker = markers::discCircleSquare;
    theme.numberedListMarker = markers::decimal;
    theme.table.marginTop = RelativeSize::zero;
    theme.table.marginBottom = RelativeSize::em(1);
    theme.tableCell = basicTableCell;
    return theme;
}

} // namespace

const Theme& Theme::basic() {
    static const Theme theme = makeBasic();
    return theme;
}

} // namespace quillmoth::markdown
