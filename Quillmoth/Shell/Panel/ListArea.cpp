#include "Quillmoth/Shell/Panel/ListArea.h"

#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelButton.h"

#include <QStyle>

namespace quillmoth {

namespace {

constexpr int kTextInset = 10;
constexpr int kSmallFont = 13;
constexpr int kHintLine = 18;
constexpr int kErrorLine = 19;

using Content = FloatingViewController::Content;

} // namespace

/// Lays its visible items out from top to bottom.
class ListArea::Stack final : public QWidget {
public:
    struct Item {
        QWidget* widget = nullptr;
        int side = 0;
        int above = 0;
        int below = 0;
    };

    using QWidget::QWidget;

    void add(const Item& item) { items_.push_back(item); }

    [[nodiscard]] int heightForWidth(int width) const override {
        int height = panel::kListEnds;
        for (const Item& item : items_)
            if (!item.widget->isHidden())
                height += item.above + item.widget->heightForWidth(width - 2 * item.side) + item.below;
        return height + panel::kListEnds;
    }

    void place() {
        int top = panel::kListEnds;
        for (const Item& item : items_) {
            if (item.widget->isHidden())
                continue;
            const int height = item.widget->heightForWidth(width() - 2 * item.side);
            item.widget->setGeometry(item.side, top + item.above, width() - 2 * item.side, height);
            top += item.above + height + item.below;
        }
    }

    std::function<void()> onMoved;

protected:
    void resizeEvent(QResizeEvent*) override { place(); }

    void moveEvent(QMoveEvent*) override {
        if (onMoved)
            onMoved();
    }

private:
    std::vector<Item> items_;
};

/// A button at the leading edge.
class ListArea::ButtonRow final : public QWidget {
public:
    ButtonRow(const QString& text, QWidget* parent) : QWidget(parent), button_(new PanelButton(text, this)) {}

    [[nodiscard]] PanelButton& button() const { return *button_; }

