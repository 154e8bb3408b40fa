#include "MarkdownUI/Layout/PlainTextPieces.h"

#include "MarkdownUI/Layout/TextDirection.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmoth::markdown {

namespace {

/// A paragraph longer than this is laid out in parts of about that length.
constexpr std::size_t kPartLength = 4 * 1024;
/// A text up to this length is laid out at once, a longer one as it comes in sight.
constexpr std::size_t kShortText = 32 * 1024;
/// So many lines that will not change any more become one piece.
constexpr std::size_t kLinesJoined = 32;

/// The length of `text` without a character at its end that is not complete yet.
std::size_t completeLength(std::string_view text) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
        const auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if ((byte & 0xC0) == 0x80)
            continue;
        std::size_t needed = 1;
        if (byte >= 0xC0)
            needed = byte >= 0xF0 ? 4 : (byte >= 0xE0 ? 3 : 2);
        return needed > back ? text.size() - back : text.size();
    }
    return text.size();
}

std::size_t endOfPart(std::string_view text, std::size_t begin, std::size_t end) {
    if (end - begin <= kPartLength + kPartLength / 2)
        return end;
    std::size_t cut = begin + kPartLength;
    const std::size_t blank = text.find_last_of(' ', cut);
    if (blank != std::string_view::npos && blank > begin + kPartLength / 2)
        return blank + 1;
    while (cut < end && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        ++cut;
    return cut;
}

} // namespace

void PlainTextPieces::setOptions(const PlainTextOptions& options) {
    if (options == options_)
        return;
    options_ = options;
    layOutAll();
}

void PlainTextPieces::reset(std::string text) {
    text_ = std::move(text);
    layOutAll();
}

void PlainTextPieces::layOutAll() {
    pieces_.clear();
    validTops_ = settledLines_ = 0;
    live_.clear();
    usedWidth_ = 0;
    openPiece(0, false);
    addPieces(0, completeLength(text_));
}

void PlainTextPieces::append(std::string_view added) {
    if (added.empty())
        return;
    text_ += added;
    const std::size_t end = completeLength(text_);
    if (end <= pieces_.back().end)
        return;
    splitOffLastLine();
    joinSettledLines();
    addPieces(pieces_.back().end, end);
}

/// Gives the text [begin, end) to the last piece and to new ones.
void PlainTextPieces::addPieces(std::size_t begin, std::size_t end) {
    const std::size_t firstTouched = pieces_.size() - 1;
    const bool isShort = end - begin <= kShortText;
    while (begin < end) {
        const std::size_t feed = text_.find('\n', begin);
        const bool endsParagraph = feed < end;
        const std::size_t paragraphEnd = endsParagraph ? feed + 1 : end;
        begin = endOfPart(text_, pieces_.back().begin, paragraphEnd);
        TextPiece& piece = pieces_.back();
        piece.end = begin;
        piece.endsParagraph = endsParagraph && begin == paragraphEnd;
        piece.isExact = false;
        piece.shaped.reset();
        estimate(piece);
        if (piece.endsParagraph || begin < end) {
            openPiece(begin, !piece.endsParagraph);
            settledLines_ = 0;
        }
    }
    validTops_ = std::min(validTops_, firstTouched);
    for (std::size_t index = firstTouched; index < pieces_.size(); ++index) {
        if (isShort || index + 1 == pieces_.size())
            shape(index);
    }
}

void PlainTextPieces::openPiece(std::size_t begin, bool sameParagraph) {
    TextPiece piece;
    piece.begin = piece.end = begin;
    if (sameParagraph) {
        piece.direction = pieces_.back().direction;
        piece.isDirectionKnown = pieces_.back().isDirectionKnown;
    }
    pieces_.push_back(std::move(piece));
}

/// What is appended can only change the last line: the lines before it become a piece of their own.
void PlainTextPieces::splitOffLastLine() {
    TextPiece& last = pieces_.back();
    if (last.lineCount < 2)
        return;
    const std::vector<TextLine>& lines = last.shaped->lines();
    const std::size_t settled = last.lineCount - 1;
    const std::size_t end = std::exchange(last.end, last.begin + lines[settled].begin);
    last.lineCount = settled;
    setHeight(pieces_.size() - 1,
              lines[settled - 1].top + lines[settled - 1].height() + options_.lineSpacing);
    settledLines_ = settled == 1 ? settledLines_ + 1 : 0;
    live_.push_back(pieces_.size() - 1);
    openPiece(last.end, true);
    pieces_.back().end = end;
}

