#include "Quillmoth/Prompts/PromptModel.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Bundle.h"
#include "Platform/Documents.h"
#include "Quillmoth/Prompts/JSONFunction.h"

namespace quillmoth {

namespace {

std::vector<PromptData> loadPrompts(const platform::Bundle& bundle, platform::Documents& documents) {
    auto shipped = readPrompts(jsonFunction::load(PromptModel::kResource, bundle));
    if (!shipped)
        fatalError(shipped.error().description);
    auto own = jsonFunction::loadJSONFile<PromptData>(PromptModel::kFilename, documents, readPrompts);
    return own ? std::move(*own) : std::move(*shipped);
}

} // namespace

PromptModel::PromptModel(const platform::Bundle& bundle, platform::Documents& documents)
    : documents_(documents), _prompts(*this, "_prompts", loadPrompts(bundle, documents)) {}

void PromptModel::setPrompts(std::vector<PromptData> prompts) {
    _prompts = std::move(prompts);
    didChange();
}

void PromptModel::save() const {
    jsonFunction::saveJSONFile(_prompts.get(), kFilename, documents_);
}

void PromptModel::didChange() const {
    logLine("Saved to JSON");
    save();
}

} // namespace quillmoth
