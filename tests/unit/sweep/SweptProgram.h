#pragma once

#include "KeyboardShortcuts/Center.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Application/AppDelegate.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Editor/PromptEditorView.h"
#include "tests/unit/sweep/SweepInputs.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quillmoth::sweep {

/// The files of the user, by path.
using Files = std::map<std::string, std::string>;

/// One start of the program on the fake platform, with a user, servers and other programs that do anything
/// that they can do. Its views keep to what the real ones do: they offer the rows and the blanks that they
/// have drawn last, which need not be there any more.
class SweptProgram {
public:
    /// Starts on these files, and on settings that may make no sense.
    SweptProgram(Files files, Dice& dice);
    ~SweptProgram();
    SweptProgram(const SweptProgram&) = delete;
    SweptProgram& operator=(const SweptProgram&) = delete;

    /// Does one thing. Its name.
    const char* step();

    /// What does not hold any more; empty where all does.
    [[nodiscard]] std::string brokenPromise() const;

    [[nodiscard]] const Files& files() const { return platform_.documents.files; }

private:
    struct Action {
        const char* name;
        std::function<void(SweptProgram&)> run;
        std::size_t weight;
    };

    static const std::vector<Action>& actions();

    // The user
    void pressKey();
    void useBar();
    void usePresetRow();
    void useHistoryRow();
    void useForm();
    void pressHotKey();
    void editPresets();
    void importFile();
    // The toolkit
    void draw();
    void drawForm();
    void runQueues();
    // The world
    void serve();
    void answerTopic();
    void openLink();
    void changeOtherPrograms();
    void changeSetting();
    void changeDisk();

    void makeParts();

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

} // namespace quillmoth::sweep
