#pragma once

#include "Quillmoth/Assistant/DataModel.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace quillmoth {

/// The form of one preset. Each setter is one change of the store, and thus one writing of the file. An index
/// without a preset is a fatal fault. Main thread.
class EditorView {
public:
    static constexpr const char* kContext = "context";
    static constexpr const char* kNonContext = "nonContext";
    static constexpr const char* kPlaceholder = "{selected text}";
    /// Shown for a preset without a system prompt, and not stored.
    static constexpr const char* kShownSystemPrompt = "You are a helpful assistant.";

    /// `tabSelection` is the list's own, and outlives the form.
    EditorView(std::int64_t index, std::optional<std::int64_t>& tabSelection,
               std::shared_ptr<DataModel> model)
        : PromptIndex(index), selection(tabSelection), coreAppModel(std::move(model)) {}

    [[nodiscard]] const PromptData& preset() const;
    [[nodiscard]] std::string shownSystemPrompt() const;
    [[nodiscard]] std::string shownPromptType() const;
    [[nodiscard]] bool offersSelectedText() const;

    void setName(std::string text) const;
    void setEmoji(std::string text) const;
    void setSystemPrompt(std::string text) const;
    void setPrompt(std::string text) const;
    void setPromptType(std::string type) const;
    void addSelectedText() const;

    /// Steps the selection back by one where it can, then takes the preset out. The last one of all stays,
    /// and none is handed back then.
    std::optional<PromptData> deletePreset();

    std::int64_t PromptIndex;
    std::optional<std::int64_t>& selection;
    const std::shared_ptr<DataModel> coreAppModel;

private:
    template<class Change>
    void edit(Change&& change) const;
};

} // namespace quillmoth