void PlainTextPieces::joinSettledLines() {
    if (settledLines_ < kLinesJoined)
        return;
    const std::size_t behind = pieces_.size() - 1;
    const std::size_t first = behind - settledLines_;
    TextPiece& joined = pieces_[first];
    for (std::size_t index = first + 1; index < behind; ++index)
        joined.height += pieces_[index].height;
    joined.end = pieces_[behind - 1].end;
    joined.lineCount = settledLines_;
    joined.shaped.reset();
    joined.text.reset();
    pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(first) + 1,
                  pieces_.begin() + static_cast<std::ptrdiff_t>(behind));
    settledLines_ = 0;
    validTops_ = std::min(validTops_, first + 1);
    std::erase_if(live_, [first](std::size_t index) { return index >= first; });
}

void PlainTextPieces::estimate(TextPiece& piece) {
    const FontMetrics metrics = engine_.metricsOf(options_.font);
    const double length = static_cast<double>(piece.end - piece.begin) * metrics.averageAdvance;
    const double lines = std::max(1.0, std::ceil(length / std::max(options_.width, 1.0)));
    piece.height = lines * (metrics.ascent + metrics.descent + options_.lineSpacing);
}

void PlainTextPieces::shape(std::size_t index) {
    TextPiece& piece = pieces_[index];
    std::size_t length = piece.end - piece.begin;
    // Without the line feed, which would make one more line.
    if (length > 0 && text_[piece.end - 1] == '\n')
        --length;
    const std::string_view content = std::string_view(text_).substr(piece.begin, length);
    if (!piece.isDirectionKnown) {
        const auto direction = firstStrongDirection(content);
        piece.isDirectionKnown = direction.has_value();
        piece.direction = direction.value_or(TextDirection::leftToRight);
    }
    AttributeContainer attributes;
    attributes.font = options_.font;
    piece.shaped.reset();
    piece.text = std::make_unique<const AttributedText>(std::string(content), attributes);
    piece.shaped = engine_.shape(*piece.text, {options_.width, options_.lineSpacing, piece.direction,
                                               options_.alignment, options_.font});
    piece.lineCount = piece.shaped->lines().size();
    handLastLineOn(index);
    const TextLine& last = piece.shaped->lines()[piece.lineCount - 1];
    for (std::size_t line = 0; line < piece.lineCount; ++line)
        usedWidth_ = std::max(usedWidth_, piece.shaped->lines()[line].advance);
    setHeight(index, last.top + last.height() + options_.lineSpacing);
    piece.isExact = true;
    if (index + 1 < pieces_.size())
        live_.push_back(index);
}

/// The last line of a part of a paragraph is not full: the next part, if it has not been seen, starts with
/// it.
void PlainTextPieces::handLastLineOn(std::size_t index) {
    TextPiece& piece = pieces_[index];
    if (index + 1 == pieces_.size() || piece.endsParagraph || piece.isExact || piece.lineCount < 2 ||
        pieces_[index + 1].isExact)
        return;
    --piece.lineCount;
    piece.end = piece.begin + piece.shaped->lines()[piece.lineCount].begin;
    TextPiece& next = pieces_[index + 1];
    next.begin = piece.end;
    next.direction = piece.direction;
    next.isDirectionKnown = piece.isDirectionKnown;
}

void PlainTextPieces::setHeight(std::size_t index, double height) {
    if (pieces_[index].height == height)
        return;
    pieces_[index].height = height;
    validTops_ = std::min(validTops_, index + 1);
}

const TextPiece& PlainTextPieces::piece(std::size_t index) {
    if (!pieces_[index].shaped)
        shape(index);
    return pieces_[index];
}

double PlainTextPieces::top(std::size_t index) const {
    tops_.resize(std::max(tops_.size(), pieces_.size()));
    for (; validTops_ <= index; ++validTops_)
        tops_[validTops_] = validTops_ == 0 ? 0 : tops_[validTops_ - 1] + pieces_[validTops_ - 1].height;
    return tops_[index];
}

double PlainTextPieces::totalHeight() const {
    return top(pieces_.size() - 1) + pieces_.back().height - options_.lineSpacing;
}

bool PlainTextPieces::isExact() const {
    return std::ranges::all_of(pieces_, &TextPiece::isExact);
}

std::size_t PlainTextPieces::pieceAt(double y) const {
    (void)top(pieces_.size() - 1);
    const auto end = tops_.begin() + static_cast<std::ptrdiff_t>(pieces_.size());
    const auto behind = std::upper_bound(tops_.begin() + 1, end, y);
    return static_cast<std::size_t>(behind - tops_.begin()) - 1;
}

std::size_t PlainTextPieces::pieceOfOffset(std::size_t offset) const {
    const auto behind = std::ranges::upper_bound(pieces_, offset, {}, &TextPiece::begin);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(behind - pieces_.begin(), 1)) - 1;
}

void PlainTextPieces::dropOutside(std::size_t begin, std::size_t end) {
    std::erase_if(live_, [&](std::size_t index) {
        if (index >= begin && index < end)
            return false;
        pieces_[index].shaped.reset();
        pieces_[index].text.reset();
        return true;
    });
}

} // namespace quillmoth::markdown
