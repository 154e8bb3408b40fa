#pragma once

#include "Platform/Linux/X11/Selection/X11SelectionContent.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Remembers what stood on the clipboard while the program lends it to a synthetic copy, whose steps are:
/// read, clear, wait, read, clear, write back what was read first. A clear is noted only: as long as nobody
/// replaces the content it stays where it is, so what nobody replaces is never lost. A second copy may begin
/// before the first one ends; both then bring back what stood there before the first. No thread of its own.
class X11SelectionMemory {
public:
    using Clock = std::chrono::steady_clock;

    /// How long the program waits for a copy, with some room.
    static constexpr std::chrono::milliseconds kCopyTime{500};

    /// What a read answers without asking anybody: an outer none where the owner has to be asked.
    [[nodiscard]] std::optional<std::optional<std::string>> known(Clock::time_point now) const;

    /// The owner was asked, and this is what it has.
    void hasRead(SelectionContentRef content) { lastRead_ = std::move(content); }

    void clear(Clock::time_point now);

    /// Another program has put something on the clipboard. True where it is wanted at once.
    bool hasBeenReplaced();

    /// That is what it has put there.
    void hasReadCopy(std::optional<std::string> text) { copied_ = std::move(text); }

    /// What is to be done for a text that is to be written.
    struct Decision {
        enum class Kind {
            /// Nothing: that very content stands there already.
            leave,
            /// Offer `content` again, of which the text is part.
            restore,
            /// Offer the text alone.
            write,
        };

        Kind kind = Kind::write;
        SelectionContentRef content = nullptr;
    };

    [[nodiscard]] Decision write(const std::string& text, Clock::time_point now);

private:
    struct Loan {
        std::string seen;
        SelectionContentRef original;
        Clock::time_point when;
        bool isReplaced = false;
    };

    [[nodiscard]] bool isLent(Clock::time_point now) const;

    SelectionContentRef lastRead_;
    std::vector<Loan> loans_;
    bool isCleared_ = false;
    /// An inner none stands for a copy without text.
    std::optional<std::optional<std::string>> copied_;
};

} // namespace quillmoth::platform
