#pragma once

#include "Quillmoth/Assistant/DataModel.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillmoth::platform {
class UUIDSource;
}

namespace quillmoth {

/// One tab of the prompt editor: the presets of one kind, by their indices among all presets. Main thread.
class PromptTab {
public:
    virtual ~PromptTab() = default;
    PromptTab(const PromptTab&) = delete;
    PromptTab& operator=(const PromptTab&) = delete;

    [[nodiscard]] virtual bool lists(const PromptData& preset) const = 0;

    /// The indices of the presets that this tab lists, in order.
    [[nodiscard]] std::vector<std::int64_t> rows() const;

    /// Appends a new preset of this kind, and selects it.
    void add(platform::UUIDSource& uuidSource);

    /// The index of the preset on show in the form. It may be one that this tab does not list: the preset may
    /// have changed its kind, or stand before one that was deleted.
    std::optional<std::int64_t> selection;
    const std::shared_ptr<DataModel> coreAppModel;

protected:
    explicit PromptTab(std::shared_ptr<DataModel> model) : coreAppModel(std::move(model)) {}

private:
    [[nodiscard]] virtual PromptData newPreset() const = 0;
};

/// Lists every preset that does not say "nonContext".
class ContextTabView final : public PromptTab {
public:
    explicit ContextTabView(std::shared_ptr<DataModel> model) : PromptTab(std::move(model)) {}

    [[nodiscard]] bool lists(const PromptData& preset) const override;

private:
    [[nodiscard]] PromptData newPreset() const override;
};

/// Lists the presets that say "nonContext".
class NonContextTabView final : public PromptTab {
public:
    explicit NonContextTabView(std::shared_ptr<DataModel> model) : PromptTab(std::move(model)) {}

    [[nodiscard]] bool lists(const PromptData& preset) const override;

private:
    [[nodiscard]] PromptData newPreset() const override;
};

} // namespace quillmoth
