// The user's file of presets: through the list, a change, and the next start.

#include "Fuzz.h"

#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakeDocuments.h"
#include "Quillmoth/Prompts/ExtractedText.h"
#include "Quillmoth/Prompts/PromptModel.h"

#include <algorithm>

namespace quillmoth::fuzz {

namespace {

void checkTexts(const std::vector<PromptData>& presets) {
    const auto json = writeJSON(presets);
    promise(static_cast<bool>(json), "what was read can be written");
    const auto again = readPrompts(*json);
    promise(again && *again == presets, "what was written reads as it was");
    for (const PromptData& preset : presets) {
        std::string joined;
        for (const ExtractedText& piece : extractBracketedTexts(preset.prompt)) {
            promise(!piece.text.empty(), "no piece of a form is empty");
            joined += piece.text;
        }
        promise(joined == preset.prompt, "the pieces of a form are the preset");
    }
}

} // namespace

void check(std::string_view input) {
    static const platform::FakeBundle bundle;
    const auto read = readPrompts(input);
    const bool isOfUse = read && !read->empty();
    if (isOfUse)
        checkTexts(*read);

    platform::FakeDocuments documents;
    documents.put(PromptModel::kFilename, std::string(input));
    PromptModel model(bundle, documents);
    promise(!model.prompts().empty(), "there is always a preset");
    promise(!isOfUse || model.prompts() == *read, "the presets of the file");
    promise(isOfUse == model.file().fault().empty(), "told where it is of no use");
    model.append({PromptData{.id = "i", .emoji = "e", .name = "n", .prompt = "p"}});

    const bool isKept = std::any_of(documents.files.begin(), documents.files.end(),
                                    [&](const auto& file) { return file.second == input; });
    promise(isOfUse || input.empty() || isKept, "what cannot be read is kept");
    promise(PromptModel(bundle, documents).prompts() == model.prompts(), "the next start finds the change");
}

} // namespace quillmoth::fuzz
