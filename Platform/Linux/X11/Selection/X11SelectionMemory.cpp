#include "Platform/Linux/X11/Selection/X11SelectionMemory.h"

#include <algorithm>
#include <utility>

namespace quillmoth::platform {

namespace {

// Beyond it a text that happens to be the same is not what was lent any more.
constexpr std::chrono::seconds kForgetTime{10};

} // namespace

std::optional<std::optional<std::string>> X11SelectionMemory::known(Clock::time_point now) const {
    if (copied_ && isLent(now))
        return copied_;
    if (isCleared_)
        return std::optional<std::string>();
    return std::nullopt;
}

void X11SelectionMemory::clear(Clock::time_point now) {
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

bool X11SelectionMemory::isLent(Clock::time_point now) const {
    return !loans_.empty() && now - loans_.back().when <= kCopyTime;
}

bool X11SelectionMemory::hasBeenReplaced() {
    lastRead_.reset();
    for (Loan& loan : loans_)
        loan.isReplaced = true;
    return std::exchange(isCleared_, false);
}

X11SelectionMemory::Decision X11SelectionMemory::write(const std::string& text, Clock::time_point now) {
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
