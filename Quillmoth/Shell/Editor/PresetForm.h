#pragma once

#include "Quillmoth/Editor/PromptEditorView.h"

#include <QScrollArea>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QButtonGroup;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace quillmoth {

class EmojiField;
class TextArea;

/// The form of the selected preset; each change of a field goes to the store at once.
class PresetForm final : public QScrollArea {
public:
    /// `changed` is called after each change. `view` outlives the form.
    PresetForm(PromptEditorView& view, std::function<void()> changed);

    /// Shows what the store holds now. A field that shows it already is left alone, its caret and undo too.
    void refresh();

    /// Puts the keyboard into the first field, with all of its text selected.
    void focusName();

    /// Wide enough for every row of it.
    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    using TextSetter = void (EditorView::*)(std::string) const;

    void makeFields(QVBoxLayout& layout);
    void addTextArea(QVBoxLayout& layout, TextArea& area, const QString& caption, int height);
    void makeTypes(QVBoxLayout& layout);
    void makeButtons(QVBoxLayout& layout);
    void connectField(QLineEdit& field, TextSetter setter);
    void connectArea(TextArea& area, TextSetter setter);

    /// Runs `change` on the form of the preset on show.
    void edit(const std::function<void(EditorView&)>& change);
    void showType(const std::string& type);
    /// Whether the preset of `form` is another one than at the last call.
    [[nodiscard]] bool isOtherPreset(const EditorView& form);

    PromptEditorView& view_;
    std::function<void()> changed_;
    QLineEdit* name_;
    EmojiField* emoji_;
    TextArea* systemPrompt_;
    TextArea* prompt_;
    QButtonGroup* types_;
    bool isShowingType_ = false;
    QPushButton* delete_;
    QPushButton* addSelectedText_;
    std::optional<std::int64_t> shownIndex_;
    std::uint64_t shownArrangement_ = 0;
};

} // namespace quillmoth
