#include "Platform/Linux/AtSpi/FocusSearch.h"

#include "Foundation/Limits.h"
#include "Platform/Linux/AtSpi/TextElement.h"

#include <algorithm>
#include <deque>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kWalkTimeLimit{250};

/// The rule of Collection.GetMatches that asks for the state "focused" and nothing else.
GVariant* focusedRule() {
    constexpr unsigned kFocused = ATSPI_STATE_FOCUSED;
    GVariantBuilder states;
    g_variant_builder_init(&states, G_VARIANT_TYPE("ai"));
    g_variant_builder_add(&states, "i", kFocused < 32 ? static_cast<gint32>(1U << kFocused) : 0);
    g_variant_builder_add(&states, "i", 0);
    GVariantBuilder roles;
    g_variant_builder_init(&roles, G_VARIANT_TYPE("ai"));
    for (int word = 0; word < 4; ++word)
        g_variant_builder_add(&roles, "i", 0);
    return g_variant_new("(aiia{ss}iaiiasib)", &states, ATSPI_Collection_MATCH_ALL, nullptr,
                         ATSPI_Collection_MATCH_ALL, &roles, ATSPI_Collection_MATCH_ALL, nullptr,
                         ATSPI_Collection_MATCH_ALL, FALSE);
}

/// Looks at objects that say they have the focus. Qt says so of the current page of tabs too, so one with a
/// text is preferred.
class FocusFinder {
public:
    FocusFinder(Operation& operation, Applications& applications, const FocusTracker& tracker)
        : operation_(operation), applications_(applications), tracker_(tracker) {}

    ObjectReference find(std::int64_t process) {
        if (tryTold(process))
            return found_;
        for (const ObjectReference& root : applications_.rootsOf(operation_, process)) {
            const ObjectReference told = tracker_.activeWindow(root.name);
            if (!told.isNull() && tryWindow(told))
                return found_;
            for (const ObjectReference& window : windowsOf(operation_, root)) {
                const bool isDone = window != told && tryWindow(window);
                if (isDone || operation_.isOver())
                    return found_;
            }
        }
        return found_;
    }

private:
    bool tryTold(std::int64_t process) {
        for (const std::string& name : tracker_.applications()) {
            if (applications_.processOf(operation_, name) != process)
                continue;
            for (const ObjectReference& object : tracker_.focusedObjects(name)) {
                const auto states = statesOf(operation_, object);
                if (states && states->has(ATSPI_STATE_FOCUSED) && accept(object))
                    return true;
            }
        }
        return false;
    }

    bool tryWindow(const ObjectReference& window) { return tryCollection(window) || tryWalk(window); }

    bool tryCollection(const ObjectReference& window) {
        constexpr int kWanted = 8;
        const Variant reply =
            operation_.call(window, ATSPI_DBUS_INTERFACE_COLLECTION, "GetMatches",
                            g_variant_new("(@(aiia{ss}iaiiasib)uib)", focusedRule(),
                                          ATSPI_Collection_SORT_ORDER_CANONICAL, kWanted, TRUE),
                            "(a(so))");
        const auto matches = reply ? objectsIn(reply.get()) : std::vector<ObjectReference>{};
        return std::any_of(matches.begin(), matches.end(),
                           [this](const ObjectReference& object) { return accept(object); });
    }

    /// Breadth first, into what is on screen only.
    bool tryWalk(const ObjectReference& window) {
        const auto end = Operation::Clock::now() + kWalkTimeLimit;
        // GTK 4 tells only of whole windows that they are showing.
        const bool isGTK4 = applications_.toolkitOf(operation_, window.name) == Toolkit::gtk4;
        const AtspiStateType onScreen = isGTK4 ? ATSPI_STATE_VISIBLE : ATSPI_STATE_SHOWING;
        std::deque<ObjectReference> waiting{window};
        for (std::size_t visited = 0; visited < limits::kWalkedElements && !waiting.empty(); ++visited) {
            if (operation_.isOver() || Operation::Clock::now() > end)
                return false;
            const ObjectReference object = std::move(waiting.front());
            waiting.pop_front();
            const auto states = statesOf(operation_, object);
            if (states && states->has(ATSPI_STATE_FOCUSED) && accept(object))
                return true;
            const bool isWorthEntering =
                states && states->has(onScreen) && !states->has(ATSPI_STATE_MANAGES_DESCENDANTS);
            if (!isWorthEntering)
                continue;
            for (auto& child : childrenOf(operation_, object)) {
                if (!child.isNull() && waiting.size() < limits::kWalkedElements)
                    waiting.push_back(std::move(child));
            }
        }
        return false;
    }

    /// True where the search is over: `object` has a text. Without one it is kept in case nothing better
    /// comes.
    bool accept(const ObjectReference& object) {
        const auto interfaces = interfacesOf(operation_, object);
        const bool hasText = interfaces && interfaces->text;
        if (hasText || (found_.isNull() && interfaces))
            found_ = object;
        return hasText;
    }

    Operation& operation_;
    Applications& applications_;
    const FocusTracker& tracker_;
    ObjectReference found_;
};

} // namespace

std::vector<ObjectReference> windowsOf(Operation& operation, const ObjectReference& root) {
    auto windows = childrenOf(operation, root);
    std::erase_if(windows, [](const ObjectReference& window) { return window.isNull(); });
    std::stable_partition(windows.begin(), windows.end(), [&operation](const ObjectReference& window) {
        const auto states = statesOf(operation, window);
        return states && states->has(ATSPI_STATE_ACTIVE);
    });
    return windows;
}

ObjectReference findFocus(Operation& operation, Applications& applications, const FocusTracker& tracker,
                          std::int64_t process) {
    return FocusFinder(operation, applications, tracker).find(process);
}

} // namespace quillmoth::platform
