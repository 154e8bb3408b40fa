#include "MarkdownUI/Layout/PlainTextLayout.h"

#include "MarkdownUI/Layout/PlainTextPieces.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// Lines further from the viewport are forgotten.
constexpr double kKeptPlainPixels = 4000;

Rect frameOfLine(const TextLine& line, double top) {
    return {line.x, top + line.top, line.advance, line.height()};
}

} // namespace

class PlainTextLayout::State : public PlainTextPieces {
public:
    using PlainTextPieces::PlainTextPieces;

    double ensureLaidOut(double top, double bottom) {
        double moved = 0;
        std::size_t index = pieceAt(top);
        do {
            const double y = this->top(index);
            const double before = piecesHeight(index);
            const double change = piece(index).height - before;
            if (y < top + moved)
                moved += change;
        } while (++index < count() && this->top(index) < bottom + moved);
        dropOutside(pieceAt(top + moved - kKeptPlainPixels), pieceAt(bottom + moved + kKeptPlainPixels) + 1);
        return moved;
    }

    /// Calls visit(piece, top) for each piece that meets `area`.
    template<class Visit>
    void forEachPiece(const Rect& area, const Visit& visit) {
        (void)ensureLaidOut(area.y, area.bottom());
        for (std::size_t index = pieceAt(area.y); index < count() && top(index) < area.bottom(); ++index)
            visit(piece(index), top(index));
    }

private:
    [[nodiscard]] double piecesHeight(std::size_t index) const {
        return index + 1 < count() ? top(index + 1) - top(index) : 0;
    }
};

PlainTextLayout::PlainTextLayout(TextEngine& engine) : state_(std::make_unique<State>(engine)) {}

PlainTextLayout::~PlainTextLayout() = default;

void PlainTextLayout::setOptions(const PlainTextOptions& options) {
    state_->setOptions(options);
}

void PlainTextLayout::setText(std::string text) {
    state_->reset(std::move(text));
}

void PlainTextLayout::append(std::string_view piece) {
    state_->append(piece);
}

const std::string& PlainTextLayout::text() const {
    return state_->text();
}

double PlainTextLayout::ensureLaidOut(double top, double bottom) {
    return state_->ensureLaidOut(top, bottom);
}

double PlainTextLayout::totalHeight() const {
    return state_->totalHeight();
}

bool PlainTextLayout::isHeightExact() const {
    return state_->isExact();
}

double PlainTextLayout::usedWidth() const {
    return state_->usedWidth();
}

double PlainTextLayout::firstLineCenter() const {
    const TextLine& line = state_->piece(0).shaped->lines().front();
    return line.top + line.height() / 2;
}

DisplayList PlainTextLayout::displayList(const Rect& area) {
    DisplayList result;
    state_->forEachPiece(area, [&](const TextPiece& piece, double top) {
        for (std::size_t line = 0; line < piece.lineCount; ++line) {
            const Rect frame = frameOfLine(piece.shaped->lines()[line], top);
            if (frame.y >= area.bottom() || frame.bottom() <= area.y)
                continue;
            TextLineItem item{frame, {0, top}};
            item.shaped = piece.shaped.get();
            item.text = piece.text.get();
            item.line = line;
            item.textBlock = 0;
            item.textOffset = piece.begin;
            result.push_back(item);
        }
    });
    return result;
}

TextPosition PlainTextLayout::positionAt(Point point) {
    if (point.y >= totalHeight())
        return {0, state_->text().size()};
    (void)state_->ensureLaidOut(point.y, point.y + 1);
    const std::size_t index = state_->pieceAt(point.y);
    const TextPiece& piece = state_->piece(index);
    const double y = point.y - state_->top(index);
    const std::vector<TextLine>& lines = piece.shaped->lines();
    std::size_t line = 0;
    while (line + 1 < piece.lineCount && y >= lines[line + 1].top)
        ++line;
    return {0, piece.begin + piece.shaped->offsetAt(line, point.x)};
}

std::vector<Rect> PlainTextLayout::selectionRectangles(const TextRange& range, const Rect& area) {
    std::vector<Rect> result;
    state_->forEachPiece(area, [&](const TextPiece& piece, double top) {
        const std::size_t begin = std::max(range.begin.offset, piece.begin);
        const std::size_t end = std::min(range.end.offset, piece.begin + piece.text->text().size());
        if (begin >= std::min(end, piece.end))
            return;
        for (const Rect& rect :
             piece.shaped->rectanglesOf(begin - piece.begin, std::min(end, piece.end) - piece.begin)) {
            const Rect placed = rect.translated(0, top);
            if (placed.y < area.bottom() && area.y < placed.bottom())
                result.push_back(placed);
        }
    });
    return result;
}

Rect PlainTextLayout::caretRectangle(const TextPosition& position) {
    const std::size_t index = state_->pieceOfOffset(position.offset);
    const TextPiece& piece = state_->piece(index);
    const std::size_t offset = std::min(position.offset - piece.begin, piece.text->text().size());
    const std::vector<TextLine>& lines = piece.shaped->lines();
    std::size_t line = 0;
    while (line + 1 < piece.lineCount && lines[line + 1].begin <= offset)
        ++line;
    const Rect frame = frameOfLine(lines[line], state_->top(index));
    return {piece.shaped->caretX(line, offset), frame.y, 0, frame.height};
}

} // namespace quillmoth::markdown
