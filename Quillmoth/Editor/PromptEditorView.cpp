#include "Quillmoth/Editor/PromptEditorView.h"

#include "Foundation/Log.h"
#include "Platform/Platform.h"
#include "Platform/Workspace.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

using Selection = std::optional<std::int64_t>;

void followRemoval(Selection& selection, std::int64_t index) {
    if (selection == index)
        selection.reset();
    else if (selection > index)
        --*selection;
}

void followInsertion(Selection& selection, std::int64_t index) {
    if (selection >= index)
        ++*selection;
}

/// `target` is the index before which the element goes, counted before it is taken out.
void followMove(Selection& selection, std::int64_t source, std::int64_t target) {
    const std::int64_t landing = target > source ? target - 1 : target;
    if (selection == source) {
        selection = landing;
        return;
    }
    followRemoval(selection, source);
    followInsertion(selection, landing);
}

} // namespace

PromptEditorView::PromptEditorView(std::shared_ptr<DataModel> model, const platform::Platform& platform)
    : coreAppModel(std::move(model)), contextTab(coreAppModel), nonContextTab(coreAppModel),
      uuidSource_(platform.uuidSource), workspace_(platform.workspace) {}

PromptTab& PromptEditorView::tab(Kind kind) {
    if (kind == Kind::context)
        return contextTab;
    return nonContextTab;
}

void PromptEditorView::showPreset(std::int64_t index) {
    const std::vector<PromptData>& prompts = coreAppModel->_PromptM.get()->prompts();
    if (index < 0 || static_cast<std::size_t>(index) >= prompts.size())
        return;
    const bool isContext = contextTab.lists(prompts[static_cast<std::size_t>(index)]);
    showTab(isContext ? Kind::context : Kind::nonContext);
    shownTab().selection = index;
}

std::optional<EditorView> PromptEditorView::editor() {
    PromptTab& tab = shownTab();
    if (!tab.selection)
        return std::nullopt;
    return std::optional<EditorView>(std::in_place, *tab.selection, tab.selection, coreAppModel);
}

void PromptEditorView::add() {
    shownTab().add(uuidSource_);
}

bool PromptEditorView::moveRow(std::size_t row, std::size_t gap) {
    const std::vector<std::int64_t> rows = shownTab().rows();
    // Both gaps beside a row are where it stands, though presets of the other kind may lie between.
    if (row >= rows.size() || gap > rows.size() || gap == row || gap == row + 1)
        return false;
    const std::int64_t source = rows[row];
    const std::int64_t target = gap < rows.size() ? rows[gap] : rows.back() + 1;
    ++arrangement_;
    followMove(contextTab.selection, source, target);
    followMove(nonContextTab.selection, source, target);
    coreAppModel->_PromptM.get()->move(source, target);
    return true;
}

void PromptEditorView::deletePreset() {
    std::optional<EditorView> form = editor();
    if (!form)
        return;
    const std::int64_t index = form->PromptIndex;
    std::optional<PromptData> removed = form->deletePreset();
    if (!removed)
        return;
    ++arrangement_;
    const Kind otherKind = shownKind_ == Kind::context ? Kind::nonContext : Kind::context;
    followRemoval(tab(otherKind).selection, index);
    deletions_.push_back({std::move(*removed), index});
}

void PromptEditorView::undoDelete() {
    if (deletions_.empty())
        return;
    Deletion deletion = std::move(deletions_.back());
    deletions_.pop_back();
    ++arrangement_;
    PromptModel& model = *coreAppModel->_PromptM.get();
    const auto count = static_cast<std::int64_t>(model.prompts().size());
    const std::int64_t index = std::min(deletion.index, count);
    followInsertion(contextTab.selection, index);
    followInsertion(nonContextTab.selection, index);
    model.insert(index, std::move(deletion.preset));
    showPreset(index);
}

void PromptEditorView::openPromptLibrary() {
    if (workspace_.openURL(kLibraryURL))
        logLine("Open prompt library in browser");
}

} // namespace quillmoth
