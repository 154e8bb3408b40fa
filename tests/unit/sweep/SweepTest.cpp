#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "KeyboardShortcuts/Center.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Application/AppDelegate.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Editor/PresetFile.h"
#include "Quillmoth/Editor/PromptEditorView.h"
#include "tests/unit/sweep/SweepInputs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

namespace quillmoth::sweep {

namespace {

/// The files of the user, by path.
using Files = std::map<std::string, std::string>;
using View = FloatingViewController;

using Key = View::Key;
using Command = View::FieldCommand;

constexpr Key kPanelKeys[] = {Key::replaceSelection, Key::regenerate, Key::regenerate,  Key::regenerate,
                              Key::larger,           Key::smaller,    Key::defaultSize, Key::cancel,
                              Key::cancel,           Key::history,    Key::history,     Key::markdown,
                              Key::copyAll,          Key::onTop};

constexpr Command kFieldCommands[] = {
    Command::moveUp,        Command::moveDown,        Command::complete, Command::insertNewline,
    Command::insertNewline, Command::cancelOperation, Command::other};

constexpr const char* kImportedPath = "/documents/imported.json";

/// One start of the program on the fake platform, with a user, servers and other programs that do anything
/// that they can do. Its views keep to what the real ones do: they offer the rows and the blanks that they
/// have drawn last, which need not be there any more.
class SweptProgram {
public:
    /// Starts on these files, and on settings that may make no sense.
    SweptProgram(Files files, Dice& dice) : dice_(dice) {
        platform_.documents.files = std::move(files);
        for (std::size_t count = dice_.below(6); count > 0; --count)
            changeSetting();
        changeOtherPrograms();
        makeParts();
    }

