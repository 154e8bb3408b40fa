#include "Platform/Linux/AtSpi/FocusSearch.h"

#include "Foundation/Limits.h"
#include "Platform/Linux/AtSpi/TextElement.h"

#include <algorithm>
#include <deque>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kWalkTimeLimit{250};

/// Looks at objects that say they have the focus. Qt says so of the current page of tabs too, so one with a
/// text is preferred.
class FocusFinder {
public:
    FocusFinder(Operation& operation, Applications& applications, const FocusTracker& tracker)
        : operation_(operation), applications_(applications), tracker_(tracker) {}

    ObjectReference find(std::int64_t process, WalkMemory& memory) {
        // Whoever tells of a focus has told of all there is; but Qt also tells of pages of tabs and of cells.
        if (tryTold(process) ||
            (!found_.isNull() && applications_.toolkitOf(operation_, found_.name) != Toolkit::qt))
            return found_;
        for (const ObjectReference& root : applications_.rootsOf(operation_, process)) {
            if (memory.fruitless.contains(root.name))
                continue;
            const auto remembered = memory.found.find(root.name);
            if (remembered != memory.found.end() && tryObject(remembered->second))
                return found_;
            const ObjectReference told = tracker_.activeWindow(root.name);
            if (!told.isNull() && tryWalk(told))
                return memory.found[root.name] = found_;
            for (const ObjectReference& window : windowsOf(operation_, root)) {
                if (window != told && tryWalk(window))
                    return memory.found[root.name] = found_;
                if (operation_.isOver())
                    return found_;
            }
            if (found_.isNull())
                memory.fruitless.insert(root.name);
        }
        return found_;
    }

private:
    bool tryTold(std::int64_t process) {
        for (const std::string& name : tracker_.applications()) {
            if (applications_.processOf(operation_, name) != process)
                continue;
            for (const ObjectReference& object : tracker_.focusedObjects(name)) {
                if (tryObject(object))
                    return true;
            }
        }
        return !found_.isNull() && tryBeside(found_);
    }

    /// What is edited in a cell of a table stands beside the table, which says that it has the focus itself.
    bool tryBeside(const ObjectReference& object) {
        const ObjectReference parent = parentOf(operation_, object);
        if (parent.isNull())
            return false;
        for (const ObjectReference& neighbour : firstChildrenOf(parent)) {
            if (neighbour == object)
                continue;
            if (tryObject(neighbour))
                return true;
            for (const ObjectReference& child : firstChildrenOf(neighbour)) {
                if (tryObject(child))
                    return true;
            }
        }
        return false;
    }

    /// Children that manage their own are not asked: a table of a spreadsheet has millions.
    std::vector<ObjectReference> firstChildrenOf(const ObjectReference& object) {
        constexpr std::size_t kMost = 16;
        const auto states = statesOf(operation_, object);
        if (!states || states->has(ATSPI_STATE_MANAGES_DESCENDANTS))
            return {};
        auto children = childrenOf(operation_, object);
        children.resize(std::min(children.size(), kMost));
        std::erase_if(children, [](const ObjectReference& child) { return child.isNull(); });
        return children;
    }

    bool tryObject(const ObjectReference& object) {
        const auto states = statesOf(operation_, object);
        return states && states->has(ATSPI_STATE_FOCUSED) && accept(object, *states);
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
            if (states && states->has(ATSPI_STATE_FOCUSED) && accept(object, *states))
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
    bool accept(const ObjectReference& object, States states) {
        const auto interfaces = interfacesOf(operation_, object);
        const auto role = interfaces ? roleOf(operation_, object) : std::nullopt;
        const bool hasText = role && hasOwnText(*interfaces, *role, states);
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

std::optional<std::int64_t>
findActiveProcess(Operation& operation, Applications& applications,
                  const std::function<bool(const ObjectReference& root)>& passedOver) {
    for (const ObjectReference& root : applications.roots(operation)) {
        if (passedOver(root))
            continue;
        const auto windows = windowsOf(operation, root);
        const auto states = windows.empty() ? std::nullopt : statesOf(operation, windows.front());
        if (states && states->has(ATSPI_STATE_ACTIVE))
            return applications.processOf(operation, root.name);
        if (operation.isOver())
            break;
    }
    return std::nullopt;
}

ObjectReference findFocus(Operation& operation, Applications& applications, const FocusTracker& tracker,
                          std::int64_t process, WalkMemory& memory) {
    return FocusFinder(operation, applications, tracker).find(process, memory);
}

} // namespace quillmoth::platform
