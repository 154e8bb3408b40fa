// What stands before operations of the model that take for granted that what they are about is there.

#include "Quillmoth/Assistant/FloatingViewController.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr const char* kFormPresetGone =
    "The preset of this form is no longer there. What you have filled in is in "
    "the field; Return sends it.";

bool isRow(std::int64_t index, std::size_t count) {
    return index >= 0 && static_cast<std::uint64_t>(index) < count;
}

/// Ids do not tell alone, as presets may lack them or share one; the rest may have been edited meanwhile.
bool isSamePreset(const PromptData& preset, const PromptData& former) {
    return preset == former || (preset.id && preset.id == former.id);
}

} // namespace

void FloatingViewController::run() {
    const bool wasForm = model_->_nonContextPrompt;
    if (!model_->_isLoading && !isRunnable())
        return;
    model_->runPrompt();
    if (model_->_nonContextPrompt && !wasForm)
        formPreset_ = model_->promptForIndex(model_->_selectedIndex);
}

/// Whether runPrompt may be called; puts the selection right for it where that is to be done.
bool FloatingViewController::isRunnable() {
    if (model_->_openHistory) {
        if (isRow(model_->_keyHistorySelected, model_->_oldMessages->size()))
            return true;
        // The list says that it is empty. Behind a form it is not seen.
        if (!model_->_nonContextPrompt)
            return false;
        model_->_openHistory = false;
    }
    if (model_->_nonContextPrompt)
        return selectFormPreset();
    const std::int64_t selected = model_->_selectedIndex;
    if (selected != DataModel::kTypedCommand && !isRow(selected, model_->_PromptM.get()->prompts().size()))
        model_->clampSelection();
    return true;
}

/// While a form is open a capture, a change of the presets and a new command put the selection back to the
/// typed command. False where the form's preset has gone.
bool FloatingViewController::selectFormPreset() {
    const std::vector<PromptData>& presets = model_->_PromptM.get()->prompts();
    if (isRow(model_->_selectedIndex, presets.size()))
        return true;
    const auto found = std::find_if(presets.begin(), presets.end(), [&](const PromptData& preset) {
        return formPreset_ && isSamePreset(preset, *formPreset_);
    });
    if (found == presets.end()) {
        giveFormBack();
        return false;
    }
    model_->_selectedIndex = found - presets.begin();
    return true;
}

void FloatingViewController::giveFormBack() {
    std::string text;
    for (const ExtractedText& piece : *model_->_extractedTexts)
        text += piece.text;
    model_->_nonContextPrompt = false;
    model_->_command = std::move(text);
    model_->_error = std::string(kFormPresetGone);
}

/// The model steps back from rows of the list only. The preset of a form need not be on it.
void FloatingViewController::leaveUnlistedRow() {
    const std::vector<std::int64_t>& rows = model_->_filteredData;
    if (std::find(rows.begin(), rows.end(), model_->_selectedIndex.get()) == rows.end())
        model_->clampSelection();
}

} // namespace quillmoth
