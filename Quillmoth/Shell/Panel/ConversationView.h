#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/MessageContent.h"

#include <vector>

namespace quillmoth {

/// The messages, newest on top. A row keeps its content as long as its message is there. While an answer
/// comes in all of them are plain, and a refresh costs what has been put behind the last one.
class ConversationView final : public QWidget {
public:
    ConversationView(std::shared_ptr<FloatingViewController> controller, MessageServices services,
                     QWidget* parent);
    ~ConversationView() override;

    /// True where the height may have changed.
    bool refresh();

    [[nodiscard]] int heightForWidth(int width) const override;

    /// The part between two heights is going to be seen. Returns how far it has moved down by that.
    int prepareToShow(int top, int bottom);

    /// The lowest point of the newest message; what is below it moves when that grows.
    [[nodiscard]] int newestBottom() const;

    [[nodiscard]] QString selectedText() const;
    void clearSelection();

    /// The messages to come follow `widget` in the order of the Tab key, the newest one first.
    void setTabOrderBehind(QWidget& widget) { tabPredecessor_ = &widget; }

    [[nodiscard]] std::size_t rowCount() const { return rows_.size(); }

    /// The content of the message at an index of the model; none where its role shows nothing.
    [[nodiscard]] MessageContent* contentAt(std::size_t index) const;

    std::function<void()> onSelectionBegun;
    std::function<void(int top, int bottom)> onReveal;
    std::function<void()> onHeightChanged;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    enum class Role { assistant, user, system, other };

    struct Row {
        std::optional<std::string> id;
        Role role = Role::other;
        MessageContent* content = nullptr;
        int top = 0;
        int height = 0;
    };

    [[nodiscard]] static Role roleOf(const std::string& role);
    /// For assistive technology.
    [[nodiscard]] static QString describedRole(Role role);
    bool takeFontSize();
    bool takeForm();
    bool takeMessages();
    bool updateRow(Row& row, const ChatMessage& message);
    [[nodiscard]] Row makeRow(const ChatMessage& message);
    [[nodiscard]] MessageContent* makeContent(Role role);
    void connectContent(MessageContent& content);
    void place(int width) const;
    [[nodiscard]] int faceColumn() const;
    [[nodiscard]] int contentHeight(const Row& row, int width) const;
    void placeContent(const Row& row, int width) const;

    std::shared_ptr<FloatingViewController> controller_;
    MessageServices services_;
    QWidget* tabPredecessor_ = nullptr;
    mutable std::vector<Row> rows_;
    mutable int placedWidth_ = -1;
    mutable int placedHeight_ = 0;
    double fontSize_ = 16;
    markdown::TextForm answerForm_ = markdown::TextForm::plain;
    std::uint64_t knownGeneration_ = 0; ///< of the messages that the rows show
};

} // namespace quillmoth