    /// Does one thing. Its name.
    const char* step() {
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

    /// What does not hold any more; empty where all does.
    std::string brokenPromise() const {
        const auto count = static_cast<std::int64_t>(model()._PromptM.get()->prompts().size());
        const std::vector<std::int64_t>& listed = model()._filteredData;
        if (count == 0)
            return "there is no preset left";
        if (std::any_of(listed.begin(), listed.end(),
                        [&](auto index) { return index < 0 || index >= count; }))
            return "a preset is listed that is not there";
        if (!(view_->_fontSize >= View::kSmallestFont && view_->_fontSize <= View::kLargestFont))
            return "the font has a size that no text can have";
        return {};
    }

    [[nodiscard]] const Files& files() const { return platform_.documents.files; }

private:
    struct Action {
        const char* name;
        std::function<void(SweptProgram&)> run;
        std::size_t weight;
    };

    void makeParts() {
        center_ = std::make_unique<KeyboardShortcuts::Center>(platform_.userDefaults, platform_.hotKeyCenter);
        delegate_ = std::make_unique<AppDelegate>(platform_.platform(), *center_);
        view_ = FloatingViewController::create(delegate_->_coreAppModel, platform_.platform());
        editor_ = std::make_unique<PromptEditorView>(delegate_->_coreAppModel, platform_.platform());
        delegate_->finishLaunching();
        center_->followStore();
        view_->viewAppeared();
    }

    static const std::vector<Action>& actions() {
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

    void pressKey() {
        const Key key = dice_.of(kPanelKeys);
        // Impatient: before anything else can happen.
        for (std::size_t count = dice_.once(4) ? 3 : 1; count > 0; --count)
            view_->press(key);
    }

    void useBar() {
        view_->barItemClicked(dice_.of(view_->bottomBar()));
        if (dice_.once(8))
            view_->settingsClicked();
        if (isFormShown_ && dice_.once(4))
            view_->backClicked();
    }

    void usePresetRow() {
        const std::int64_t index = dice_.of(presetRows_);
        view_->presetRowEntered(index);
        view_->presetRowClicked(index);
        if (dice_.once(2))
            view_->presetRowDoubleClicked(index);
    }

    void useHistoryRow() {
        if (historyRows_ == 0)
            return;
        const auto row = static_cast<std::int64_t>(dice_.below(historyRows_));
        view_->historyRowEntered(row);
        view_->historyRowClicked(row);
        if (dice_.once(2))
            view_->historyRowDoubleClicked(row);
    }

    void useForm() {
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

    void pressHotKey() {
        const auto& registered = platform_.hotKeyCenter.registrations;
        if (registered.empty())
            return delegate_->toggleFloatingPanel();
        const auto hotKey = registered.begin()->second;
        platform_.hotKeyCenter.press(hotKey.keyCode, hotKey.carbonModifiers);
        platform_.hotKeyCenter.release(hotKey.keyCode, hotKey.carbonModifiers);
    }

    void editPresets() {
        editor_->showTab(dice_.once(2) ? PromptEditorView::Kind::context
                                       : PromptEditorView::Kind::nonContext);
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

    void importFile() {
        platform_.documents.files[kImportedPath] = input("presets", dice_);
        // A long list only takes time.
        if (model()._PromptM.get()->prompts().size() < 12)
            (void)importPresets(model(), platform_.documents, platform_.uuidSource, kImportedPath);
    }

    void draw() {
        view_->update();
        presetRows_ = {DataModel::kTypedCommand};
        presetRows_.insert(presetRows_.end(), model()._filteredData->begin(), model()._filteredData->end());
        historyRows_ = model()._oldMessages->size();
        drawForm();
        if (view_->content() == View::Content::conversation)
            view_->messageRowAppeared();
    }

    void drawForm() {
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

    void runQueues() {
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
    void serve() {
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

    void answerTopic() {
        const auto& tasks = platform_.urlSessions.shared().tasks();
        if (tasks.empty() || tasks.back()->isFinished())
            return;
        if (dice_.once(6))
            tasks.back()->answer(std::nullopt, std::nullopt, platform::URLError{{}, "lost"});
        else
            tasks.back()->answer(status(dice_), input("topics", dice_));
    }

    void openLink() {
        if (model()._PromptM.get()->prompts().size() < 12)
            delegate_->handleOpenURL({input("links", dice_), input("links", dice_)});
    }

    void changeOtherPrograms() {
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
        element_->set("AXSelectedTextRange",
                      platform::CFRange{static_cast<std::int64_t>(dice_.below(9)) - 2, 3});
        if (dice_.once(4))
            platform_.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
        else
            platform_.accessibility.systemWide().set("AXFocusedUIElement",
                                                     platform::AXUIElementRef(element_));
    }

    void changeSetting() {
        auto [key, value] = setting(dice_);
        if (dice_.once(4))
            platform_.userDefaults.remove(key);
        else
            platform_.userDefaults.set(key, std::move(value));
    }

    void changeDisk() {
        auto& disk = platform_.documents;
        for (bool* fault : {&disk.hasNoDirectory, &disk.isFolderUnwritable, &disk.isDiskFull})
            *fault = dice_.once(8);
        disk.unreadable.clear();
        for (const auto& [path, bytes] : disk.files) {
            if (dice_.once(8))
                disk.unreadable.insert(path);
        }
    }

    [[nodiscard]] DataModel& model() const { return *delegate_->_coreAppModel; }

    Dice& dice_;
    platform::FakePlatform platform_;
    std::unique_ptr<KeyboardShortcuts::Center> center_;
    std::unique_ptr<AppDelegate> delegate_;
    std::shared_ptr<FloatingViewController> view_;
    std::unique_ptr<PromptEditorView> editor_;
    std::shared_ptr<platform::FakeAXUIElement> element_;
    bool isFormShown_ = false;
    // As drawn last.
    std::vector<std::int64_t> blanks_;
    std::vector<std::int64_t> presetRows_{DataModel::kTypedCommand};
    std::size_t historyRows_ = 0;
};

constexpr std::uint64_t kSteps = 100'000;
/// So many of the things done last are told with a fault.
constexpr std::size_t kTrail = 40;

std::uint64_t fromEnvironment(const char* variable, std::uint64_t otherwise) {
    const char* value = std::getenv(variable);
    return value != nullptr ? std::strtoull(value, nullptr, 10) : otherwise;
}

/// The files of the next start: those of the former one, or others.
Files filesOfNextStart(const Files& former, Dice& dice) {
    // A history that grows for ever only takes time.
    Files files = dice.once(3) ? Files() : former;
    if (dice.once(2))
        files[platform::FakeDocuments::pathOf(PromptModel::kFilename)] = input("presets", dice);
    if (files.empty() || dice.once(2))
        files[platform::FakeDocuments::pathOf(DataModel::kHistoryFilename)] = input("histories", dice);
    std::erase_if(files, [](const auto& file) { return file.first.find(".damaged-") != std::string::npos; });
    return files;
}

class Sweep {
public:
    explicit Sweep(std::uint64_t seed) : dice_(seed) {}

    /// What has gone wrong; empty where nothing has. Does up to `steps` things.
    std::string run(std::uint64_t& steps) {
        try {
            while (steps > 0) {
                remember("start");
                SweptProgram program(filesOfNextStart(files_, dice_), dice_);
                for (std::size_t rest = 1 + dice_.below(300); rest > 0 && steps > 0; --rest, --steps) {
                    remember(program.step());
                    if (const std::string broken = program.brokenPromise(); !broken.empty())
                        return broken;
                }
                files_ = program.files();
            }
        } catch (const std::exception& fault) {
            return fault.what();
        }
        return {};
    }

    [[nodiscard]] std::string trail() const {
        std::string text;
        for (const char* done : trail_)
            text.append(text.empty() ? "" : ", ").append(done);
        return text;
    }

private:
    void remember(const char* done) {
        trail_.push_back(done);
        if (trail_.size() > kTrail)
            trail_.pop_front();
    }

    Dice dice_;
    Files files_;
    std::deque<const char*> trail_;
};

TEST(Sweep, NothingThatUsersServersFilesAndLinksDoIsAFatalFault) {
    const std::uint64_t seed = fromEnvironment("QUILLMOTH_SWEEP_SEED", 1);
    const std::uint64_t steps = fromEnvironment("QUILLMOTH_SWEEP_STEPS", kSteps);
    std::cout << "QUILLMOTH_SWEEP_SEED=" << seed << " QUILLMOTH_SWEEP_STEPS=" << steps << std::endl;
    const ScopedFatalErrorHandler fatal([](const std::string& text) { throw std::runtime_error(text); });
    const ScopedLogCapture quiet([](const std::string&) {});
    Sweep sweep(seed);
    std::uint64_t left = steps;
    const std::string fault = sweep.run(left);
    EXPECT_EQ(fault, "") << "seed " << seed << ", step " << steps - left << ", behind: " << sweep.trail();
}

} // namespace

} // namespace quillmoth::sweep
