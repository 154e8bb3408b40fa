#include "Platform/Linux/AtSpi/FocusTracker.h"

#include <algorithm>

namespace quillmoth::platform {

namespace {

/// Objects remembered for each application.
constexpr std::size_t kKept = 4;

/// The event's first number: for a change of state 1 where it is gained, 0 where it is lost.
int detailOf(GVariant* parameters) {
    if (g_variant_n_children(parameters) < 2)
        return 0;
    const Variant detail(g_variant_get_child_value(parameters, 1));
    return g_variant_is_of_type(detail.get(), G_VARIANT_TYPE_INT32) ? g_variant_get_int32(detail.get()) : 0;
}

} // namespace

void FocusTracker::onSignal(const std::string& sender, const std::string& path, std::string_view event,
                            GVariant* parameters) {
    if (event.ends_with(".StateChanged")) {
        Focused& focused = focused_[sender];
        std::erase(focused.paths, path);
        if (detailOf(parameters) == 0)
            return;
        focused.paths.push_front(path);
        focused.paths.resize(std::min(focused.paths.size(), kKept));
        focused.when = ++now_;
    } else if (event.ends_with(".Activate")) {
        activeWindows_[sender] = path;
    } else if (event.ends_with(".Deactivate")) {
        activeWindows_.erase(sender);
    }
}

std::vector<std::string> FocusTracker::applications() const {
    std::vector<std::pair<std::uint64_t, std::string>> ordered;
    ordered.reserve(focused_.size());
    for (const auto& [name, focused] : focused_)
        ordered.emplace_back(focused.when, name);
    std::sort(ordered.rbegin(), ordered.rend());
    std::vector<std::string> names;
    names.reserve(ordered.size());
    for (auto& entry : ordered)
        names.push_back(std::move(entry.second));
    return names;
}

std::vector<ObjectReference> FocusTracker::focusedObjects(const std::string& name) const {
    std::vector<ObjectReference> objects;
    if (const auto known = focused_.find(name); known != focused_.end()) {
        for (const std::string& path : known->second.paths)
            objects.push_back({.name = name, .path = path});
    }
    return objects;
}

ObjectReference FocusTracker::activeWindow(const std::string& name) const {
    const auto known = activeWindows_.find(name);
    return known == activeWindows_.end() ? ObjectReference{}
                                         : ObjectReference{.name = name, .path = known->second};
}

void FocusTracker::forget(const std::string& name) {
    focused_.erase(name);
    activeWindows_.erase(name);
}

} // namespace quillmoth::platform
