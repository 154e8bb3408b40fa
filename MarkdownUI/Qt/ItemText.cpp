#include "MarkdownUI/Qt/ItemText.h"

#include "Foundation/Log.h"
#include "MarkdownUI/Document/ParsePlan.h"
#include "MarkdownUI/Qt/DocumentContent.h"
#include "MarkdownUI/Qt/PlainContent.h"

#include <atomic>
#include <utility>

namespace quillmoth::markdown {

/// What the main thread and the one that parses share.
struct PendingParse {
    /// The main thread's to take back.
    std::atomic<bool> isWanted = true;
    /// Of the one that parses, until that is done.
    MarkdownContent content;
};

ItemText::ItemText(MarkdownServices& services, MarkdownHost& host) : services_(services), host_(host) {
    options_.colorScheme = services.palette.isDark ? ColorScheme::dark : ColorScheme::light;
    content_ = &contentOf(form_);
}

ItemText::~ItemText() {
    forgetParse();
}

void ItemText::contentChanged() {
    host_.itemResized();
    host_.itemChanged({});
}

DocumentLayout* ItemText::keptDocument() {
    return document_ ? document_->document() : nullptr;
}

void ItemText::setText(std::string_view text) {
    text_ = text;
    forgetParse();
    // The document keeps the states of its code blocks.
    if (form_ == TextForm::markdown && document_ && parsePlanOf(text_) == ParsePlan::atOnce)
        document_->setContent(MarkdownContent(text_));
    else
        forgetDocument();
    plain_.reset();
    content_ = &contentOf(form_);
    contentChanged();
}

void ItemText::append(std::string_view piece) {
    if (form_ == TextForm::markdown)
        return setText(text_ + std::string(piece));
    forgetParse();
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

void ItemText::forgetParse() {
    if (const auto parse = std::exchange(parse_, nullptr))
        parse->isWanted = false;
}

ItemContent& ItemText::contentOf(TextForm form) {
    const bool isDocument = form == TextForm::markdown && hasDocument();
    if (!isDocument && !plain_)
        plain_ = std::make_unique<PlainContent>(services_.engine, text_);
    ItemContent& content = isDocument ? static_cast<ItemContent&>(*document_) : *plain_;
    content.setOptions(options_);
    return content;
}

/// False where the text is shown plain for now, or for good.
bool ItemText::hasDocument() {
    if (document_ || parse_)
        return document_ != nullptr;
    const ParsePlan plan = parsePlanOf(text_);
    if (plan == ParsePlan::never) {
        logLine("an answer stays plain: it would take too long to set it as Markdown");
        return false;
    }
    if (plan == ParsePlan::later && services_.background) {
        parseLater();
        return false;
    }
    makeDocument(MarkdownContent(text_));
    return true;
}

void ItemText::makeDocument(MarkdownContent content) {
    document_ = std::make_unique<DocumentContent>(services_.engine, services_.images, services_.highlighter,
                                                  std::move(content));
}

void ItemText::parseLater() {
    parse_ = std::make_shared<PendingParse>();
    services_.background(
        [parse = parse_, text = text_] {
            if (parse->isWanted)
                parse->content = MarkdownContent(text);
        },
        [this, parse = parse_] {
            // The text may be another one by now, and the item gone.
            if (!parse->isWanted)
                return;
            parse_.reset();
            makeDocument(std::move(parse->content));
            showParsed();
        });
}

void ItemText::showParsed() {
    if (form_ != TextForm::markdown || !document_ || content_ == document_.get() || isHeld())
        return;
    content_ = &contentOf(form_);
    contentChanged();
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
