#pragma once

#include "MarkdownUI/Qt/ItemContent.h"
#include "MarkdownUI/Qt/MarkdownHost.h"
#include "MarkdownUI/Qt/MarkdownServices.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quillmoth::markdown {

enum class TextForm : std::uint8_t { plain, markdown };

/// A text, as it stands or as a Markdown document, and its layout. Main thread.
class ItemText {
public:
    /// Both outlive the text.
    ItemText(MarkdownServices& services, MarkdownHost& host);
    virtual ~ItemText();
    ItemText(const ItemText&) = delete;
    ItemText& operator=(const ItemText&) = delete;

    // Content. A document that follows a document keeps the states of its code blocks.
    void setText(std::string_view text);
    /// In the plain form this costs the same however long the text is, as Markdown as much as setting it.
    void append(std::string_view piece);
    /// Shows the same text otherwise. What was parsed and laid out of either form is kept for its return.
    /// What is long to parse is shown plain until it is parsed, and as long as something is selected in it;
    /// what is too much to parse (ParsePlan::never) is shown plain, which the log tells.
    void setForm(TextForm form);

    [[nodiscard]] const std::string& text() const { return text_; }

    void setWidth(double width);
    void setFontSize(double size);
    void setAlignment(TextAlignment alignment);
    /// From one line of plain text to the next, in pixels; 0 for that of a paragraph.
    void setLineHeight(double height);

    // Geometry.
    /// Estimated in part until `isHeightExact`: what has not been seen yet has not been laid out.
    [[nodiscard]] double height() const;
    [[nodiscard]] bool isHeightExact() const;
    [[nodiscard]] double usedWidth() const;
    [[nodiscard]] double firstLineCenter();
    /// Lays out what is between two heights. Returns how far that has moved down: add it to the scroll
    /// position.
    double ensureLaidOut(double top, double bottom);
    [[nodiscard]] DisplayList displayList(const QRectF& area);

    [[nodiscard]] ItemContent& content() { return *content_; }

    [[nodiscard]] const ItemContent& content() const { return *content_; }

    [[nodiscard]] MarkdownHost& host() { return host_; }

protected:
    /// Another text is shown, or the text in another form.
    virtual void contentChanged();
    /// The document that was kept is about to go.
    virtual void documentGoes() = 0;
    /// True where the plain form may not give way to the parsed one now.
    [[nodiscard]] virtual bool isHeld() const = 0;

    /// The parsed form takes the plain one's place, where it has been waiting for that.
    void showParsed();

    [[nodiscard]] MarkdownServices& services() const { return services_; }

    /// Null where the text is shown plain.
    [[nodiscard]] DocumentLayout* shownDocument() const { return content_->document(); }

    /// The document of this text, shown or not; null where there has been none yet.
    [[nodiscard]] DocumentLayout* keptDocument();

    [[nodiscard]] const ItemOptions& options() const { return options_; }

private:
    [[nodiscard]] ItemContent& contentOf(TextForm form);
    [[nodiscard]] bool hasDocument();
    void makeDocument(MarkdownContent content);
    void parseLater();
    void forgetDocument();
    void forgetParse();
    void applyOptions();

    MarkdownServices& services_;
    MarkdownHost& host_;
    ItemOptions options_;
    std::string text_;
    TextForm form_ = TextForm::plain;
    std::unique_ptr<class PlainContent> plain_;       ///< of `text_`; null until it is shown so
    std::unique_ptr<class DocumentContent> document_; ///< likewise
    std::shared_ptr<struct PendingParse> parse_;      ///< of `text_`, on its way
    ItemContent* content_ = nullptr;                  ///< the one that is shown
};

} // namespace quillmoth::markdown
