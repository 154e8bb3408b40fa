#include "MarkdownUI/Qt/DisplayListPainter.h"

#include "Foundation/Qt/Symbols.h"
#include "Foundation/Qt/Transition.h"
#include "MarkdownUI/Qt/QtShapedText.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QString>

#include <algorithm>
#include <cmath>
#include <variant>

namespace quillmoth::markdown {

namespace {

constexpr double kButtonRadius = 6;
constexpr double kLeastThumb = 28;
constexpr double kBarHeight = 4;
constexpr double kHoveredBarHeight = 6;
constexpr double kBarMargin = 3;
constexpr double kHoveredBarMargin = 2;
constexpr double kRingWidth = 2;
constexpr double kRingGap = 1;
constexpr double kRingRadius = 4;
constexpr double kBarInset = 8; // from the side bar and from the rounded corner

QRectF qt(const Rect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

/// `rect` with its edges on whole device pixels, no side thinner than one of them.
QRectF snapped(const QPainter& painter, const QRectF& rect) {
    const double scale = painter.device()->devicePixelRatioF();
    const QPointF origin = painter.transform().map(QPointF(0, 0));
    const auto snap = [scale](double value, double shift) {
        return std::round((value + shift) * scale) / scale - shift;
    };
    const double left = snap(rect.left(), origin.x());
    const double top = snap(rect.top(), origin.y());
    const double width = std::max(std::round(rect.width() * scale), 1.0) / scale;
    const double height = std::max(std::round(rect.height() * scale), 1.0) / scale;
    const bool isHairline = rect.width() <= 1.5 || rect.height() <= 1.5;
    if (isHairline)
        return {left, top, width, height};
    return {QPointF(left, top), QPointF(snap(rect.right(), origin.x()), snap(rect.bottom(), origin.y()))};
}

QPainterPath roundedOnTheRight(const QRectF& rect, double radius) {
    QPainterPath path;
    path.moveTo(rect.topLeft());
    path.lineTo(rect.right() - radius, rect.top());
    path.arcTo(rect.right() - 2 * radius, rect.top(), 2 * radius, 2 * radius, 90, -90);
    path.lineTo(rect.right(), rect.bottom() - radius);
    path.arcTo(rect.right() - 2 * radius, rect.bottom() - 2 * radius, 2 * radius, 2 * radius, 0, -90);
    path.lineTo(rect.bottomLeft());
    path.closeSubpath();
    return path;
}

bool standsIn(const Rect& rect, const Rect& region) {
    const double middle = rect.y + rect.height / 2;
    return middle >= region.y && middle < region.bottom();
}

bool isScrolled(const Rect& rect, const DisplayList& list) {
    return std::any_of(list.begin(), list.end(), [&rect](const DisplayItem& item) {
        const auto* region = std::get_if<ScrollRegionItem>(&item);
        return region != nullptr && standsIn(rect, region->frame);
    });
}

template<class Look>
Look lookOf(const std::map<std::size_t, Look>& looks, std::size_t name) {
    const auto known = looks.find(name);
    return known != looks.end() ? known->second : Look{};
}

/// The selected bytes of what `item` shows.
std::optional<QtShapedText::TextSelection> selectedPart(const TextLineItem& item, const PaintState& state) {
    if (!state.selection || item.textBlock == kNoTextBlock || item.textBlock < state.selection->begin.block ||
        item.textBlock > state.selection->end.block) {
        return std::nullopt;
    }
    const TextRange& range = *state.selection;
    const auto inItem = [&item](std::size_t offset) { return offset - std::min(offset, item.textOffset); };
    QtShapedText::TextSelection part;
    part.begin = range.begin.block == item.textBlock ? inItem(range.begin.offset) : 0;
    part.end = range.end.block == item.textBlock ? inItem(range.end.offset) : item.text->text().size();
    return part.begin < part.end ? std::optional(part) : std::nullopt;
}

} // namespace

std::optional<Rect> scrollThumbOf(const ScrollRegionItem& region, double hover) {
    const double track = region.frame.width - 2 * kBarInset;
    const double range = region.contentWidth - region.frame.width;
    if (range < 0.5 || track <= 0)
        return std::nullopt;
    const double share = region.frame.width / region.contentWidth;
    const double width = std::clamp(track * share, std::min(kLeastThumb, track), track);
    const double height = kBarHeight + (kHoveredBarHeight - kBarHeight) * hover;
    const double margin = kBarMargin + (kHoveredBarMargin - kBarMargin) * hover;
    const double left = region.frame.x + kBarInset + (track - width) * (region.offset / range);
    return Rect{left, region.frame.bottom() - margin - height, width, height};
}

DisplayListPainter::DisplayListPainter(const MarkdownPalette& palette, FontCache& fonts,
                                       DefaultImageLoader& images)
    : palette_(palette), fonts_(fonts), images_(images) {}

void DisplayListPainter::paint(QPainter& painter, const DisplayList& list, const PaintState& state) {
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paintRectangles(painter, list);
    for (const Rect& rect : state.selectionRectangles) {
        if (!isScrolled(rect, list))
            painter.fillRect(qt(rect), palette_.selection);
    }
    paintRange(painter, list, 0, list.size(), state, false);
    for (const Rect& rect : state.selectedImages)
        painter.fillRect(qt(rect), palette_.selection);
    for (const Rect& rect : state.focusRings)
        paintFocusRing(painter, rect);
    painter.restore();
}

/// All but overlays, below everything else; those of a scroll region clipped to it.
void DisplayListPainter::paintRectangles(QPainter& painter, const DisplayList& list) {
    std::size_t regionEnd = 0;
    for (std::size_t index = 0; index < list.size(); ++index) {
        if (regionEnd != 0 && index == regionEnd) {
            painter.restore();
            regionEnd = 0;
        }
        if (const auto* rectangle = std::get_if<RectangleItem>(&list[index])) {
            if (!rectangle->isOverlay)
                paintRectangle(painter, *rectangle);
        } else if (const auto* region = std::get_if<ScrollRegionItem>(&list[index])) {
            painter.save();
            painter.setClipRect(qt(region->frame), Qt::IntersectClip);
            regionEnd = index + region->itemCount + 1;
        }
    }
    if (regionEnd != 0)
        painter.restore();
}

void DisplayListPainter::paintRange(QPainter& painter, const DisplayList& list, std::size_t begin,
                                    std::size_t end, const PaintState& state, bool isCode) {
    for (std::size_t index = begin; index < end; ++index) {
        const DisplayItem& item = list[index];
        if (const auto* text = std::get_if<TextLineItem>(&item)) {
            paintText(painter, *text, state, isCode);
        } else if (const auto* rectangle = std::get_if<RectangleItem>(&item)) {
            if (rectangle->isOverlay)
                paintRectangle(painter, *rectangle);
        } else if (const auto* symbol = std::get_if<SymbolItem>(&item)) {
            drawSymbol(painter, QString::fromStdString(symbol->name), qt(symbol->frame),
                       palette_.resolve(symbol->color));
        } else if (const auto* image = std::get_if<ImageItem>(&item)) {
            paintImage(painter, image->source, image->alt, qt(image->frame));
        } else if (const auto* button = std::get_if<ButtonItem>(&item)) {
            paintButton(painter, *button, lookOf(state.buttons, button->codeBlock));
        } else if (const auto* region = std::get_if<ScrollRegionItem>(&item)) {
            const std::size_t last = std::min(index + region->itemCount, list.size() - 1);
            painter.save();
            painter.setClipRect(qt(region->frame), Qt::IntersectClip);
            paintSelection(painter, state, qt(region->frame), region->isCode);
            paintRange(painter, list, index + 1, last + 1, state, region->isCode);
            painter.restore();
            paintScrollBar(painter, *region, lookOf(state.bars, region->group));
            index = last;
        }
    }
}

void DisplayListPainter::paintSelection(QPainter& painter, const PaintState& state, const QRectF& area,
                                        bool isCode) {
    for (const Rect& rect : state.selectionRectangles) {
        if (qt(rect).intersects(area))
            painter.fillRect(qt(rect), isCode ? palette_.codeSelection : palette_.selection);
    }
}

void DisplayListPainter::paintText(QPainter& painter, const TextLineItem& item, const PaintState& state,
                                   bool isCode) {
    const auto* shaped = dynamic_cast<const QtShapedText*>(item.shaped);
    if (shaped == nullptr)
        return;
    const QColor body = state.textColor.isValid() ? state.textColor : palette_.text;
    painter.setPen(isCode ? palette_.codeText : body);
    const QPointF origin(item.origin.x, item.origin.y);
    auto selected = isCode ? selectedPart(item, state) : std::nullopt;
    if (selected) {
        selected->color = palette_.codeText;
        shaped->drawLine(painter, item.line, origin, *selected);
    } else {
        shaped->drawLine(painter, item.line, origin);
    }
    paintAttachments(painter, item, state);
    const TextLine& line = shaped->lines()[item.line];
    for (const Rect& rect : state.underlines) {
        if (standsIn(rect, item.frame)) {
            const double y = item.origin.y + line.top + line.ascent + std::max(line.descent * 0.4, 1.0);
            painter.fillRect(snapped(painter, {rect.x, y, rect.width, 1}), palette_.link);
        }
    }
}

/// The images that stand in a line of text, on its baseline.
void DisplayListPainter::paintAttachments(QPainter& painter, const TextLineItem& item,
                                          const PaintState& state) {
    const TextLine& line = item.shaped->lines()[item.line];
    const auto& runs = item.text->runs();
    const auto first =
        std::partition_point(runs.begin(), runs.end(),
                             [&line](const AttributedText::Run& run) { return run.end() <= line.begin; });
    for (auto run = first; run != runs.end() && run->begin < line.end; ++run) {
        const auto& attachment = run->attributes->attachment;
        if (!attachment)
            continue;
        const double left =
            std::min(item.shaped->caretX(item.line, run->begin), item.shaped->caretX(item.line, run->end()));
        const QRectF frame(item.origin.x + left,
                           item.origin.y + line.top + line.ascent - attachment->size.height,
                           attachment->size.width, attachment->size.height);
        paintImage(painter, attachment->source, attachment->alt, frame);
        const auto selected = selectedPart(item, state);
        if (selected && selected->begin <= run->begin && run->end() <= selected->end)
            painter.fillRect(frame, palette_.selection);
    }
}

void DisplayListPainter::paintImage(QPainter& painter, const std::string& source, const std::string& alt,
                                    const QRectF& frame) {
    if (const auto placeholder = images_.placeholder(source))
        paintPlaceholder(painter, *placeholder, QString::fromStdString(alt), snapped(painter, frame),
                         palette_, fonts_);
    else
        images_.draw(painter, source, frame);
}

void DisplayListPainter::paintFocusRing(QPainter& painter, const Rect& rect) {
    painter.setPen(QPen(palette_.accent, kRingWidth));
    painter.setBrush(Qt::NoBrush);
    const double out = kRingGap + kRingWidth / 2;
    painter.drawRoundedRect(snapped(painter, qt(rect)).adjusted(-out, -out, out, out), kRingRadius,
                            kRingRadius);
}

void DisplayListPainter::paintRectangle(QPainter& painter, const RectangleItem& item) {
    const QRectF rect = snapped(painter, qt(item.frame));
    const QColor color = palette_.resolve(item.color);
    if (item.trailingRadius > 0)
        painter.fillPath(roundedOnTheRight(rect, item.trailingRadius), color);
    else
        painter.fillRect(rect, color);
}

void DisplayListPainter::paintButton(QPainter& painter, const ButtonItem& item, const CopyButtonLook& look) {
    const QColor fill = look.isPressed ? palette_.buttonPressed
                                       : blended(palette_.button, palette_.buttonHovered, look.hover);
    const QColor label = item.isDone      ? palette_.done
                         : look.isPressed ? palette_.buttonLabelPressed
                                          : palette_.buttonLabel;
    painter.setPen(look.isFocused ? QPen(palette_.accent, 2) : QPen(Qt::NoPen));
    painter.setBrush(fill);
    painter.drawRoundedRect(qt(item.frame), kButtonRadius, kButtonRadius);
    drawSymbol(painter, QString::fromStdString(item.symbol), qt(item.symbolFrame), label);
    const QFont& font = fonts_.fontOf(item.font);
    painter.setFont(font);
    painter.setPen(label);
    const double ascent = std::round(QFontMetricsF(font).ascent());
    painter.drawText(QPointF(item.labelOrigin.x, item.labelOrigin.y + ascent),
                     QString::fromStdString(item.label));
}

void DisplayListPainter::paintScrollBar(QPainter& painter, const ScrollRegionItem& item,
                                        const ScrollBarLook& look) {
    const auto thumb = scrollThumbOf(item, look.isDragged ? 1 : look.hover);
    if (!thumb)
        return;
    const double radius = thumb->height / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.isDragged ? palette_.codeThumbDragged
                                    : blended(palette_.codeThumb, palette_.codeThumbHovered, look.hover));
    painter.drawRoundedRect(qt(*thumb), radius, radius);
}

} // namespace quillmoth::markdown
