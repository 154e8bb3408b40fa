#include "tests/unit/sweep/SweptProgram.h"

#include "Quillmoth/Editor/PresetFile.h"

#include <algorithm>
#include <utility>

namespace quillmoth::sweep {

namespace {

using View = FloatingViewController;

constexpr View::Key kPanelKeys[] = {View::Key::replaceSelection, View::Key::regenerate, View::Key::regenerate,
                                    View::Key::regenerate,       View::Key::larger,     View::Key::smaller,
                                    View::Key::defaultSize,      View::Key::cancel,     View::Key::cancel,
                                    View::Key::history,          View::Key::history,    View::Key::markdown,
                                    View::Key::copyAll,          View::Key::onTop};

constexpr View::FieldCommand kFieldCommands[] = {
    View::FieldCommand::moveUp,        View::FieldCommand::moveDown,      View::FieldCommand::complete,
    View::FieldCommand::insertNewline, View::FieldCommand::insertNewline, View::FieldCommand::cancelOperation,
    View::FieldCommand::other};

constexpr const char* kImportedPath = "/documents/imported.json";

} // namespace

SweptProgram::SweptProgram(Files files, Dice& dice) : dice_(dice) {
    platform_.documents.files = std::move(files);
    for (std::size_t count = dice_.below(6); count > 0; --count)
        changeSetting();
    changeOtherPrograms();
    makeParts();
}

SweptProgram::~SweptProgram() = default;

void SweptProgram::makeParts() {
    center_ = std::make_unique<KeyboardShortcuts::Center>(platform_.userDefaults, platform_.hotKeyCenter);
    delegate_ = std::make_unique<AppDelegate>(platform_.platform(), *center_);
    view_ = FloatingViewController::create(delegate_->_coreAppModel, platform_.platform());
    editor_ = std::make_unique<PromptEditorView>(delegate_->_coreAppModel, platform_.platform());
    delegate_->finishLaunching();
    center_->followStore();
    view_->viewAppeared();
}

const std::vector<SweptProgram::Action>& SweptProgram::actions() {
    static const std::vector<Action> all{
        {"type", [](SweptProgram& self) { self.view_->commandEdited(text(self.dice_)); }, 6},
        {"field",
         [](SweptProgram& self) {
             self.view_->fieldCommand(self.dice_.of(kFieldCommands), self.dice_.once(8));
         },
         14},
        {"key", &SweptProgram::pressKey, 14},
        {"bar", &SweptProgram::useBar, 4},
        {"preset row", &SweptProgram::usePresetRow, 6},
        {"history row", &SweptProgram::useHistoryRow, 3},
        {"form", &SweptProgram::useForm, 10},
        {"hot key", &SweptProgram::pressHotKey, 5},
        {"click elsewhere", [](SweptProgram& self) { self.platform_.panelWindows.resignMain(); }, 2},
        {"editor", &SweptProgram::editPresets, 6},
        {"import", &SweptProgram::importFile, 1},
        {"draw", &SweptProgram::draw, 12},
        {"queues", &SweptProgram::runQueues, 14},
        {"server", &SweptProgram::serve, 20},
        {"topic", &SweptProgram::answerTopic, 4},
        {"link", &SweptProgram::openLink, 2},
        {"other programs", &SweptProgram::changeOtherPrograms, 2},
        {"setting", &SweptProgram::changeSetting, 2},
        {"disk", &SweptProgram::changeDisk, 1},
    };
    return all;
}

const char* SweptProgram::step() {
    static const std::vector<std::size_t> places = [] {
        std::vector<std::size_t> result;
        for (std::size_t place = 0; place < actions().size(); ++place)
            result.insert(result.end(), actions()[place].weight, place);
        return result;
    }();
    const Action& action = actions()[dice_.of(places)];
    action.run(*this);
    return action.name;
}

std::string SweptProgram::brokenPromise() const {
    const auto count = static_cast<std::int64_t>(model()._PromptM.get()->prompts().size());
    const std::vector<std::int64_t>& listed = model()._filteredData;
    if (count == 0)
        return "there is no preset left";
    if (std::any_of(listed.begin(), listed.end(), [&](auto index) { return index < 0 || index >= count; }))
        return "a preset is listed that is not there";
    if (!(view_->_fontSize >= View::kSmallestFont && view_->_fontSize <= View::kLargestFont))
        return "the font has a size that no text can have";
    return {};
}

void SweptProgram::pressKey() {
    const View::Key key = dice_.of(kPanelKeys);
    // Impatient: before anything else can happen.
    for (std::size_t count = dice_.once(4) ? 3 : 1; count > 0; --count)
        view_->press(key);
}

void SweptProgram::useBar() {
    view_->barItemClicked(dice_.of(view_->bottomBar()));
    if (dice_.once(8))
        view_->settingsClicked();
    if (isFormShown_ && dice_.once(4))
        view_->backClicked();
}

void SweptProgram::usePresetRow() {
    const std::int64_t index = dice_.of(presetRows_);
    view_->presetRowEntered(index);
    view_->presetRowClicked(index);
    if (dice_.once(2))
        view_->presetRowDoubleClicked(index);
}

void SweptProgram::useHistoryRow() {
    if (historyRows_ == 0)
        return;
    const auto row = static_cast<std::int64_t>(dice_.below(historyRows_));
    view_->historyRowEntered(row);
    view_->historyRowClicked(row);
    if (dice_.once(2))
        view_->historyRowDoubleClicked(row);
}

void SweptProgram::useForm() {
    if (blanks_.empty()) {
        // A form without a blank: Return is the panel's.
        if (isFormShown_)
            view_->barItemClicked(View::BarItem::select);
        return;
    }
    const std::int64_t blank = dice_.of(blanks_);
    if (dice_.once(2))
        view_->formFieldEdited(blank, text(dice_));
    else
        view_->returnInFormField(blank);
}

void SweptProgram::pressHotKey() {
    const auto& registered = platform_.hotKeyCenter.registrations;
    if (registered.empty())
        return delegate_->toggleFloatingPanel();
    const auto hotKey = registered.begin()->second;
    platform_.hotKeyCenter.press(hotKey.keyCode, hotKey.carbonModifiers);
    platform_.hotKeyCenter.release(hotKey.keyCode, hotKey.carbonModifiers);
}

void SweptProgram::editPresets() {
    editor_->showTab(dice_.once(2) ? PromptEditorView::Kind::context : PromptEditorView::Kind::nonContext);
    const std::size_t rows = editor_->shownTab().rows().size();
    if (rows > 0 && dice_.once(2))
        editor_->showPreset(editor_->shownTab().rows()[dice_.below(rows)]);
    auto form = editor_->editor();
    switch (dice_.below(6)) {
    case 0:
        return editor_->add();
    case 1:
        return editor_->deletePreset();
    case 2:
        return editor_->undoDelete();
    case 3:
        editor_->moveRow(dice_.below(rows + 1), dice_.below(rows + 2));
        return;
    case 4:
        if (form)
            form->setPromptType(dice_.once(2) ? EditorView::kContext : EditorView::kNonContext);
        return;
    default:
        if (form)
            form->setPrompt(text(dice_));
    }
}

void SweptProgram::importFile() {
    platform_.documents.files[kImportedPath] = presetsFile(dice_);
    // A long list only takes time.
    if (model()._PromptM.get()->prompts().size() < 12)
        (void)importPresets(model(), platform_.documents, platform_.uuidSource, kImportedPath);
}

void SweptProgram::draw() {
    view_->update();
    presetRows_ = {DataModel::kTypedCommand};
    presetRows_.insert(presetRows_.end(), model()._filteredData->begin(), model()._filteredData->end());
    historyRows_ = model()._oldMessages->size();
    drawForm();
    if (view_->content() == View::Content::conversation)
        view_->messageRowAppeared();
}

void SweptProgram::drawForm() {
    if (!std::exchange(isFormShown_, view_->content() == View::Content::form))
        blanks_.clear();
    if (!isFormShown_)
        return;
    std::vector<std::int64_t> blanks;
    for (const ExtractedText& piece : *model()._extractedTexts) {
        if (piece.isBracketed)
            blanks.push_back(piece.id);
    }
    if (blanks == blanks_ && !blanks.empty())
        return;
    blanks_ = std::move(blanks);
    for (auto blank = blanks_.rbegin(); blank != blanks_.rend(); ++blank)
        view_->formFieldAppeared(*blank);
    view_->formAppeared();
}

void SweptProgram::runQueues() {
    switch (dice_.below(5)) {
    case 0:
        platform_.mainQueue.runOne();
        break;
    case 1:
        platform_.operationQueues.runOne();
        break;
    case 2:
        platform_.operationQueues.runUntilIdle();
        for (std::size_t count = dice_.below(12); count > 0; --count)
            platform_.mainQueue.runOne();
        break;
    case 3:
        platform_.runUntilIdle();
        break;
    default:
        platform_.runUntilIdle();
        platform_.mainQueue.advance(0.25);
        break;
    }
}

/// Any of the latest requests, so one that was cancelled or has been answered too.
void SweptProgram::serve() {
    const auto& sessions = platform_.urlSessions.sessions();
    if (sessions.empty())
        return;
    const std::size_t back = dice_.once(6) ? dice_.below(std::min<std::size_t>(sessions.size(), 3)) : 0;
    const auto& tasks = sessions[sessions.size() - 1 - back]->tasks();
    if (tasks.empty())
        return;
    platform::FakeDataTask& task = *tasks.back();
    switch (dice_.below(6)) {
    case 0:
        task.deliverStatus(status(dice_));
        break;
    case 3:
        task.deliverStatus(200);
        for (int count = 0; count < 3; ++count)
            task.deliverData("data: {\"choices\":[{\"delta\":{\"content\":\"a\"},\"index\":0}]}\n\n");
        break;
    case 1:
        task.complete();
        break;
    case 2:
        if (dice_.once(3))
            task.complete(platform::URLError{{}, "lost"});
        break;
    default:
        task.deliverData(streamBytes(dice_));
        break;
    }
}

void SweptProgram::answerTopic() {
    const auto& tasks = platform_.urlSessions.shared().tasks();
    if (tasks.empty() || tasks.back()->isFinished())
        return;
    if (dice_.once(6))
        tasks.back()->answer(std::nullopt, std::nullopt, platform::URLError{{}, "lost"});
    else
        tasks.back()->answer(status(dice_), topicAnswer(dice_));
}

void SweptProgram::openLink() {
    if (model()._PromptM.get()->prompts().size() < 12)
        delegate_->handleOpenURL({link(dice_), link(dice_)});
}

void SweptProgram::changeOtherPrograms() {
    platform_.accessibility.isTrusted = !dice_.once(4);
    platform_.workspace.frontmost = dice_.once(8) ? std::nullopt : std::optional<std::int64_t>(42);
    platform_.workspace.terminalSelection = dice_.once(8) ? std::optional(text(dice_)) : std::nullopt;
    platform_.keyboardEvents.failsToMakeEvents = dice_.once(4);
    platform_.pasteboard.contents = dice_.once(4) ? std::nullopt : std::optional(text(dice_));
    element_ = std::make_shared<platform::FakeAXUIElement>("element");
    if (!dice_.once(3))
        element_->set("AXSelectedText", text(dice_));
    if (dice_.once(2))
        element_->set(
            "AXSelectedTextMarkerRange",
            platform::AXTextMarkerRangeRef(std::make_shared<platform::FakeAXTextMarkerRange>("range")));
    element_->set("AXValue", text(dice_));
    element_->set("AXSelectedTextRange", platform::CFRange{static_cast<std::int64_t>(dice_.below(9)) - 2, 3});
    if (dice_.once(4))
        platform_.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    else
        platform_.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(element_));
}

void SweptProgram::changeSetting() {
    auto [key, value] = setting(dice_);
    if (dice_.once(4))
        platform_.userDefaults.remove(key);
    else
        platform_.userDefaults.set(key, std::move(value));
}

void SweptProgram::changeDisk() {
    auto& disk = platform_.documents;
    for (bool* fault : {&disk.hasNoDirectory, &disk.isFolderUnwritable, &disk.isDiskFull})
        *fault = dice_.once(8);
    disk.unreadable.clear();
    for (const auto& [path, bytes] : disk.files) {
        if (dice_.once(8))
            disk.unreadable.insert(path);
    }
}

} // namespace quillmoth::sweep
