#include "Quillmoth/Shell/Editor/PresetListModel.h"

#include <QTextDocument>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace quillmoth {

namespace {

constexpr int kLongestToolTip = 600;

} // namespace

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
        return QString::fromStdString(preset.emoji + preset.name);
    case Qt::ToolTipRole:
        // A tool tip takes a text for markup where it looks like it, and shows all of it.
        return Qt::convertFromPlainText(
            QString::fromStdString(preset.emoji + preset.name).left(kLongestToolTip), Qt::WhiteSpaceNormal);
    case kEmojiRole:
        return QString::fromStdString(preset.emoji);
    case kNameRole:
        return QString::fromStdString(preset.name);
    default:
        return {};
    }
}

QModelIndexList PresetListModel::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                       Qt::MatchFlags flags) const {
    return QAbstractListModel::match(start, role == Qt::DisplayRole ? kNameRole : role, value, hits, flags);
}

bool PresetListModel::refresh() {
    std::vector<std::int64_t> rows = tab_.rows();
    std::vector<std::size_t> labels = labelsOf(rows);
    if (rows != rows_) {
        beginResetModel();
        rows_ = std::move(rows);
        labels_ = std::move(labels);
        endResetModel();
        return true;
    }
    const auto first = std::mismatch(labels.begin(), labels.end(), labels_.begin()).first;
    if (first == labels.end())
        return false;
    const auto last = std::mismatch(labels.rbegin(), labels.rend(), labels_.rbegin()).first;
    const auto from = static_cast<int>(first - labels.begin());
    const auto to = static_cast<int>(labels.rend() - last) - 1;
    labels_ = std::move(labels);
    dataChanged(index(from), index(to));
    return true;
}

std::vector<std::size_t> PresetListModel::labelsOf(const std::vector<std::int64_t>& rows) const {
    constexpr std::size_t kSpread = 31;
    const std::vector<PromptData>& prompts = tab_.coreAppModel->_PromptM.get()->prompts();
    const std::hash<std::string> hash;
    std::vector<std::size_t> labels;
    labels.reserve(rows.size());
    for (const std::int64_t row : rows) {
        const PromptData& preset = prompts[static_cast<std::size_t>(row)];
        labels.push_back(kSpread * hash(preset.emoji) + hash(preset.name));
    }
    return labels;
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
