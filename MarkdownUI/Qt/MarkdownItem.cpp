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
    content_ = &contentOf(form_);
    imageSubscription_ = services_.images.onChange([this] { imagesChanged(); });
}

MarkdownItem::~MarkdownItem() {
    controls_.reset();
}

void MarkdownItem::setText(std::string_view text) {
    text_ = text;
    if (form_ == TextForm::markdown) {
        document_->setMarkdown(text_);
        controls_->forget();
        plain_.reset();
    } else {
        forgetDocument();
        plain_.reset();
        content_ = &contentOf(form_);
    }
    contentChanged();
}

void MarkdownItem::append(std::string_view piece) {
    if (form_ == TextForm::markdown) {
        return setText(text_ + std::string(piece));
    }
    forgetDocument();
    text_ += piece;
    const double before = plain_->totalHeight();
    plain_->append(piece);
    if (plain_->totalHeight() != before) {
        host_.itemResized();
    }
    host_.itemChanged({});
}

void MarkdownItem::setForm(TextForm form) {
    if (form == form_) {
        return;
    }
    form_ = form;
    content_ = &contentOf(form);
    controls_->forget();
    contentChanged();
}

/// With the controls goes what they have yet to do to it.
void MarkdownItem::forgetDocument() {
    if (document_) {
        controls_ = std::make_unique<CodeControls>(host_);
        document_.reset();
    }
}

ItemContent& MarkdownItem::contentOf(TextForm form) {
    if (form == TextForm::plain && !plain_) {
        plain_ = std::make_unique<PlainContent>(services_.engine, text_);
    } else if (form == TextForm::markdown && !document_) {
        document_ = std::make_unique<DocumentContent>(services_.engine, services_.images,
                                                      services_.highlighter, text_);
    }
    ItemContent& content = form == TextForm::plain ? static_cast<ItemContent&>(*plain_) : *document_;
    content.setOptions(options_);
    return content;
}

void MarkdownItem::contentChanged() {
    selection_ = {};
    hasCaret_ = false;
    isSelecting_ = false;
    pressedLink_.clear();
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

void MarkdownItem::setLineHeight(double height) {
    if (std::exchange(options_.lineHeight, height) != height) {
        applyOptions();
    }
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
    DocumentLayout* const document = content_->document();
    setFocusedPart(std::nullopt);
    if (document != nullptr && controls_->press(*document, at)) {
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
    DocumentLayout* const document = content_->document();
    if (!isPressed) {
        const bool isOnControl = document != nullptr && controls_->hover(*document, at);
        return isOnControl ? updateLink({-1, -1}) : updateLink(point);
    }
    if (document != nullptr && controls_->isPressed()) {
        return controls_->drag(*document, at);
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
    DocumentLayout* const document = content_->document();
    if (document != nullptr && controls_->isPressed()) {
        return controls_->release(*document, pointOf(point));
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
    DocumentLayout* const document = content_->document();
    const auto link = document != nullptr ? document->linkAt(pointOf(point)) : std::nullopt;
    return QString::fromStdString(link.value_or(std::string()));
}

/// The link whose text is at `point`.
const PartInfo* MarkdownItem::linkPartAt(Point point) {
    DocumentLayout* const document = content_->document();
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

} // namespace quillmoth::markdown
