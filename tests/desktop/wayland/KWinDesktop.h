#pragma once

#include "tests/desktop/wayland/WaylandDesktop.h"

#include <memory>
#include <optional>
#include <string>

namespace quillmoth::test {

/// A session of KWin. Throws std::runtime_error where it does not come up.
class KWinDesktop final : public WaylandDesktop {
public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 800;

    /// Whether KWin is installed.
    [[nodiscard]] static bool isThere();

    KWinDesktop();
    ~KWinDesktop() override;
    KWinDesktop(const KWinDesktop&) = delete;
    KWinDesktop& operator=(const KWinDesktop&) = delete;

    ProgramSession& program() override { return program_; }

    WaylandInput& input() override { return *input_; }

    void saveScreenshot(const std::string& path) override;

    /// What KWin has printed.
    [[nodiscard]] std::string output() const { return kwin_->output(); }

    /// What a program needs to be on the X server beside the session.
    [[nodiscard]] ProgramSession::Environment onXwayland() const;

    /// Has another program bind a hot key, by its code in Qt, and let it go again.
    static void bindElsewhere(int key);
    static void freeElsewhere();

    /// The components, by their names, that have hot keys.
    [[nodiscard]] static std::string componentsWithKeys();

private:
    ProgramSession program_;
    std::optional<ChildProcess> kwin_;
    std::unique_ptr<WaylandInput> input_;
};

} // namespace quillmoth::test
