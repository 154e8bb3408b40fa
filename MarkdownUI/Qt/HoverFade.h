#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

class QVariantAnimation;

namespace quillmoth::markdown {

/// How far each of some controls, named by numbers, is on its way between rest (0) and hovered (1). Jumps
/// where the desktop's animations are off. Main thread.
class HoverFade {
public:
    HoverFade(std::chrono::milliseconds duration, std::function<void()> changed);
    ~HoverFade();
    HoverFade(const HoverFade&) = delete;
    HoverFade& operator=(const HoverFade&) = delete;

    void setHovered(std::size_t control, bool isHovered);
    [[nodiscard]] double shareOf(std::size_t control) const;
    void clear();

    /// The controls that are not at rest.
    [[nodiscard]] const std::map<std::size_t, double>& shares() const { return shares_; }

private:
    void setShare(std::size_t control, double share);

    std::chrono::milliseconds duration_;
    std::function<void()> changed_;
    std::map<std::size_t, double> shares_;
    std::map<std::size_t, std::unique_ptr<QVariantAnimation>> animations_;
};

} // namespace quillmoth::markdown
