// The rows on screen and the selection that the keyboard moves over them.

#include "Foundation/FatalError.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>

namespace quillmoth {

namespace {

bool isOfClass(const PromptData& prompt, bool context) {
    if (!prompt.promptType)
        return context;
    return *prompt.promptType == (context ? "context" : "nonContext");
}

void listPresets(DataModel& model, bool context) {
    const std::vector<PromptData>& prompts = model._PromptM.get()->prompts();
    model._filteredData = std::vector<std::int64_t>();
    if (prompts.empty())
        fatalError("There is no preset to list: the presets file holds an empty array");
    model._filteredData.mutate([&](std::vector<std::int64_t>& rows) {
        for (std::size_t index = 0; index < prompts.size(); ++index) {
            if (isOfClass(prompts[index], context))
                rows.push_back(static_cast<std::int64_t>(index));
        }
    });
    model.clampSelection();
}

} // namespace

void DataModel::refreshContextList() {
    listPresets(*this, true);
}

void DataModel::refreshNonContextList() {
    listPresets(*this, false);
}

void DataModel::refreshList() {
    listPresets(*this, _isContext);
}

void DataModel::filterPrompts(const std::string& search) {
    clampSelection();
    _filteredData = std::vector<std::int64_t>();
    _filteredData = presetFilter_.matching(_PromptM.get()->prompts(), search, _isContext);
    clampSelection();
}

void DataModel::clampSelection() {
    _selectedIndex = _filteredData->empty() ? kTypedCommand : _filteredData->front();
    _selectedIndex = kTypedCommand;
    _hoverIndex = kTypedCommand;
}

void DataModel::selectNext() {
    if (_openHistory && _keyHistorySelected < static_cast<std::int64_t>(_oldMessages->size()) - 1)
        _keyHistorySelected = _keyHistorySelected + 1;
    const std::vector<std::int64_t>& rows = _filteredData;
    if (rows.empty() || _selectedIndex >= rows.back())
        return;
    const auto found = std::find(rows.begin(), rows.end(), _selectedIndex.get());
    _selectedIndex = found == rows.end() ? rows.front() : *(found + 1);
}

void DataModel::selectPrevious() {
    if (_openHistory && _keyHistorySelected >= 1)
        _keyHistorySelected = _keyHistorySelected - 1;
    const std::vector<std::int64_t>& rows = _filteredData;
    if (rows.empty())
        return;
    if (rows.front() >= _selectedIndex) {
        _selectedIndex = kTypedCommand;
        return;
    }
    const auto found = std::find(rows.begin(), rows.end(), _selectedIndex.get());
    if (found == rows.end())
        fatalError("The selected preset " + std::to_string(_selectedIndex) + " is not on the list");
    _selectedIndex = *(found - 1);
}

} // namespace quillmoth
