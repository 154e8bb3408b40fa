#pragma once

#include "Quillmoth/Editor/PromptEditorView.h"
#include "tests/unit/PlatformFixture.h"

#include <memory>
#include <optional>

namespace quillmoth {

/// A preset whose name begins with "n" is of the kind "nonContext", one with "c" of "context"; others say
/// nothing.
inline PromptData namedPreset(const std::string& name) {
    PromptData preset{"id of " + name, "🦉", name, "prompt of " + name, {}, {}, {}};
    if (name.front() == 'n')
        preset.promptType = "nonContext";
    if (name.front() == 'c')
        preset.promptType = "context";
    return preset;
}

/// A model with presets of the test's own, over the fake platform.
class EditorFixture : public PlatformFixture {
protected:
    using Names = Texts;
    using Rows = std::vector<std::int64_t>;
    using Selection = std::optional<std::int64_t>;

    void makeModel(const Names& names) {
        std::vector<PromptData> presets;
        for (const std::string& name : names)
            presets.push_back(namedPreset(name));
        platform.documents.put(PromptModel::kFilename, *writeJSON(presets));
        model = DataModel::create(platform.platform());
    }

    [[nodiscard]] const std::vector<PromptData>& presets() const { return model->_PromptM.get()->prompts(); }

    [[nodiscard]] Names names() const {
        Names result;
        for (const PromptData& preset : presets())
            result.push_back(preset.name);
        return result;
    }

    [[nodiscard]] std::vector<PromptData> fileContent() const {
        return *readPrompts(platform.documents.content(PromptModel::kFilename));
    }

    std::shared_ptr<DataModel> model;
};

} // namespace quillmoth
