#include "MarkdownUI/Qt/MarkdownItem.h"

#include "MarkdownUI/Qt/DocumentContent.h"
#include "MarkdownUI/Qt/PlainContent.h"

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
    : services_(services), host_(host), controls_(std::make_unique<CodeControls>(host)) {
    options_.colorScheme = services.palette.isDark ? ColorScheme::dark : ColorScheme::light;
    auto plain = std::make_unique<PlainContent>(services_.engine, std::string());
    plain_ = plain.get();
    content_ = std::move(plain);
    imageSubscription_ = services_.images.onChange([this] { imagesChanged(); });
}

MarkdownItem::~MarkdownItem() {
    controls_.reset();
}

void MarkdownItem::setMarkdown(std::string_view markdown) {
    if (document_ != nullptr) {
        document_->setMarkdown(markdown);
        controls_->forget();
        selection_ = {};
        hasCaret_ = false;
        return contentChanged();
    }
    auto document = std::make_unique<DocumentContent>(services_.engine, services_.images,
                                                      services_.highlighter, markdown);
    DocumentContent* const made = document.get();
    replaceContent(std::move(document));
    document_ = made;
}

void MarkdownItem::setPlainText(std::string text) {
    auto plain = std::make_unique<PlainContent>(services_.engine, std::move(text));
    PlainContent* const made = plain.get();
    replaceContent(std::move(plain));
    plain_ = made;
}

void MarkdownItem::appendPlainText(std::string_view piece) {
    if (plain_ == nullptr) {
        setPlainText({});
    }
    const double before = plain_->totalHeight();
    plain_->append(piece);
    if (plain_->totalHeight() != before) {
        host_.itemResized();
    }
    host_.itemChanged({});
}

void MarkdownItem::replaceContent(std::unique_ptr<ItemContent> content) {
    controls_ = std::make_unique<CodeControls>(host_);
    document_ = nullptr;
    plain_ = nullptr;
    content_ = std::move(content);
    content_->setOptions(options_);
    selection_ = {};
    hasCaret_ = false;
    contentChanged();
}

void MarkdownItem::contentChanged() {
    parts_.reset();
    ++version_;
    hoveredLink_.reset();
    setFocusedPart(std::nullopt);
    host_.itemResized();
    host_.itemChanged({});
}

void MarkdownItem::applyOptions() {
    content_->setOptions(options_);
    host_.itemResized();
    host_.itemChanged({});
}

void MarkdownItem::setWidth(double width) {
    if (std::exchange(options_.width, width) != width) {
        applyOptions();
    }
}

void MarkdownItem::setFontSize(double size) {
    if (std::exchange(options_.fontSize, size) != size) {
        applyOptions();
    }
}

void MarkdownItem::setAlignment(TextAlignment alignment) {
    if (std::exchange(options_.alignment, alignment) != alignment) {
        applyOptions();
    }
}

void MarkdownItem::setTextColor(const QColor& color) {
    textColor_ = color;
    host_.itemChanged({});
}

double MarkdownItem::height() const {
    return content_->totalHeight();
}

bool MarkdownItem::isHeightExact() const {
    return content_->isHeightExact();
}

double MarkdownItem::usedWidth() const {
    return content_->usedWidth();
}

double MarkdownItem::firstLineCenter() {
    return content_->firstLineCenter();
}

double MarkdownItem::ensureLaidOut(double top, double bottom) {
    return content_->ensureLaidOut(top, bottom);
}

DisplayList MarkdownItem::displayList(const QRectF& area) {
    return content_->displayList(rectOf(area));
}

void MarkdownItem::paint(QPainter& painter, const QRectF& exposed, const QPointF& origin) {
    const Rect area = rectOf(exposed);
    const DisplayList list = content_->displayList(area);
    const PaintState state = paintState(area);
    painter.save();
    painter.translate(origin);
    services_.painter.paint(painter, list, state);
    painter.restore();
}

PaintState MarkdownItem::paintState(const Rect& area) {
    PaintState state;
    state.textColor = textColor_;
    state.buttons = controls_->buttonLooks();
    state.bars = controls_->barLooks();
    if (hasSelection()) {
        state.selection = selection_.range();
        state.selectionRectangles = content_->selectionRectangles(selection_.range(), area);
    }
    DocumentLayout* const document = content_->document();
    if (document != nullptr && hasSelection()) {
        state.selectedImages = document->selectedImages(selection_.range(), area);
    }
    if (hoveredLink_) {
        state.underlines = content_->selectionRectangles(hoveredLink_->range, area);
    }
    if (document != nullptr && focusedPart_ && !controls_->focusedButton()) {
        state.focusRings = document->rectanglesOf(parts()[*focusedPart_]);
    }
    return state;
}

