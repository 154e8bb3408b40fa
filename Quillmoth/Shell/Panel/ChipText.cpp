#include "Quillmoth/Shell/Panel/ChipText.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"

#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace quillmoth {

namespace {

constexpr int kChipFontSize = 22;
constexpr int kLine = 36;
constexpr int kChipSide = 5;
constexpr int kChipEnds = 1;
constexpr double kChipRadius = 5;
constexpr double kChipSpacing = -0.012 * kChipFontSize;

QFont chipFont() {
    QFont font = textFont(kChipFontSize, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, kChipSpacing);
    return font;
}

/// Leaves the room of a chip's side behind the last character of the range.
QTextLayout::FormatRange sideRoom(int position, QFont font) {
    font.setLetterSpacing(QFont::AbsoluteSpacing, kChipSide);
    QTextLayout::FormatRange range{position, 1, {}};
    range.format.setFont(font);
    return range;
}

double baselineOf() {
    const QFontMetricsF metrics(chipFont());
    return qRound((kLine - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent());
}

} // namespace

ChipText::ChipText(QWidget* parent) : QWidget(parent) {
    setCursor(Qt::IBeamCursor);
    setFocusPolicy(Qt::NoFocus);
}

void ChipText::setPieces(const std::vector<ExtractedText>& pieces) {
    if (pieces == pieces_)
        return;
    pieces_ = pieces;
    setUp();
}

void ChipText::setFontSize(double pixelSize) {
    if (pixelSize == fontSize_)
        return;
    fontSize_ = pixelSize;
    setUp();
}

void ChipText::setUp() {
    const QFont plain = textFont(fontSize_);
    QString text;
    QList<QTextLayout::FormatRange> formats;
    blanks_.clear();
    for (const ExtractedText& piece : pieces_) {
        const int start = static_cast<int>(text.size());
        text += QString::fromStdString(piece.text).replace(QLatin1Char('\n'), QChar::LineSeparator);
        const int end = static_cast<int>(text.size());
        if (!piece.isBracketed || end == start)
            continue;
        blanks_.push_back({start, end});
        QTextLayout::FormatRange chip{start, end - start - 1, {}};
        chip.format.setFont(chipFont());
        chip.format.setForeground(kPanelTheme.white);
        if (start > 0 && text.at(start - 1) != QChar::LineSeparator)
            formats.append(sideRoom(start - 1, isInChip(start - 1) ? chipFont() : plain));
        formats.append(chip);
        auto last = sideRoom(end - 1, chipFont());
        last.format.setForeground(kPanelTheme.white);
        formats.append(last);
    }
    layout_.setText(text);
    layout_.setFont(plain);
    layout_.setFormats(formats);
    layout_.setCacheEnabled(true);
    laidOutWidth_ = -1;
    anchor_ = position_ = 0;
    setAccessibleName(text);
    update();
}

bool ChipText::isInChip(int position) const {
    return std::any_of(blanks_.begin(), blanks_.end(),
                       [&](const Range& blank) { return position >= blank.start && position < blank.end; });
}

void ChipText::layOut(int width) const {
    if (laidOutWidth_ == width)
        return;
    laidOutWidth_ = width;
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout_.setTextOption(option);
    const double baseline = baselineOf();
    double top = 0;
    layout_.beginLayout();
    for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        const int left = isInChip(line.textStart()) ? kChipSide : 0;
        line.setLineWidth(width - left - kChipSide);
        line.setPosition({static_cast<double>(left), top + baseline - line.ascent()});
        top += kLine;
    }
    layout_.endLayout();
}

int ChipText::heightForWidth(int width) const {
    layOut(width);
    return std::max(1, layout_.lineCount()) * kLine;
}

std::vector<QRectF> ChipText::chips() const {
    std::vector<QRectF> chips;
    const QFontMetricsF metrics(chipFont());
    const double baseline = baselineOf();
    for (int index = 0; index < layout_.lineCount(); ++index) {
        const QTextLine line = layout_.lineAt(index);
        const int lineEnd = line.textStart() + line.textLength();
        for (const Range& blank : blanks_) {
            const int start = std::max(blank.start, line.textStart());
            int end = std::min(blank.end, lineEnd);
            // A space at which a line is broken is not painted.
            while (end > start && end < blank.end && layout_.text().at(end - 1).isSpace())
                --end;
            if (start >= end)
                continue;
            const double from = line.cursorToX(start);
            const double to = line.cursorToX(end) + (end == blank.end ? 0 : kChipSide);
            const double top = index * kLine + baseline - metrics.ascent() - kChipEnds;
            chips.emplace_back(std::min(from, to) - kChipSide, top, std::abs(to - from) + kChipSide,
                               metrics.ascent() + metrics.descent() + 2 * kChipEnds);
        }
    }
    return chips;
}

void ChipText::paintEvent(QPaintEvent*) {
    layOut(width());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kPanelTheme.accent);
    for (const QRectF& chip : chips())
        painter.drawRoundedRect(chip, kChipRadius, kChipRadius);
    QList<QTextLayout::FormatRange> marked;
    if (anchor_ != position_) {
        QTextLayout::FormatRange range{std::min(anchor_, position_), std::abs(anchor_ - position_), {}};
        range.format.setBackground(kPanelTheme.selection);
        marked.append(range);
    }
    painter.setPen(kPanelTheme.text);
    layout_.draw(&painter, {0, 0}, marked);
}

QString ChipText::selectedText() const {
    return layout_.text()
        .mid(std::min(anchor_, position_), std::abs(anchor_ - position_))
        .replace(QChar::LineSeparator, QLatin1Char('\n'));
}

void ChipText::clearSelection() {
    anchor_ = position_ = 0;
    update();
}

int ChipText::positionAt(QPointF point) const {
    const int line = std::clamp(static_cast<int>(point.y() / kLine), 0, layout_.lineCount() - 1);
    return layout_.lineAt(line).xToCursor(point.x());
}

void ChipText::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || layout_.lineCount() == 0) {
        event->ignore();
        return;
    }
    anchor_ = position_ = positionAt(event->position());
    update();
}

void ChipText::contextMenuEvent(QContextMenuEvent* event) {
    openSelectionMenu(*this, event->globalPos(), selectedText(), [this] {
        anchor_ = 0;
        position_ = static_cast<int>(layout_.text().size());
        update();
    });
}

void ChipText::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton) || layout_.lineCount() == 0)
        return;
    position_ = positionAt(event->position());
    update();
}

} // namespace quillmoth
