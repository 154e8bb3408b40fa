#include "Quillmoth/Shell/Panel/ConversationView.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/Pictograph.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace quillmoth {

namespace {

constexpr double kFaceColumn = 1.375; // in font sizes, as in the rows of the lists
constexpr int kFaceGap = 10;
constexpr int kFaceFontSize = 16;

QString faceOf(bool assistant) {
    return assistant ? QStringLiteral("🤖") : QStringLiteral("😀");
}

} // namespace

ConversationView::ConversationView(std::shared_ptr<FloatingViewController> controller,
                                   MessageServices services, QWidget* parent)
    : QWidget(parent), controller_(std::move(controller)), services_(std::move(services)) {
    setAccessibleName(QStringLiteral("Conversation"));
}

ConversationView::~ConversationView() = default;

ConversationView::Role ConversationView::roleOf(const std::string& role) {
    if (role == "assistant")
        return Role::assistant;
    if (role == "user")
        return Role::user;
    return role == "system" ? Role::system : Role::other;
}

bool ConversationView::refresh() {
    const bool fontChanged = takeFontSize();
    const bool formChanged = takeForm();
    const bool changed = takeMessages() || fontChanged || formChanged;
    if (changed) {
        placedWidth_ = -1;
        update();
    }
    return changed;
}

bool ConversationView::takeFontSize() {
    if (std::exchange(fontSize_, controller_->_fontSize) == fontSize_)
        return false;
    for (const Row& row : rows_)
        if (row.content)
            row.content->setFontSize(fontSize_);
    return true;
}

/// An answer that comes in is not parsed over and over.
bool ConversationView::takeForm() {
    const bool isMarkdown = controller_->_markdownOn && !controller_->model()._isLoading;
    const auto form = isMarkdown ? markdown::TextForm::markdown : markdown::TextForm::plain;
    if (std::exchange(answerForm_, form) == form)
        return false;
    for (const Row& row : rows_)
        if (row.role == Role::assistant)
            row.content->setForm(form);
    return true;
}

bool ConversationView::takeMessages() {
    const Published<std::vector<ChatMessage>>& field = controller_->model()._messages;
    const std::vector<ChatMessage>& messages = field;
    const bool hasOnlyGrown = std::exchange(knownGeneration_, field.generation()) == field.generation();
    const std::size_t kept = std::min(rows_.size(), messages.size());
    bool changed = rows_.size() != messages.size();
    if (!hasOnlyGrown)
        for (std::size_t index = 0; index < kept; ++index)
            changed = updateRow(rows_[index], messages[index]) || changed;
    else if (kept > 0 && rows_.back().content) {
        const std::string_view text = messages[kept - 1].content;
        MessageContent& content = *rows_.back().content;
        if (text.size() > content.text().size()) {
            content.append(text.substr(content.text().size()));
            changed = true;
        }
    }
    for (std::size_t index = kept; index < rows_.size(); ++index)
        delete rows_[index].content;
    rows_.resize(kept);
    for (std::size_t index = kept; index < messages.size(); ++index)
        rows_.push_back(makeRow(messages[index]));
    return changed;
}

bool ConversationView::updateRow(Row& row, const ChatMessage& message) {
    if (row.id == message.id && row.role == roleOf(message.role))
        return row.content && row.content->setText(message.content);
    delete row.content;
    row = makeRow(message);
    return true;
}

ConversationView::Row ConversationView::makeRow(const ChatMessage& message) {
    controller_->messageRowAppeared();
    Row row{.id = message.id, .role = roleOf(message.role)};
    row.content = makeContent(row.role);
    if (row.content) {
        row.content->setFontSize(controller_->_fontSize);
        row.content->setText(message.content);
        row.content->show();
    }
    return row;
}

QString ConversationView::describedRole(Role role) {
    switch (role) {
    case Role::assistant:
        return QStringLiteral("Answer");
    case Role::user:
        return QStringLiteral("Question");
    case Role::system:
        return QStringLiteral("Instruction");
    case Role::other:
        break;
    }
    return {};
}

MessageContent* ConversationView::makeContent(Role role) {
    if (role == Role::other)
        return nullptr;
    auto* content = new MessageContent(services_, this);
    content->setShrinking(role == Role::user);
    if (role == Role::assistant) {
        content->setForm(answerForm_);
        content->setAccessibleName(describedRole(role));
    } else {
        content->setAccessibleDescription(describedRole(role));
    }
    if (role == Role::system) {
        content->item().setTextColor(kPanelTheme.gray);
        content->item().setAlignment(markdown::TextAlignment::center);
    }
    if (tabPredecessor_)
        setTabOrder(tabPredecessor_, content);
    connectContent(*content);
    return content;
}

