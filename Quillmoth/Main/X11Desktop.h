#pragma once

#include "Platform/DesktopBackEnd.h"
#include "Platform/Linux/Desktop/DesktopHotKeyCenter.h"
#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/X11BackEnd.h"

#include <memory>

namespace quillmoth {

/// A session on an X server.
class X11Desktop final : public platform::DesktopBackEnd {
public:
    /// Null where the toolkit does not run on one; the log says why.
    [[nodiscard]] static std::unique_ptr<X11Desktop> create();

    platform::HotKeyCenter& hotKeyCenter() override { return hotKeys_; }

    platform::KeyboardLayout& keyboardLayout() override { return x11_->keyboardLayout(); }

    platform::KeyboardEvents& keyboardEvents() override { return x11_->keyboardEvents(); }

    platform::PanelFocus& panelFocus() override { return x11_->panelFocus(); }

    platform::Pasteboard& pasteboard() override { return pasteboard_; }

    std::optional<std::int64_t> frontProcess() override { return front().processIdentifier(); }

    std::string frontName() override { return front().name(); }

    std::optional<std::string> primarySelection() override { return front().primarySelection(); }

    std::optional<std::string> selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) override {
        return front().selectionInsteadOfCopy(hasOtherFocus);
    }

    platform::PasteOutcome paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                                 const OtherFocus& hasOtherFocus) override;

    void withdrawPaste() override { pasteboard_.takeBack(); }

    bool isCompositing() const override { return x11_->screen().isComposited(); }

    Subscription onCompositingChange(std::function<void()> subscriber) override;

private:
    explicit X11Desktop(std::unique_ptr<platform::X11BackEnd> x11);

    platform::X11FrontApplication& front() { return x11_->frontApplication(); }

    std::unique_ptr<platform::X11BackEnd> x11_;
    platform::X11Pasteboard pasteboard_;
    platform::DesktopHotKeyCenter hotKeys_;
};

} // namespace quillmoth
