#include "MarkdownUI/Qt/MarkdownItem.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

namespace {

Point pointOf(const QPointF& point) {
    return {point.x(), point.y()};
}

Rect rectOf(const QRectF& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

SelectionUnit unitOf(int clicks) {
    return clicks >= 3 ? SelectionUnit::block : clicks == 2 ? SelectionUnit::word : SelectionUnit::character;
}

} // namespace

MarkdownItem::MarkdownItem(MarkdownServices& services, MarkdownHost& host)
    : ItemText(services, host), controls_(std::make_unique<CodeControls>(host)) {
    imageSubscription_ = services.images.onChange([this] { imagesChanged(); });
}

void MarkdownItem::contentChanged() {
    selection_ = {};
    hasCaret_ = false;
    isSelecting_ = false;
    pressedLink_.clear();
    pressedImage_.clear();
    parts_.reset();
    ++version_;
    hoveredLink_.reset();
    controls_->forget();
    setFocusedPart(std::nullopt);
    ItemText::contentChanged();
}

/// With the controls goes what they have yet to do to it.
void MarkdownItem::documentGoes() {
    controls_ = std::make_unique<CodeControls>(host());
}

void MarkdownItem::setTextColor(const QColor& color) {
    textColor_ = color;
    host().itemChanged({});
}

void MarkdownItem::paint(QPainter& painter, const QRectF& exposed, const QPointF& origin) {
    const Rect area = rectOf(exposed);
    const DisplayList list = content().displayList(area);
    const PaintState state = paintState(area);
    painter.save();
    painter.translate(origin);
    services().painter.paint(painter, list, state);
    painter.restore();
}

PaintState MarkdownItem::paintState(const Rect& area) {
    PaintState state;
    state.textColor = textColor_;
    state.buttons = controls_->buttonLooks();
    state.bars = controls_->barLooks();
    if (hasSelection()) {
        state.selection = selection_.range();
        state.selectionRectangles = content().selectionRectangles(selection_.range(), area);
    }
    DocumentLayout* const document = shownDocument();
    if (document != nullptr && hasSelection())
        state.selectedImages = document->selectedImages(selection_.range(), area);
    if (hoveredLink_)
        state.underlines = content().selectionRectangles(hoveredLink_->range, area);
    if (document != nullptr && focusedPart_ && !controls_->focusedButton())
        state.focusRings = document->rectanglesOf(parts()[*focusedPart_]);
    return state;
}

void MarkdownItem::mousePress(const QPointF& point, int clicks, Qt::KeyboardModifiers modifiers) {
    const Point at = pointOf(point);
    DocumentLayout* const document = shownDocument();
    setFocusedPart(std::nullopt);
    if (document != nullptr && controls_->press(*document, at))
        return;
    pressedLink_ = clicks == 1 ? linkAt(point) : QString();
    pressedImage_ = clicks == 1 ? heldImageAt(point) : std::string();
    const TextPosition position = content().positionAt(at);
    if (modifiers.testFlag(Qt::ShiftModifier) && hasCaret_)
        selection_.extendTo(content(), position);
    else
        selection_.begin(content(), position, unitOf(clicks));
    hasCaret_ = true;
    isSelecting_ = true;
    host().itemChanged({});
}

void MarkdownItem::mouseMove(const QPointF& point, bool isPressed) {
    const Point at = pointOf(point);
    DocumentLayout* const document = shownDocument();
    if (!isPressed) {
        const bool isOnControl = document != nullptr && controls_->hover(*document, at);
        return isOnControl ? updateLink({-1, -1}) : updateLink(point);
    }
    if (document != nullptr && controls_->isPressed())
        return controls_->drag(*document, at);
    if (isSelecting_) {
        const TextRange before = selection_.range();
        selection_.extendTo(content(), content().positionAt(at));
        if (selection_.range() != before)
            host().itemChanged({});
    }
}

void MarkdownItem::mouseRelease(const QPointF& point) {
    DocumentLayout* const document = shownDocument();
    if (document != nullptr && controls_->isPressed())
        return controls_->release(*document, pointOf(point));
    isSelecting_ = false;
    const std::string image = std::exchange(pressedImage_, {});
    if (!image.empty() && !hasSelection() && image == heldImageAt(point))
        return services().images.load(image);
    const QString link = std::exchange(pressedLink_, {});
    if (!link.isEmpty() && !hasSelection() && link == linkAt(point))
        host().openLink(link);
    showParsed();
}

void MarkdownItem::leave() {
    controls_->leave();
    if (hoveredLink_) {
        hoveredLink_.reset();
        host().itemChanged({});
    }
}

Qt::CursorShape MarkdownItem::cursorAt(const QPointF& point) {
    const Point at = pointOf(point);
    if (DocumentLayout* const document = shownDocument()) {
        if (CodeControls::isAt(*document, at))
            return Qt::ArrowCursor;
        if (document->linkAt(at) || !heldImageAt(point).empty())
            return Qt::PointingHandCursor;
    }
    return content().isTextAt(at) ? Qt::IBeamCursor : Qt::ArrowCursor;
}

bool MarkdownItem::isInteractiveAt(const QPointF& point) {
    const Point at = pointOf(point);
    DocumentLayout* const document = shownDocument();
    return (document != nullptr && (CodeControls::isAt(*document, at) || document->linkAt(at))) ||
           content().isTextAt(at) || !heldImageAt(point).empty();
}

QString MarkdownItem::linkAt(const QPointF& point) {
    DocumentLayout* const document = shownDocument();
    const auto link = document != nullptr ? document->linkAt(pointOf(point)) : std::nullopt;
    return QString::fromStdString(link.value_or(std::string()));
}

QString MarkdownItem::targetAt(const QPointF& point) {
    const QString link = linkAt(point);
    return link.isEmpty() ? QString::fromStdString(heldImageAt(point)) : link;
}

std::string MarkdownItem::heldImageAt(const QPointF& point) {
    DocumentLayout* const document = shownDocument();
    const std::string url = document != nullptr ? document->imageAt(pointOf(point)) : std::string();
    const auto placeholder = url.empty() ? std::nullopt : services().images.placeholder(url);
    return placeholder && placeholder->isPressable ? url : std::string();
}

/// The link whose text is at `point`.
const PartInfo* MarkdownItem::linkPartAt(Point point) {
    DocumentLayout* const document = shownDocument();
    if (document == nullptr || !document->linkAt(point))
        return nullptr;
    const TextPosition position = content().positionAt(point);
    const auto found = std::find_if(parts().begin(), parts().end(), [&position](const PartInfo& part) {
        return part.kind == PartInfo::Kind::link && part.range.begin <= position &&
               position <= part.range.end;
    });
    return found != parts().end() ? &*found : nullptr;
}

const std::vector<PartInfo>& MarkdownItem::parts() const {
    if (!parts_) {
        const DocumentLayout* const document = shownDocument();
        parts_ = document != nullptr ? document->parts() : std::vector<PartInfo>();
    }
    return *parts_;
}

void MarkdownItem::updateLink(const QPointF& point) {
    const PartInfo* link = linkPartAt(pointOf(point));
    const std::optional<PartInfo> hovered = link != nullptr ? std::optional(*link) : std::nullopt;
    if (hovered != hoveredLink_) {
        hoveredLink_ = hovered;
        host().itemChanged({});
    }
}

} // namespace quillmoth::markdown
