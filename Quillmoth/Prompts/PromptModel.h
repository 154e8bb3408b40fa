#pragma once

#include "Foundation/Published.h"
#include "Quillmoth/Prompts/PromptData.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {
class Bundle;
class Documents;
} // namespace quillmoth::platform

namespace quillmoth {

/// The presets, in display order: the user's own file where there is one, else those that ship with the
/// program. Every change is told to the subscribers first and written to the file after it. Main thread.
class PromptModel final : public ObservableObject {
public:
    static constexpr const char* kFilename = "QuillmothPrompts.json";
    static constexpr const char* kResource = "prompt.json";

    /// Loads the presets. A resource that is missing or damaged is a fatal fault.
    PromptModel(const platform::Bundle& bundle, platform::Documents& documents);

    [[nodiscard]] const std::vector<PromptData>& prompts() const { return _prompts; }

    void setPrompts(std::vector<PromptData> prompts);

    /// Edits the presets in place, as one change.
    template<class Edit>
    void mutatePrompts(Edit&& edit) {
        _prompts.mutate(std::forward<Edit>(edit));
        didChange();
    }

    /// Writes the presets to the user's file.
    void save() const;

    /// Reserved.
    std::vector<std::byte> PromptSetting;
    /// Reserved.
    std::vector<std::byte> ReplyPromptSetting;

private:
    void didChange() const;

    platform::Documents& documents_;
    Published<std::vector<PromptData>> _prompts;
};

} // namespace quillmoth