void MarkdownItem::mousePress(const QPointF& point, int clicks, Qt::KeyboardModifiers modifiers) {
    const Point at = pointOf(point);
    setFocusedPart(std::nullopt);
    if (document_ != nullptr && controls_->press(*document_->document(), at)) {
        return;
    }
    pressedLink_ = clicks == 1 ? linkAt(point) : QString();
    const TextPosition position = content_->positionAt(at);
    if (modifiers.testFlag(Qt::ShiftModifier) && hasCaret_) {
        selection_.extendTo(*content_, position);
    } else {
        selection_.begin(*content_, position, unitOf(clicks));
    }
    hasCaret_ = true;
    isSelecting_ = true;
    host_.itemChanged({});
}

void MarkdownItem::mouseMove(const QPointF& point, bool isPressed) {
    const Point at = pointOf(point);
    if (!isPressed) {
        const bool isOnControl = document_ != nullptr && controls_->hover(*document_->document(), at);
        return isOnControl ? updateLink({-1, -1}) : updateLink(point);
    }
    if (document_ != nullptr && controls_->isPressed()) {
        return controls_->drag(*document_->document(), at);
    }
    if (isSelecting_) {
        const TextRange before = selection_.range();
        selection_.extendTo(*content_, content_->positionAt(at));
        if (selection_.range() != before) {
            host_.itemChanged({});
        }
    }
}

void MarkdownItem::mouseRelease(const QPointF& point) {
    if (document_ != nullptr && controls_->isPressed()) {
        return controls_->release(*document_->document(), pointOf(point));
    }
    isSelecting_ = false;
    const QString link = std::exchange(pressedLink_, {});
    if (!link.isEmpty() && !hasSelection() && link == linkAt(point)) {
        host_.openLink(link);
    }
}

void MarkdownItem::leave() {
    controls_->leave();
    if (hoveredLink_) {
        hoveredLink_.reset();
        host_.itemChanged({});
    }
}

QString MarkdownItem::linkAt(const QPointF& point) {
    const auto link = document_ != nullptr ? document_->document()->linkAt(pointOf(point)) : std::nullopt;
    return QString::fromStdString(link.value_or(std::string()));
}

/// The link whose text is at `point`.
const PartInfo* MarkdownItem::linkPartAt(Point point) {
    DocumentLayout* const document = document_ != nullptr ? document_->document() : nullptr;
    if (document == nullptr || !document->linkAt(point)) {
        return nullptr;
    }
    const TextPosition position = content_->positionAt(point);
    const auto found = std::find_if(parts().begin(), parts().end(), [&position](const PartInfo& part) {
        return part.kind == PartInfo::Kind::link && part.range.begin <= position &&
               position <= part.range.end;
    });
    return found != parts().end() ? &*found : nullptr;
}

const std::vector<PartInfo>& MarkdownItem::parts() const {
    if (!parts_) {
        const DocumentLayout* const document = content_->document();
        parts_ = document != nullptr ? document->parts() : std::vector<PartInfo>();
    }
    return *parts_;
}

void MarkdownItem::updateLink(const QPointF& point) {
    const PartInfo* link = linkPartAt(pointOf(point));
    const std::optional<PartInfo> hovered = link != nullptr ? std::optional(*link) : std::nullopt;
    if (hovered != hoveredLink_) {
        hoveredLink_ = hovered;
        host_.itemChanged({});
    }
}

Qt::CursorShape MarkdownItem::cursorAt(const QPointF& point) {
    const Point at = pointOf(point);
    if (document_ != nullptr) {
        if (controls_->hover(*document_->document(), at)) {
            return Qt::ArrowCursor;
        }
        if (document_->document()->linkAt(at)) {
            return Qt::PointingHandCursor;
        }
    }
    return content_->isTextAt(at) ? Qt::IBeamCursor : Qt::ArrowCursor;
}

bool MarkdownItem::isInteractiveAt(const QPointF& point) {
    const Point at = pointOf(point);
    if (document_ != nullptr &&
        (controls_->hover(*document_->document(), at) || document_->document()->linkAt(at))) {
        return true;
    }
    return content_->isTextAt(at);
}

} // namespace quillmoth::markdown
