#pragma once

#include "Foundation/Qt/Transition.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace quillmoth::markdown {

/// How far each of some controls, named by numbers, is on its way between rest (0) and hovered (1). Main
/// thread.
class HoverFade {
public:
    HoverFade(std::chrono::milliseconds duration, std::function<void()> changed);

    void setHovered(std::size_t control, bool isHovered);
    [[nodiscard]] double shareOf(std::size_t control) const;

    void clear() { transitions_.clear(); }

    /// The controls that are not at rest.
    [[nodiscard]] std::map<std::size_t, double> shares() const;

private:
    std::chrono::milliseconds duration_;
    std::function<void()> changed_;
    std::map<std::size_t, std::unique_ptr<Transition>> transitions_;
};

} // namespace quillmoth::markdown
