#pragma once

#include "Quillmoth/Editor/PromptTab.h"

#include <QAbstractListModel>

#include <cstdint>
#include <optional>
#include <vector>

namespace quillmoth {

/// The rows of a tab for Qt's list views. Texts are made when a row is painted or read aloud, so that a
/// change costs the same for ten presets as for thousands.
class PresetListModel final : public QAbstractListModel {
public:
    /// `tab` outlives the model.
    explicit PresetListModel(PromptTab& tab) : tab_(tab), rows_(tab.rows()) {}

    /// The two parts of the row's text.
    static constexpr int kEmojiRole = Qt::UserRole;
    static constexpr int kNameRole = Qt::UserRole + 1;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// Emoji and name with nothing between.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    /// Takes the rows of the tab anew.
    void refresh();

    /// The preset in a row, as an index among all presets.
    [[nodiscard]] std::int64_t presetAt(int row) const { return rows_[static_cast<std::size_t>(row)]; }

    /// The row of the tab's selection; an invalid index where it has none here.
    [[nodiscard]] QModelIndex selectedRow() const;

private:
    PromptTab& tab_;
    std::vector<std::int64_t> rows_;
};

} // namespace quillmoth
