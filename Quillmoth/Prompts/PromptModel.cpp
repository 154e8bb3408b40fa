#include "Quillmoth/Prompts/PromptModel.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Bundle.h"
#include "Quillmoth/Prompts/JSONFunction.h"

#include <algorithm>
#include <iterator>

namespace quillmoth {

namespace {

/// A list without a preset would leave nothing to choose from.
Result<std::vector<PromptData>> readOwnPrompts(std::string_view json) {
    auto prompts = readPrompts(json);
    if (prompts && prompts->empty())
        return Error{"it holds no preset"};
    return prompts;
}

std::vector<PromptData> loadPrompts(const platform::Bundle& bundle, DocumentFile& file) {
    auto shipped = readPrompts(jsonFunction::load(PromptModel::kResource, bundle));
    if (!shipped)
        fatalError(shipped.error().description);
    auto own = jsonFunction::loadJSONFile<PromptData>(file, readOwnPrompts, *shipped);
    return own ? std::move(*own) : std::move(*shipped);
}

} // namespace

PromptModel::PromptModel(const platform::Bundle& bundle, platform::Documents& documents)
    : file_(kFilename, "presets", documents), _prompts(*this, "_prompts", loadPrompts(bundle, file_)) {}

void PromptModel::setPrompts(std::vector<PromptData> prompts) {
    _prompts = std::move(prompts);
    didChange();
}

const PromptData& PromptModel::preset(std::int64_t index) const {
    return prompts()[checked(index, prompts().size())];
}

template<class Edit>
void PromptModel::arrange(Edit&& edit) {
    _prompts.mutate(std::forward<Edit>(edit));
    didChange();
    didArrange_.emit();
}

void PromptModel::append(std::vector<PromptData> presets) {
    arrange([&](std::vector<PromptData>& prompts) {
        prompts.insert(prompts.end(), std::make_move_iterator(presets.begin()),
                       std::make_move_iterator(presets.end()));
    });
}

void PromptModel::insert(std::int64_t index, PromptData preset) {
    const auto gap = static_cast<std::ptrdiff_t>(checked(index, prompts().size() + 1));
    arrange(
        [&](std::vector<PromptData>& prompts) { prompts.insert(prompts.begin() + gap, std::move(preset)); });
}

std::optional<PromptData> PromptModel::remove(std::int64_t index) {
    std::optional<PromptData> removed = preset(index);
    if (prompts().size() > 1) {
        arrange([&](std::vector<PromptData>& prompts) { prompts.erase(prompts.begin() + index); });
    } else {
        removed.reset();
        didArrange_.emit();
    }
    return removed;
}

void PromptModel::move(std::int64_t source, std::int64_t target) {
    checked(source, prompts().size());
    checked(target, prompts().size() + 1);
    arrange([&](std::vector<PromptData>& prompts) {
        const auto first = prompts.begin();
        if (target > source)
            std::rotate(first + source, first + source + 1, first + target);
        else
            std::rotate(first + target, first + source, first + source + 1);
    });
}

void PromptModel::save() {
    // The shipped presets are no reason for a file beside one that cannot be read.
    if (hasChanged_ || !file_.isUnread())
        jsonFunction::saveJSONFile(_prompts.get(), file_);
}

std::size_t PromptModel::checked(std::int64_t index, std::size_t count) {
    if (index < 0 || static_cast<std::uint64_t>(index) >= count)
        fatalError("There is no preset at index " + std::to_string(index));
    return static_cast<std::size_t>(index);
}

void PromptModel::didChange() {
    hasChanged_ = true;
    logLine("Saved to JSON");
    save();
}

} // namespace quillmoth
