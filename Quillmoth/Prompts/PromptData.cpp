#include "Quillmoth/Prompts/PromptData.h"

#include "Foundation/JSONReader.h"
#include "Foundation/JSONWriter.h"

namespace quillmoth {

// The reader and the writer find these by their arguments' namespace, so they cannot be in an unnamed one.

static bool readFields(JSONFields& fields, PromptData& prompt) {
    return fields.optional("id", prompt.id) && fields.required("emoji", prompt.emoji) &&
           fields.required("name", prompt.name) && fields.required("prompt", prompt.prompt) &&
           fields.optional("systemPrompt", prompt.systemPrompt) &&
           fields.optional("promptType", prompt.promptType) &&
           fields.optional("programType", prompt.programType);
}

static void writeFields(JSONWriter& writer, const PromptData& prompt) {
    writer.field("id", prompt.id);
    writer.field("emoji", prompt.emoji);
    writer.field("name", prompt.name);
    writer.field("prompt", prompt.prompt);
    writer.field("systemPrompt", prompt.systemPrompt);
    writer.field("promptType", prompt.promptType);
    writer.field("programType", prompt.programType);
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
