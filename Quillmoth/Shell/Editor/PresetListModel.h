#pragma once

#include "Quillmoth/Editor/PromptTab.h"

#include <QAbstractListModel>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillmoth {

/// The rows of a tab for Qt's list views. Texts are made when a row is painted or read aloud.
class PresetListModel final : public QAbstractListModel {
public:
    /// `tab` outlives the model.
    explicit PresetListModel(PromptTab& tab) : tab_(tab), rows_(tab.rows()), labels_(labelsOf(rows_)) {}

    /// The two parts of the row's text.
    static constexpr int kEmojiRole = Qt::UserRole;
    static constexpr int kNameRole = Qt::UserRole + 1;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// Emoji and name with nothing between.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    /// A row's text is found by its name: the emoji before it is on few keyboards.
    [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                        Qt::MatchFlags flags) const override;

    /// Takes the rows of the tab anew, and tells which of them look otherwise. False where none does.
    bool refresh();

    /// The preset in a row, as an index among all presets.
    [[nodiscard]] std::int64_t presetAt(int row) const { return rows_[static_cast<std::size_t>(row)]; }

    /// The row of the tab's selection; an invalid index where it has none here.
    [[nodiscard]] QModelIndex selectedRow() const;

private:
    /// A hash of each row's text.
    [[nodiscard]] std::vector<std::size_t> labelsOf(const std::vector<std::int64_t>& rows) const;

    PromptTab& tab_;
    std::vector<std::int64_t> rows_;
    std::vector<std::size_t> labels_;
};

} // namespace quillmoth
