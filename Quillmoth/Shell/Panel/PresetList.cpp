#include "Quillmoth/Shell/Panel/PresetList.h"

#include "Foundation/Text.h"
#include "Quillmoth/Shell/Looks/Fonts.h"

#include <algorithm>

namespace quillmoth {

namespace {

QString fromView(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

PresetList::PresetList(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : RowList(parent), controller_(std::move(controller)) {
    setAccessibleName(QStringLiteral("Presets"));
}

std::int64_t PresetList::indexAt(int position) const {
    return position == 0 ? DataModel::kTypedCommand
                         : controller_->model()._filteredData.get()[static_cast<std::size_t>(position - 1)];
}

int PresetList::positionOf(std::int64_t index) const {
    if (index == DataModel::kTypedCommand)
        return 0;
    const std::vector<std::int64_t>& shown = controller_->model()._filteredData;
    const auto found = std::lower_bound(shown.begin(), shown.end(), index);
    return found != shown.end() && *found == index ? static_cast<int>(found - shown.begin()) + 1 : -1;
}

int PresetList::rowCount() const {
    return static_cast<int>(controller_->model()._filteredData->size()) + 1;
}

RowList::Row PresetList::row(int position) const {
    if (position == 0)
        return {fromView(FloatingViewController::kTypedCommandEmoji),
                fromView(FloatingViewController::kTypedCommandName)};
    const auto& presets = controller_->model()._PromptM.get()->prompts();
    const auto index = static_cast<std::size_t>(indexAt(position));
    // The presets may have been edited since the list was made.
    if (index >= presets.size())
        return {};
    return {QString::fromStdString(presets[index].emoji), QString::fromStdString(presets[index].name)};
}

RowList::Mark PresetList::mark(int position) const {
    return controller_->presetMark(indexAt(position));
}

int PresetList::selectedPosition() const {
    return positionOf(controller_->model()._selectedIndex);
}

void PresetList::clicked(int position) {
    controller_->presetRowClicked(indexAt(position));
}

void PresetList::doubleClicked(int position) {
    controller_->presetRowDoubleClicked(indexAt(position));
}

void PresetList::entered(int position) {
    // The row of the typed command is marked by itself while no other has been hovered.
    if (position > 0 && controller_->model()._hoverIndex != indexAt(position))
        controller_->presetRowEntered(indexAt(position));
}

HistoryList::HistoryList(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : RowList(parent), controller_(std::move(controller)) {
    setAccessibleName(QStringLiteral("History"));
}

int HistoryList::rowCount() const {
    return static_cast<int>(controller_->model()._oldMessages->size());
}

RowList::Row HistoryList::row(int position) const {
    const std::string& topic =
        controller_->model()._oldMessages.get()[static_cast<std::size_t>(position)].topic;
    const std::string_view first = firstCharacter(topic);
    const QString picture = fromView(first);
    // A letter in the column of the pictographs would tear the topic's first word apart.
    if (!startsWithPictograph(picture))
        return {{}, QString::fromStdString(topic)};
    return {picture, fromView(std::string_view(topic).substr(first.size())).trimmed()};
}

RowList::Mark HistoryList::mark(int position) const {
    return controller_->historyMark(position);
}

int HistoryList::selectedPosition() const {
    const std::int64_t selected = controller_->model()._keyHistorySelected;
    return selected < rowCount() ? static_cast<int>(selected) : -1;
}

void HistoryList::clicked(int position) {
    controller_->historyRowClicked(position);
}

void HistoryList::doubleClicked(int position) {
    controller_->historyRowDoubleClicked(position);
}

void HistoryList::entered(int position) {
    if (controller_->model()._keyHistoryHover != position)
        controller_->historyRowEntered(position);
}

} // namespace quillmoth
