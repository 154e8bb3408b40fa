#include "Quillmoth/Editor/EditorView.h"

#include <utility>

namespace quillmoth {

template<class Change>
void EditorView::edit(Change&& change) const {
    coreAppModel->_PromptM.get()->edit(PromptIndex, std::forward<Change>(change));
}

const PromptData& EditorView::preset() const {
    return coreAppModel->_PromptM.get()->preset(PromptIndex);
}

std::string EditorView::shownSystemPrompt() const {
    return preset().systemPrompt.value_or(kShownSystemPrompt);
}

std::string EditorView::shownPromptType() const {
    return preset().promptType.value_or(kContext);
}

bool EditorView::offersSelectedText() const {
    return preset().promptType != kNonContext;
}

void EditorView::setName(std::string text) const {
    edit([&](PromptData& preset) { preset.name = std::move(text); });
}

void EditorView::setEmoji(std::string text) const {
    edit([&](PromptData& preset) { preset.emoji = std::move(text); });
}

void EditorView::setSystemPrompt(std::string text) const {
    edit([&](PromptData& preset) { preset.systemPrompt = std::move(text); });
}

void EditorView::setPrompt(std::string text) const {
    edit([&](PromptData& preset) { preset.prompt = std::move(text); });
}

void EditorView::setPromptType(std::string type) const {
    edit([&](PromptData& preset) { preset.promptType = std::move(type); });
}

void EditorView::addSelectedText() const {
    edit([](PromptData& preset) { preset.prompt += kPlaceholder; });
}

std::optional<PromptData> EditorView::deletePreset() {
    const std::int64_t index = PromptIndex;
    if (index >= 1)
        selection = --PromptIndex;
    return coreAppModel->_PromptM.get()->remove(index);
}

} // namespace quillmoth
