#pragma once

#include "Platform/Linux/X11/Server/X11Application.h"
#include "Platform/PasteOutcome.h"
#include "Platform/Pasteboard.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// The clipboard of an X11 desktop, as plain text, on a connection and a thread of its own, which start with
/// the first use. Main thread; no call keeps it for more than nine tenths of a second, whatever the owner of
/// the clipboard does. What is set here is offered as long as the object lives; then a clipboard manager is
/// asked to take it.
class X11Pasteboard final : public Pasteboard {
public:
    X11Pasteboard();
    ~X11Pasteboard() override;

    /// Notes all other formats too, for what is set later: see clearContents.
    [[nodiscard]] std::optional<std::string> string() const override;

    /// The clipboard counts as empty from now on. For other programs it holds what it held until somebody
    /// puts something there, so that nothing is lost before that.
    void clearContents() override;

    /// A text that was read here before the latest clearing comes back together with all other formats that
    /// it had; an empty one stands for a clipboard without text, and brings those back.
    void setString(const std::string& text) override;

    /// The keys that make an application paste; each returns false where it cannot be sent.
    struct PasteKeys {
        std::function<bool()> paste;
        /// Called after the text was fetched, or was not in time: lets go of what is held down until then.
        std::function<void()> release = {};
        /// For applications that paste beside what is selected: cuts it, which is `selected`. Left empty
        /// elsewhere.
        std::function<bool()> cut = {};
        std::string selected = {};
        /// Takes back a cut that took something else.
        std::function<bool()> undo = {};
        /// How long to wait before the keys, for those who look at whatever is new on the clipboard.
        std::chrono::milliseconds quietTime = {};
    };

    /// Has the application paste `text`. What is on the clipboard comes back with all its formats afterwards;
    /// a text that has not been fetched before the deadline may be so later. The time until the deadline
    /// begins once what is on the clipboard has been read, which may take three quarters of a second.
    PasteOutcome paste(const std::string& text, const X11Application& application, const PasteKeys& keys,
                       std::chrono::steady_clock::time_point deadline);

    /// Ends the latest paste: what was on the clipboard before comes back now.
    void takeBack();

    /// False where the latest reading did not get all that there is, in which case another program's copy
    /// would lose it for good.
    [[nodiscard]] bool isKept() const { return isWhole_; }

    /// Whether any program owns the selection of that name, such as "CLIPBOARD_MANAGER".
    [[nodiscard]] bool hasOwner(const std::string& selection) const;

private:
    class Thread;

    [[nodiscard]] Thread& thread() const;
    [[nodiscard]] PasteOutcome cut(const PasteKeys& keys, std::chrono::steady_clock::time_point deadline);

    mutable std::unique_ptr<Thread> thread_;
    mutable bool isWhole_ = true;
};

} // namespace quillmoth::platform
