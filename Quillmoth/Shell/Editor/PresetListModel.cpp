#include "Quillmoth/Shell/Editor/PresetListModel.h"

#include <algorithm>

namespace quillmoth {

int PresetListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant PresetListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const std::vector<PromptData>& prompts = tab_.coreAppModel->_PromptM.get()->prompts();
    const auto place = static_cast<std::size_t>(presetAt(index.row()));
    // The presets may have changed since the rows were taken; the refresh is under way then.
    if (place >= prompts.size())
        return {};
    const PromptData& preset = prompts[place];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return QString::fromStdString(preset.emoji + preset.name);
    case kEmojiRole:
        return QString::fromStdString(preset.emoji);
    case kNameRole:
        return QString::fromStdString(preset.name);
    default:
        return {};
    }
}

void PresetListModel::refresh() {
    std::vector<std::int64_t> rows = tab_.rows();
    if (rows == rows_) {
        if (const QModelIndex row = selectedRow(); row.isValid())
            dataChanged(row, row);
        return;
    }
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

QModelIndex PresetListModel::selectedRow() const {
    if (!tab_.selection)
        return {};
    const auto found = std::lower_bound(rows_.begin(), rows_.end(), *tab_.selection);
    if (found == rows_.end() || *found != *tab_.selection)
        return {};
    return index(static_cast<int>(found - rows_.begin()));
}

} // namespace quillmoth
