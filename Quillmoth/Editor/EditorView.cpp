#include "Quillmoth/Editor/EditorView.h"

#include "Foundation/FatalError.h"
#include "Quillmoth/Editor/PromptTab.h"

#include <utility>

namespace quillmoth {

namespace {

std::size_t checked(std::int64_t index, std::size_t count) {
    if (index < 0 || static_cast<std::uint64_t>(index) >= count)
        fatalError("There is no preset at index " + std::to_string(index));
    return static_cast<std::size_t>(index);
}

} // namespace

template<class Change>
void EditorView::edit(Change&& change) const {
    PromptModel& model = *coreAppModel->_PromptM.get();
    const std::size_t place = checked(PromptIndex, model.prompts().size());
    model.mutatePrompts([&](std::vector<PromptData>& prompts) { change(prompts[place]); });
}

const PromptData& EditorView::preset() const {
    const std::vector<PromptData>& prompts = coreAppModel->_PromptM.get()->prompts();
    return prompts[checked(PromptIndex, prompts.size())];
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
    PromptModel& model = *coreAppModel->_PromptM.get();
    const std::size_t place = checked(PromptIndex, model.prompts().size());
    if (PromptIndex >= 1)
        selection = --PromptIndex;
    std::optional<PromptData> removed;
    if (model.prompts().size() > 1) {
        model.mutatePrompts([&](std::vector<PromptData>& prompts) {
            const auto found = prompts.begin() + static_cast<std::ptrdiff_t>(place);
            removed = std::move(*found);
            prompts.erase(found);
        });
    }
    refreshAssistantList(*coreAppModel);
    return removed;
}

} // namespace quillmoth
