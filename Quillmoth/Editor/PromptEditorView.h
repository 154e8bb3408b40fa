#pragma once

#include "Quillmoth/Editor/EditorView.h"
#include "Quillmoth/Editor/PromptTab.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillmoth::platform {
class Workspace;
struct Platform;
} // namespace quillmoth::platform

namespace quillmoth {

/// The content of the prompt editor: two tabs, the form of the shown tab's selection, and the deletions of
/// this run, which can be taken back. Main thread.
class PromptEditorView {
public:
    enum class Kind { context = 0, nonContext = 1 };

    static constexpr const char* kLibraryURL = "https://quillmoth.example/library/All";

    PromptEditorView(std::shared_ptr<DataModel> model, const platform::Platform& platform);

    [[nodiscard]] Kind shownKind() const { return shownKind_; }

    [[nodiscard]] PromptTab& shownTab() { return tab(shownKind_); }

    void showTab(Kind kind) { shownKind_ = kind; }

    /// Selects the preset in the tab that lists it; does nothing where there is none of that index.
    void showPreset(std::int64_t index);

    /// None where nothing is selected. Good until the tab on show changes.
    [[nodiscard]] std::optional<EditorView> editor();

    /// Another number with each deletion, undo and move: an index may stand for another preset since. Ids do
    /// not tell, as presets may lack them or share one.
    [[nodiscard]] std::uint64_t arrangement() const { return arrangement_; }

    /// "+ Add" of the shown tab; the new preset is selected.
    void add();

    /// Moves the preset in the `row`th row of the shown tab to the gap before the `gap`th one, or behind the
    /// last for `gap` equal to their number. The selections stay with their presets. False where nothing
    /// moves.
    bool moveRow(std::size_t row, std::size_t gap);

    void deletePreset();

    [[nodiscard]] bool canUndoDelete() const { return !deletions_.empty(); }

    /// Puts the preset deleted last back in its place, and shows it in the tab that lists it.
    void undoDelete();

    void openPromptLibrary();

    const std::shared_ptr<DataModel> coreAppModel;
    ContextTabView contextTab;
    NonContextTabView nonContextTab;

private:
    struct Deletion {
        PromptData preset;
        std::int64_t index;
    };

    [[nodiscard]] PromptTab& tab(Kind kind);

    platform::UUIDSource& uuidSource_;
    platform::Workspace& workspace_;
    Kind shownKind_ = Kind::context;
    std::uint64_t arrangement_ = 0;
    std::vector<Deletion> deletions_;
};

} // namespace quillmoth