void ConversationView::connectContent(MessageContent& content) {
    content.onSelectionBegun = [this, &content] {
        for (const Row& row : rows_)
            if (row.content && row.content != &content)
                row.content->clearSelection();
        if (onSelectionBegun)
            onSelectionBegun();
    };
    content.onReveal = [this, &content](int top, int bottom) {
        if (onReveal)
            onReveal(content.y() + top, content.y() + bottom);
    };
    content.onHeightChanged = [this] {
        placedWidth_ = -1;
        if (onHeightChanged)
            onHeightChanged();
    };
}

int ConversationView::heightForWidth(int width) const {
    if (placedWidth_ != width)
        place(width);
    return placedHeight_;
}

int ConversationView::prepareToShow(int top, int bottom) {
    int shift = 0;
    for (const Row& row : rows_) {
        const bool isSeen = row.content && row.top < bottom && row.top + row.height > top;
        if (isSeen)
            shift += row.content->prepareToShow(top - row.content->y(), bottom - row.content->y());
    }
    if (shift != 0)
        placedWidth_ = -1;
    return shift;
}

int ConversationView::newestBottom() const {
    return rows_.empty() ? 0 : rows_.back().top + rows_.back().height;
}

void ConversationView::place(int width) const {
    int top = 0;
    for (auto row = rows_.rbegin(); row != rows_.rend(); ++row) {
        row->top = top;
        row->height = contentHeight(*row, width) + 2 * panel::kMessagePadding;
        if (row->content)
            placeContent(*row, width);
        top += row->height;
    }
    placedWidth_ = width;
    placedHeight_ = top;
}

int ConversationView::faceColumn() const {
    return qRound(kFaceColumn * fontSize_);
}

int ConversationView::contentHeight(const Row& row, int width) const {
    if (!row.content)
        return 0;
    const int faces = row.role == Role::system ? 0 : faceColumn() + kFaceGap;
    return row.content->heightForWidth(width - 2 * panel::kMessagePadding - faces);
}

void ConversationView::placeContent(const Row& row, int width) const {
    const int inside = width - 2 * panel::kMessagePadding;
    const int available = inside - (row.role == Role::system ? 0 : faceColumn() + kFaceGap);
    const int wanted = row.content->takenWidth();
    int left = panel::kMessagePadding;
    if (row.role == Role::assistant)
        left += faceColumn() + kFaceGap;
    else if (row.role == Role::user)
        left += available - wanted;
    if (layoutDirection() == Qt::RightToLeft)
        left = width - left - wanted;
    row.content->setGeometry(left, row.top + panel::kMessagePadding, wanted,
                             row.height - 2 * panel::kMessagePadding);
}

void ConversationView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QFont font = emojiFont(kFaceFontSize * fontSize_ / FloatingViewController::kDefaultFont);
    for (const Row& row : rows_) {
        const bool hasFace = row.role == Role::assistant || row.role == Role::user;
        const QRect whole(0, row.top, width(), row.height);
        if (!hasFace || !row.content || !whole.intersects(event->rect()))
            continue;
        const bool leading = (row.role == Role::assistant) == (layoutDirection() == Qt::LeftToRight);
        const int column = faceColumn();
        const int left = leading ? panel::kMessagePadding : width() - panel::kMessagePadding - column;
        const double middle = row.top + panel::kMessagePadding + row.content->firstLineMiddle();
        drawPictograph(painter, QRectF(left, middle - column, column, 2 * column), Qt::AlignCenter, font,
                       faceOf(row.role == Role::assistant));
    }
}

void ConversationView::resizeEvent(QResizeEvent*) {
    if (placedWidth_ != width())
        place(width());
}

QString ConversationView::selectedText() const {
    for (const Row& row : rows_)
        if (row.content && !row.content->selectedText().isEmpty())
            return row.content->selectedText();
    return {};
}

void ConversationView::clearSelection() {
    for (const Row& row : rows_)
        if (row.content)
            row.content->clearSelection();
}

MessageContent* ConversationView::contentAt(std::size_t index) const {
    return rows_.at(index).content;
}

} // namespace quillmoth
