#include "Platform/Fake/FakePanelWindows.h"

#include "Foundation/FatalError.h"

#include <utility>

namespace quillmoth::platform {

class FakePanelWindows::Window final : public PanelWindow {
public:
    Window(std::shared_ptr<Panel> panel, std::shared_ptr<std::set<std::string, std::less<>>> savedFrames)
        : panel_(std::move(panel)), savedFrames_(std::move(savedFrames)) {}

    ~Window() override {
        panel_->isGone = true;
        panel_->isVisible = panel_->isKey = false;
        panel_->resignMainHandler = nullptr;
    }

    void setTitle(const std::string& title) override {
        panel_->calls.push_back("setTitle " + title);
        panel_->title = title;
    }

    void center() override { panel_->calls.emplace_back("center"); }

    bool setFrameUsingName(std::string_view name) override {
        panel_->calls.push_back("setFrameUsingName " + std::string(name));
        return savedFrames_->contains(name);
    }

    void saveFrameUsingName(std::string_view name) override {
        panel_->calls.push_back("saveFrameUsingName " + std::string(name));
        savedFrames_->emplace(name);
    }

    void orderFront() override {
        panel_->calls.emplace_back("orderFront");
        panel_->isVisible = true;
    }

    void makeKeyWindow() override {
        panel_->calls.emplace_back("makeKeyWindow");
        panel_->isKey = panel_->isVisible;
    }

    void close() override {
        panel_->calls.emplace_back("close");
        panel_->isVisible = panel_->isKey = false;
    }

    void setResignMainHandler(std::function<void()> handler) override {
        panel_->resignMainHandler = std::move(handler);
    }

private:
    std::shared_ptr<Panel> panel_;
    std::shared_ptr<std::set<std::string, std::less<>>> savedFrames_;
};

std::unique_ptr<PanelWindow> FakePanelWindows::makePanel() {
    panels_.push_back(std::make_shared<Panel>());
    return std::make_unique<Window>(panels_.back(), savedFrames_);
}

FakePanelWindows::Panel& FakePanelWindows::lastPanel() const {
    if (panels_.empty())
        fatalError("No panel has been made.");
    return *panels_.back();
}

void FakePanelWindows::resignMain() const {
    Panel& panel = lastPanel();
    panel.isKey = false;
    // A copy: the handler may destroy the window.
    if (const auto handler = panel.resignMainHandler)
        handler();
}

} // namespace quillmoth::platform
