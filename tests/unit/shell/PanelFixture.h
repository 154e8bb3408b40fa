#pragma once

#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/FloatingView.h"
#include "Quillmoth/Shell/Panel/QtPanelWindow.h"

#include <QApplication>

#include <memory>
#include <string>
#include <vector>

namespace quillmoth {

inline PromptData makePreset(std::string emoji, std::string name, std::string prompt,
                             std::optional<std::string> type = std::nullopt) {
    return {{}, std::move(emoji), std::move(name), std::move(prompt), {}, std::move(type), {}};
}

/// The panel with its real model and window over the fake platform.
class PanelUnderTest {
public:
    /// Without services of its own it has plain ones.
    explicit PanelUnderTest(const std::vector<PromptData>& presets, FloatingViewOptions options = {})
        : windows({.focus = platform.panelFocus,
                   .defaults = platform.userDefaults,
                   .isCompositing = [this] { return compositing; },
                   .screens = [this] { return screens; }},
                  [this] { return std::unique_ptr<PanelContent>(std::move(made_)); }) {
        platform.workspace.frontmost = 42;
        platform.userDefaults.set("gatewayBaseURL", std::string("https://gateway.example"));
        platform.documents.put(PromptModel::kFilename, *writeJSON(presets));
        model = DataModel::create(platform.platform());
        controller = FloatingViewController::create(model, platform.platform());
        if (!options.messages.markdown)
            options.messages.markdown = &services;
        made_ = makeFloatingView(controller, std::move(options));
        view = made_.get();
        model->_FloatingViewPanel = std::make_shared<FloatingViewPanel>(windows);
    }

    ~PanelUnderTest() { model->_FloatingViewPanel = nullptr; }

    [[nodiscard]] FloatingViewPanel& panel() const { return *model->_FloatingViewPanel.get(); }

    [[nodiscard]] PanelSurface& surface() const { return *windows.lastSurface(); }

    void open() {
        panel().orderFront();
        panel().makeKeyWindow();
        panel().isOpen = true;
        settle();
    }

    /// Lets all that is due happen, and the view follow.
    void settle() {
        for (int turn = 0; turn < 5; ++turn) {
            platform.runUntilIdle();
            QCoreApplication::processEvents();
            view->refresh();
        }
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    markdown::MarkdownServices services{markdown::MarkdownPalette::panel()};
    platform::FakePlatform platform;
    bool compositing = true;
    QList<QRect> screens{QRect(0, 0, 9000, 900)};
    QtPanelWindows windows;
    std::shared_ptr<DataModel> model;
    std::shared_ptr<FloatingViewController> controller;
    FloatingView* view = nullptr;

private:
    std::unique_ptr<FloatingView> made_;
};

} // namespace quillmoth