    [[nodiscard]] int heightForWidth(int) const override { return PanelButton::kHeight; }

protected:
    void resizeEvent(QResizeEvent*) override {
        const QRect place(QPoint(), button_->sizeHint());
        button_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    }

private:
    PanelButton* button_;
};

ListArea::ListArea(std::shared_ptr<FloatingViewController> controller, const MessageServices& services,
                   QWidget* parent)
    : QWidget(parent), controller_(std::move(controller)), stack_(new Stack(this)),
      scroll_(new ScrollView(*stack_, this)), error_(new MessageContent(services, stack_)),
      settings_(new ButtonRow(QStringLiteral("Switch on accessibility in Settings"), stack_)),
      hint_(new MessageContent(services, stack_)), form_(new FormView(controller_, stack_)),
      history_(new HistoryList(controller_, stack_)),
      conversation_(new ConversationView(controller_, services, stack_)),
      presets_(new PresetList(controller_, stack_)) {
    error_->setFontSize(kSmallFont);
    error_->item().setTextColor(kPanelTheme.error);
    error_->item().setLineHeight(kErrorLine);
    hint_->setFontSize(kSmallFont);
    hint_->item().setTextColor(kPanelTheme.gray);
    hint_->item().setLineHeight(kHintLine);
    // The hint is no selectable text: the panel can be dragged by it.
    hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
    stack_->add({error_, kTextInset, 10, 9});
    stack_->add({settings_, kTextInset, 2, 7});
    stack_->add({hint_, kTextInset, 10, 10});
    for (QWidget* content : {static_cast<QWidget*>(form_), static_cast<QWidget*>(history_),
                             static_cast<QWidget*>(conversation_), static_cast<QWidget*>(presets_)}) {
        stack_->add({content});
        content->hide();
    }
    error_->hide();
    settings_->hide();
    QObject::connect(&settings_->button(), &QPushButton::clicked, this,
                     [this] { controller_->settingsClicked(); });
    wireSelections();
}

void ListArea::wireSelections() {
    error_->onSelectionBegun = [this] { conversation_->clearSelection(); };
    conversation_->onSelectionBegun = [this] { error_->clearSelection(); };
    conversation_->onReveal = [this](int top, int bottom) {
        scroll_->reveal(conversation_->y() + top, conversation_->y() + bottom);
    };
    conversation_->onHeightChanged = [this] { refreshConversation(true); };
    scroll_->onScrolled = [this] { prepareToShow(); };
    stack_->onMoved = [this] { followPointer(); };
}

void ListArea::resizeEvent(QResizeEvent*) {
    scroll_->setGeometry(rect());
}

void ListArea::setActive(bool active) {
    form_->setActive(active);
}

void ListArea::refresh() {
    const bool textsChanged = refreshTexts();
    const bool contentChanged = showContent(controller_->content());
    refreshContent(textsChanged || contentChanged);
    if (contentChanged)
        scroll_->scrollTo(0);
    revealWanted();
    followPointer();
}

void ListArea::followPointer() {
    presets_->followPointer();
    history_->followPointer();
}

bool ListArea::refreshTexts() {
    const std::string& error = controller_->model()._error;
    const bool historyIsEmpty = controller_->content() == Content::history && history_->rowCount() == 0;
    const bool hinted = controller_->content() == Content::hintAndPresets || historyIsEmpty;
    const std::string hint(historyIsEmpty ? "No conversations yet." : FloatingViewController::kHint);
    const bool errorChanged = error_->setText(error);
    const bool hintChanged = hint_->setText(hint) || hint_->isHidden() == hinted;
    if (!errorChanged && !hintChanged)
        return false;
    error_->setVisible(!error.empty());
    settings_->setVisible(controller_->offersSettings());
    hint_->setVisible(hinted);
    return true;
}

bool ListArea::showContent(Content content) {
    if (shown_ == content)
        return false;
    const bool formEnds = shown_ == Content::form;
    shown_ = content;
    form_->setVisible(content == Content::form);
    history_->setVisible(content == Content::history);
    conversation_->setVisible(content == Content::conversation);
    presets_->setVisible(content == Content::presets || content == Content::hintAndPresets);
    if (formEnds)
        form_->dismiss();
    if (content == Content::history)
        wantedHistory_ = controller_->model()._keyHistorySelected;
    return true;
}

void ListArea::refreshContent(bool relayout) {
    switch (*shown_) {
    case Content::conversation:
        refreshConversation(relayout);
        return;
    case Content::form:
        form_->refresh();
        break;
    case Content::history:
        history_->setFontSize(controller_->_fontSize);
        history_->refresh();
        break;
    case Content::presets:
    case Content::hintAndPresets:
        presets_->setFontSize(controller_->_fontSize);
        presets_->refresh();
        break;
    }
    scroll_->contentChanged();
    stack_->place();
}

void ListArea::refreshConversation(bool relayout) {
    const std::size_t countBefore = conversation_->rowCount();
    const int bottomBefore = conversation_->newestBottom();
    const bool changed = conversation_->refresh();
    if (!changed && !relayout)
        return;
    scroll_->contentChanged();
    stack_->place();
    if (conversation_->rowCount() > countBefore)
        scroll_->scrollTo(0);
    else if (scroll_->position() >= conversation_->y() + bottomBefore && bottomBefore > 0)
        // Older messages are being read: they stay where they are while the newest grows above them.
        scroll_->scrollTo(scroll_->position() + conversation_->newestBottom() - bottomBefore);
}

/// What comes into view keeps its place there, though its height was only estimated so far.
void ListArea::prepareToShow() {
    if (preparing_ || conversation_->isHidden())
        return;
    preparing_ = true;
    const int top = scroll_->position() - conversation_->y();
    const int shift = conversation_->prepareToShow(top, top + height());
    if (shift != 0) {
        scroll_->contentChanged();
        stack_->place();
        scroll_->scrollTo(scroll_->position() + shift);
    }
    preparing_ = false;
}

void ListArea::revealWanted() {
    const auto preset = std::exchange(wantedPreset_, std::nullopt);
    const auto conversation = std::exchange(wantedHistory_, std::nullopt);
    if (preset && !presets_->isHidden())
        revealRow(*presets_, presets_->positionOf(*preset));
    if (conversation && !history_->isHidden() && *conversation < history_->rowCount())
        revealRow(*history_, static_cast<int>(*conversation));
}

void ListArea::revealRow(const RowList& list, int position) {
    if (position < 0)
        return;
    const QRect row = list.rowRect(position).translated(0, list.y());
    // With the first row all that stands above it is seen too.
    const int top = position == 0 ? 0 : row.top() - panel::kListEnds;
    scroll_->reveal(top, row.bottom() + 1 + panel::kListEnds);
}

PanelButton& ListArea::settingsButton() const {
    return settings_->button();
}

QString ListArea::selectedText() const {
    if (!error_->isHidden() && !error_->selectedText().isEmpty())
        return error_->selectedText();
    if (!form_->isHidden())
        return form_->text().selectedText();
    return conversation_->isHidden() ? QString() : conversation_->selectedText();
}

void ListArea::clearSelection() {
    error_->clearSelection();
    conversation_->clearSelection();
    form_->text().clearSelection();
}

} // namespace quillmoth
