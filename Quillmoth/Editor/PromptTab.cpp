#include "Quillmoth/Editor/PromptTab.h"

#include "Platform/UUIDSource.h"
#include "Quillmoth/Editor/EditorView.h"

namespace quillmoth {

namespace {

PromptData newPresetOfKind(const char* prompt, const char* type) {
    PromptData preset;
    preset.emoji = "😀";
    preset.name = "New Prompt";
    preset.prompt = prompt;
    preset.promptType = type;
    return preset;
}

} // namespace

std::vector<std::int64_t> PromptTab::rows() const {
    const std::vector<PromptData>& prompts = coreAppModel->_PromptM.get()->prompts();
    std::vector<std::int64_t> result;
    for (std::size_t index = 0; index < prompts.size(); ++index) {
        if (lists(prompts[index]))
            result.push_back(static_cast<std::int64_t>(index));
    }
    return result;
}

void PromptTab::add(platform::UUIDSource& uuidSource) {
    PromptData preset = newPreset();
    preset.id = uuidSource.makeUUID();
    PromptModel& store = *coreAppModel->_PromptM.get();
    store.append({std::move(preset)});
    selection = static_cast<std::int64_t>(store.prompts().size()) - 1;
}

bool ContextTabView::lists(const PromptData& preset) const {
    return preset.promptType != EditorView::kNonContext;
}

PromptData ContextTabView::newPreset() const {
    return newPresetOfKind(EditorView::kPlaceholder, EditorView::kContext);
}

bool NonContextTabView::lists(const PromptData& preset) const {
    return preset.promptType == EditorView::kNonContext;
}

PromptData NonContextTabView::newPreset() const {
    PromptData preset = newPresetOfKind("Hi!", EditorView::kNonContext);
    preset.systemPrompt = "You're a helpful assistant!";
    return preset;
}

} // namespace quillmoth
