#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {

/// Remembers what stood on the clipboard while the program lends it to a synthetic copy, whose steps are:
/// read, clear, wait, read, clear, write back what was read first. A clear is noted only: as long as nobody
/// replaces the content it stays where it is, so what nobody replaces is never lost. A second copy may begin
/// before the first one ends; both then bring back what stood there before the first. `Content` has a `text`,
/// none where it is no text, and tells whether it is `empty()`. No thread of its own.
template<class Content>
class ClipboardMemory {
public:
    using Clock = std::chrono::steady_clock;
    using ContentRef = std::shared_ptr<const Content>;

    /// How long the program waits for a copy, with some room.
    static constexpr std::chrono::milliseconds kCopyTime{500};

    /// What a read answers without asking anybody: an outer none where the owner has to be asked.
    [[nodiscard]] std::optional<std::optional<std::string>> known(Clock::time_point now) const;

    /// The owner was asked, and this is what it has.
    void hasRead(ContentRef content) { lastRead_ = std::move(content); }

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
        ContentRef content = nullptr;
    };

    [[nodiscard]] Decision write(const std::string& text, Clock::time_point now);

private:
    /// Beyond it a text that happens to be the same is not what was lent any more.
    static constexpr std::chrono::seconds kForgetTime{10};

    struct Loan {
        std::string seen;
        ContentRef original;
        Clock::time_point when;
        bool isReplaced = false;
    };

    [[nodiscard]] bool isLent(Clock::time_point now) const;

    ContentRef lastRead_;
    std::vector<Loan> loans_;
    bool isCleared_ = false;
    /// An inner none stands for a copy without text.
    std::optional<std::optional<std::string>> copied_;
};

template<class Content>
std::optional<std::optional<std::string>> ClipboardMemory<Content>::known(Clock::time_point now) const {
    if (copied_ && isLent(now))
        return copied_;
    if (isCleared_)
        return std::optional<std::string>();
    return std::nullopt;
}

template<class Content>
void ClipboardMemory<Content>::clear(Clock::time_point now) {
    std::erase_if(loans_, [now](const Loan& loan) { return now - loan.when > kForgetTime; });
    const bool isNested = isLent(now);
    if (!isNested)
        copied_.reset();
    loans_.push_back({.seen = lastRead_ && lastRead_->text ? *lastRead_->text : std::string(),
                      .original = isNested ? loans_.back().original : lastRead_,
                      .when = now});
    if (isNested && copied_)
        loans_.back().seen = copied_->value_or("");
    else if (isNested && isCleared_)
        loans_.back().seen.clear();
    isCleared_ = true;
}

template<class Content>
bool ClipboardMemory<Content>::isLent(Clock::time_point now) const {
    return !loans_.empty() && now - loans_.back().when <= kCopyTime;
}

template<class Content>
bool ClipboardMemory<Content>::hasBeenReplaced() {
    lastRead_.reset();
    for (Loan& loan : loans_)
        loan.isReplaced = true;
    return std::exchange(isCleared_, false);
}

template<class Content>
typename ClipboardMemory<Content>::Decision ClipboardMemory<Content>::write(const std::string& text,
                                                                            Clock::time_point now) {
    std::erase_if(loans_, [now](const Loan& loan) { return now - loan.when > kForgetTime; });
    // The clear that belongs to this very write.
    if (isCleared_ && loans_.size() > 1)
        loans_.pop_back();
    isCleared_ = false;
    lastRead_.reset();
    const auto loan =
        std::find_if(loans_.rbegin(), loans_.rend(), [&text](const Loan& each) { return each.seen == text; });
    if (loan == loans_.rend()) {
        loans_.clear();
        copied_.reset();
        return {};
    }
    const Loan found = std::move(*loan);
    loans_.erase(std::next(loan).base());
    if (loans_.empty())
        copied_.reset();
    if (!found.isReplaced)
        return {.kind = Decision::Kind::leave};
    if (found.original && !found.original->empty())
        return {.kind = Decision::Kind::restore, .content = found.original};
    return {};
}

} // namespace quillmoth::platform
