#pragma once

#include "Platform/Linux/Shared/ClipboardMemory.h"
#include "Platform/Linux/Wayland/WaylandSelection.h"
#include "Platform/PasteOutcome.h"
#include "Platform/Pasteboard.h"

namespace quillmoth::platform {

/// The clipboard of a Wayland desktop, as plain text. Main thread; no call keeps it for more than a second,
/// whatever other programs do, and the connection's thread answers them meanwhile. What is set here is
/// offered as long as the object lives.
class WaylandPasteboard final : public Pasteboard {
public:
    using Clock = WaylandConnection::Clock;

    /// Before the connection's thread starts. Null where the compositor does not offer its clipboard.
    /// `connection` outlives the object, and is stopped before its end.
    [[nodiscard]] static std::unique_ptr<WaylandPasteboard> create(WaylandConnection& connection);

    ~WaylandPasteboard() override;

    /// Notes all other formats too, for what is set later: see clearContents.
    [[nodiscard]] std::optional<std::string> string() const override;

    /// The clipboard counts as empty from now on. For other programs it holds what it held until somebody
    /// puts something there, so that nothing is lost before that.
    void clearContents() override;

    /// A text that was read here before the latest clearing comes back together with all other formats that
    /// it had; an empty one stands for a clipboard without text, and brings those back.
    void setString(const std::string& text) override;

    /// The keys that make a program paste; each returns false where it cannot be sent.
    struct PasteKeys {
        std::function<bool()> paste;
        /// For programs that paste beside what is selected: cuts it, which is `selected`. Left empty
        /// elsewhere.
        std::function<bool()> cut = {};
        std::string selected = {};
        /// Takes back a cut that took something else.
        std::function<bool()> undo = {};
    };

    /// Has whoever gets the keys paste `text`; what is on the clipboard comes back with all its formats
    /// afterwards. Programs that fetch all that comes there are given a moment to do so first.
    PasteOutcome paste(const std::string& text, const PasteKeys& keys, Clock::time_point deadline);

    /// Ends the latest paste: what was on the clipboard before comes back now.
    void takeBack();

    /// False where the latest reading did not get all that there is, in which case another program's copy
    /// would lose it for good.
    [[nodiscard]] bool isKept() const { return isWhole_; }

    /// The text of PRIMARY, whoever owns it.
    [[nodiscard]] std::optional<std::string> primary() const;

    /// `subscriber` is called on the main thread when PRIMARY has changed.
    void setPrimaryHandler(std::function<void()> subscriber) { *primaryHandler_ = std::move(subscriber); }

private:
    struct Loan {
        std::string text;
        WaylandContentRef former;
        /// Since somebody has fetched it.
        std::optional<Clock::time_point> endsBy = {};
    };

    WaylandPasteboard(WaylandConnection& connection, std::unique_ptr<WaylandSelection> selection);

    // On the connection's thread
    [[nodiscard]] WaylandContentRef current(const WaylandContentRef& own, Clock::time_point deadline) const;
    void replaced();
    void keepLoanOfSameText();
    void fetched();
    void endLoan();
    void takeCut();
    [[nodiscard]] PasteOutcome cut(const PasteKeys& keys, Clock::time_point deadline);
    void offerLoan();
    bool lend(const std::string& text, const WaylandContentRef& own, Clock::time_point deadline);

    void order(std::function<void()> work);

    WaylandConnection& connection_;
    std::unique_ptr<WaylandSelection> selection_;
    mutable ClipboardMemory<WaylandContent> memory_;
    std::optional<Loan> loan_;
    std::shared_ptr<std::function<void()>> primaryHandler_ = std::make_shared<std::function<void()>>();
    mutable bool isWhole_ = true;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isFetched_ = false;
    std::atomic<bool> expectsCut_ = false;
    /// What the program has cut, which it puts on the clipboard itself.
    std::optional<std::string> cut_;
};

} // namespace quillmoth::platform
