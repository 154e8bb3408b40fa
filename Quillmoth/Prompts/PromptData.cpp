#include "Quillmoth/Prompts/PromptData.h"

#include "Foundation/JSONReader.h"
#include "Foundation/JSONWriter.h"

namespace quillmoth {

static bool visitFields(auto& fields, RecordOf<PromptData> auto& prompt) {
    return fields.optional("id", prompt.id) && fields.required("emoji", prompt.emoji) &&
           fields.required("name", prompt.name) && fields.required("prompt", prompt.prompt) &&
           fields.optional("systemPrompt", prompt.systemPrompt) &&
           fields.optional("promptType", prompt.promptType) &&
           fields.optional("programType", prompt.programType);
}

Result<std::string> writeJSON(const std::vector<PromptData>& prompts) {
    return writeJSONText(prompts);
}

Result<std::vector<PromptData>> readPrompts(std::string_view json) {
    return readJSONArray<PromptData>(json);
}

Result<PromptData> readPromptData(std::string_view json) {
    return readJSON<PromptData>(json);
}

} // namespace quillmoth
