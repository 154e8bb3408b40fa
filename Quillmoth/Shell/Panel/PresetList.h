#pragma once

#include "Quillmoth/Shell/Panel/RowList.h"

namespace quillmoth {

/// The row of the typed command, and the presets that fit.
class PresetList final : public RowList {
public:
    PresetList(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    /// The position of the row of a preset, or of the typed command; -1 where it is not in the list.
    [[nodiscard]] int positionOf(std::int64_t index) const;

    [[nodiscard]] int rowCount() const override;
    [[nodiscard]] Row row(int position) const override;
    [[nodiscard]] Mark mark(int position) const override;
    [[nodiscard]] int selectedPosition() const override;
    void clicked(int position) override;
    void doubleClicked(int position) override;
    void entered(int position) override;

private:
    [[nodiscard]] std::int64_t indexAt(int position) const;

    std::shared_ptr<FloatingViewController> controller_;
};

/// The stored conversations, newest first.
class HistoryList final : public RowList {
public:
    HistoryList(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    [[nodiscard]] int rowCount() const override;
    [[nodiscard]] Row row(int position) const override;
    [[nodiscard]] Mark mark(int position) const override;
    [[nodiscard]] int selectedPosition() const override;
    void clicked(int position) override;
    void doubleClicked(int position) override;
    void entered(int position) override;

private:
    std::shared_ptr<FloatingViewController> controller_;
};

} // namespace quillmoth
