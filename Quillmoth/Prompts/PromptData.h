#pragma once

#include "Foundation/Result.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// One preset.
struct PromptData {
    std::optional<std::string> id;
    std::string emoji;
    std::string name;
    /// A template: "{selected text}" takes the context, a run of text in square brackets is a blank.
    std::string prompt;
    std::optional<std::string> systemPrompt;
    /// "context" or "nonContext"; absent counts as "context".
    std::optional<std::string> promptType;
    /// Reserved.
    std::optional<std::string> programType;

    friend bool operator==(const PromptData&, const PromptData&) = default;
};

/// JSON text of an array of presets, keys in the order of the fields.
[[nodiscard]] Result<std::string> writeJSON(const std::vector<PromptData>& prompts);
[[nodiscard]] Result<std::vector<PromptData>> readPrompts(std::string_view json);
[[nodiscard]] Result<PromptData> readPromptData(std::string_view json);

} // namespace quillmoth
