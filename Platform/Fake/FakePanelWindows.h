#pragma once

#include "Platform/PanelWindow.h"

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Panels that are not drawn.
class FakePanelWindows final : public PanelWindows {
public:
    /// What became of one panel; stays when its window has gone.
    struct Panel {
        std::string title;
        bool isVisible = false;
        bool isKey = false;
        bool isGone = false;
        std::function<void()> resignMainHandler;
        /// "setTitle ...", "center", "setFrameUsingName ...", "saveFrameUsingName ...", "orderFront",
        /// "makeKeyWindow", "close", in order.
        std::vector<std::string> calls;
    };

    std::unique_ptr<PanelWindow> makePanel() override;

    [[nodiscard]] const std::vector<std::shared_ptr<Panel>>& panels() const { return panels_; }

    /// The panel made last; a fatal fault where there is none.
    [[nodiscard]] Panel& lastPanel() const;

    /// The user turns to something else.
    void resignMain() const;

    /// The names under which a frame is saved.
    [[nodiscard]] std::set<std::string, std::less<>>& savedFrames() { return *savedFrames_; }

private:
    class Window;

    std::vector<std::shared_ptr<Panel>> panels_;
    std::shared_ptr<std::set<std::string, std::less<>>> savedFrames_ =
        std::make_shared<std::set<std::string, std::less<>>>();
};

} // namespace quillmoth::platform
