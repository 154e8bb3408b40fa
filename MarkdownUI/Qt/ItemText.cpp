#include "MarkdownUI/Qt/ItemText.h"

#include "MarkdownUI/Qt/DocumentContent.h"
#include "MarkdownUI/Qt/PlainContent.h"

#include <utility>

namespace quillmoth::markdown {

ItemText::ItemText(MarkdownServices& services, MarkdownHost& host) : services_(services), host_(host) {
    options_.colorScheme = services.palette.isDark ? ColorScheme::dark : ColorScheme::light;
    content_ = &contentOf(form_);
}

ItemText::~ItemText() = default;

void ItemText::contentChanged() {
    host_.itemResized();
    host_.itemChanged({});
}

DocumentLayout* ItemText::keptDocument() {
    return document_ ? document_->document() : nullptr;
}

void ItemText::setText(std::string_view text) {
    text_ = text;
    if (form_ == TextForm::markdown) {
        document_->setMarkdown(text_);
        plain_.reset();
    } else {
        forgetDocument();
        plain_.reset();
        content_ = &contentOf(form_);
    }
    contentChanged();
}

void ItemText::append(std::string_view piece) {
    if (form_ == TextForm::markdown)
        return setText(text_ + std::string(piece));
    forgetDocument();
    text_ += piece;
    const double before = plain_->totalHeight();
    plain_->append(piece);
    if (plain_->totalHeight() != before)
        host_.itemResized();
    host_.itemChanged({});
}

void ItemText::setForm(TextForm form) {
    if (form == form_)
        return;
    form_ = form;
    content_ = &contentOf(form);
    contentChanged();
}

void ItemText::forgetDocument() {
    if (document_) {
        documentGoes();
        document_.reset();
    }
}

ItemContent& ItemText::contentOf(TextForm form) {
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

void ItemText::applyOptions() {
    content_->setOptions(options_);
    host_.itemResized();
    host_.itemChanged({});
}

void ItemText::setWidth(double width) {
    if (std::exchange(options_.width, width) != width)
        applyOptions();
}

void ItemText::setFontSize(double size) {
    if (std::exchange(options_.fontSize, size) != size)
        applyOptions();
}

void ItemText::setAlignment(TextAlignment alignment) {
    if (std::exchange(options_.alignment, alignment) != alignment)
        applyOptions();
}

void ItemText::setLineHeight(double height) {
    if (std::exchange(options_.lineHeight, height) != height)
        applyOptions();
}

double ItemText::height() const {
    return content_->totalHeight();
}

bool ItemText::isHeightExact() const {
    return content_->isHeightExact();
}

double ItemText::usedWidth() const {
    return content_->usedWidth();
}

double ItemText::firstLineCenter() {
    return content_->firstLineCenter();
}

double ItemText::ensureLaidOut(double top, double bottom) {
    return content_->ensureLaidOut(top, bottom);
}

DisplayList ItemText::displayList(const QRectF& area) {
    return content_->displayList({area.x(), area.y(), area.width(), area.height()});
}

} // namespace quillmoth::markdown
