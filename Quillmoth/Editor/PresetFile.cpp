#include "Quillmoth/Editor/PresetFile.h"

#include "Platform/Documents.h"
#include "Platform/UUIDSource.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace quillmoth {

namespace {

/// All of a preset but its id.
auto contentOf(const PromptData& preset) {
    return std::tuple(preset.emoji, preset.name, preset.prompt, preset.systemPrompt, preset.promptType,
                      preset.programType);
}

} // namespace

Result<void> exportPresets(const DataModel& model, platform::Documents& documents, const std::string& path) {
    const auto json = writeJSON(model._PromptM.get()->prompts());
    return json ? documents.writeFile(path, *json) : json.error();
}

Result<PresetImport> importPresets(DataModel& model, platform::Documents& documents,
                                   platform::UUIDSource& uuidSource, const std::string& path) {
    const auto bytes = documents.readFile(path);
    if (!bytes)
        return bytes.error();
    auto read = readPrompts(*bytes);
    if (!read)
        return read.error();
    PromptModel& store = *model._PromptM.get();
    std::set<decltype(contentOf(PromptData()))> known;
    for (const PromptData& preset : store.prompts())
        known.insert(contentOf(preset));
    std::vector<PromptData> added;
    for (PromptData& preset : *read) {
        if (!known.insert(contentOf(preset)).second)
            continue;
        preset.id = uuidSource.makeUUID();
        added.push_back(std::move(preset));
    }
    const PresetImport result{.added = added.size(), .present = read->size() - added.size()};
    if (added.empty())
        return result;
    store.append(std::move(added));
    return result;
}

} // namespace quillmoth
