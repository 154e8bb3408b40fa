#include "MarkdownUI/Qt/HoverFade.h"

#include <utility>

namespace quillmoth::markdown {

HoverFade::HoverFade(std::chrono::milliseconds duration, std::function<void()> changed)
    : duration_(duration), changed_(std::move(changed)) {}

double HoverFade::shareOf(std::size_t control) const {
    const auto known = transitions_.find(control);
    return known != transitions_.end() ? known->second->value() : 0;
}

std::map<std::size_t, double> HoverFade::shares() const {
    std::map<std::size_t, double> shares;
    for (const auto& [control, transition] : transitions_) {
        if (const double share = transition->value(); share > 0)
            shares[control] = share;
    }
    return shares;
}

void HoverFade::setHovered(std::size_t control, bool isHovered) {
    auto& transition = transitions_[control];
    if (transition == nullptr)
        transition = std::make_unique<Transition>(changed_);
    transition->moveTo(isHovered ? 1 : 0, static_cast<int>(duration_.count()));
}

} // namespace quillmoth::markdown
