#pragma once

#include "Foundation/Published.h"
#include "Quillmoth/Prompts/DocumentFile.h"
#include "Quillmoth/Prompts/PromptData.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {
class Bundle;
class Documents;
} // namespace quillmoth::platform

namespace quillmoth {

/// The presets, in display order: the user's own file where there is one, else those that ship with the
/// program. Every change is told to the subscribers first and written to the file after it. An index out of
/// range is a fatal fault. Main thread.
class PromptModel final : public ObservableObject {
public:
    static constexpr const char* kFilename = "QuillmothPrompts.json";
    static constexpr const char* kResource = "prompt.json";

    /// Loads the presets. A resource that is missing or damaged is a fatal fault.
    PromptModel(const platform::Bundle& bundle, platform::Documents& documents);

    [[nodiscard]] const std::vector<PromptData>& prompts() const { return _prompts; }

    [[nodiscard]] const PromptData& preset(std::int64_t index) const;

    void setPrompts(std::vector<PromptData> prompts);

    /// Edits one preset in place, as one change.
    template<class Edit>
    void edit(std::int64_t index, Edit&& edit) {
        const std::size_t place = checked(index, prompts().size());
        _prompts.mutate([&](std::vector<PromptData>& prompts) { edit(prompts[place]); });
        didChange();
    }

    void append(std::vector<PromptData> presets);

    /// In front of the preset at `index`; behind the last for `index` equal to their number.
    void insert(std::int64_t index, PromptData preset);

    /// The last one of all stays, and none is handed back then.
    std::optional<PromptData> remove(std::int64_t index);

    /// Moves the preset at `source` in front of the one at `target`, counted before it is taken out.
    void move(std::int64_t source, std::int64_t target);

    /// `subscriber` is called behind append, insert, remove and move, also where the last preset stayed: what
    /// lists presets by their indices lists them anew.
    Subscription didArrange(std::function<void()> subscriber) {
        return didArrange_.subscribe(std::move(subscriber));
    }

    /// Writes the presets to the user's file, in the background.
    void save();

    /// The user's file, which tells what fails there.
    [[nodiscard]] DocumentFile& file() { return file_; }

    /// Reserved.
    std::vector<std::byte> PromptSetting;
    /// Reserved.
    std::vector<std::byte> ReplyPromptSetting;

private:
    static std::size_t checked(std::int64_t index, std::size_t count);
    template<class Edit>
    void arrange(Edit&& edit);
    void didChange();

    DocumentFile file_;
    bool hasChanged_ = false;
    Published<std::vector<PromptData>> _prompts;
    Signal<> didArrange_;
};

} // namespace quillmoth
