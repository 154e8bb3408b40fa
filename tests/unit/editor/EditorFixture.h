#pragma once

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Editor/PromptEditorView.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmoth {

/// What a fatal fault becomes in a test.
struct FatalFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A preset whose name begins with "n" is of the kind "nonContext", one with "c" of "context"; others say
/// nothing.
inline PromptData namedPreset(const std::string& name) {
    PromptData preset;
    preset.id = "id of " + name;
    preset.emoji = "🦉";
    preset.name = name;
    preset.prompt = "prompt of " + name;
    if (name.front() == 'n')
        preset.promptType = "nonContext";
    if (name.front() == 'c')
        preset.promptType = "context";
    return preset;
}

/// A model with presets of the test's own, over the fake platform.
class EditorFixture : public testing::Test {
protected:
    using Names = std::vector<std::string>;
    using Rows = std::vector<std::int64_t>;
    using Selection = std::optional<std::int64_t>;

    EditorFixture()
        : fatal_([](const std::string& text) { throw FatalFault(text); }),
          log_([this](std::string line) { lines.push_back(std::move(line)); }) {}

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

    platform::FakePlatform platform;
    std::vector<std::string> lines;
    std::shared_ptr<DataModel> model;

private:
    ScopedFatalErrorHandler fatal_;
    ScopedLogCapture log_;
};

} // namespace quillmoth
