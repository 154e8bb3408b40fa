#include "Platform/Linux/AtSpi/AccessibilityBus.h"
#include "Platform/Linux/AtSpi/FocusSearch.h"
#include "Platform/Linux/AtSpi/SelectionReader.h"

#include <cstdio>
#include <cstdlib>
#include <deque>

using namespace quillmoth::platform;

namespace {

/// The first text element in the windows of `process`, editable ones before others.
ObjectReference firstText(Operation& operation, Applications& applications, std::int64_t process) {
    ObjectReference fallback;
    const auto roots = applications.rootsOf(operation, process);
    std::deque<ObjectReference> waiting(roots.begin(), roots.end());
    for (; !waiting.empty() && !operation.isOver(); waiting.pop_front()) {
        const ObjectReference object = waiting.front();
        const auto interfaces = interfacesOf(operation, object);
        if (interfaces && interfaces->text) {
            if (statesOf(operation, object).value_or(States()).has(ATSPI_STATE_EDITABLE))
                return object;
            if (fallback.isNull())
                fallback = object;
        }
        for (auto& child : childrenOf(operation, object)) {
            if (!child.isNull())
                waiting.push_back(std::move(child));
        }
    }
    return fallback;
}

/// Of what has the focus, or else the first text. Not through libatspi, which waits for
/// itself where a GTK program tells of a new object meanwhile.
std::string textOf(std::int64_t process) {
    AccessibilityBus bus([](const auto&...) {});
    Operation operation(bus.connection(nullptr), nullptr, Operation::Clock::now() + std::chrono::seconds(4));
    Applications applications;
    WalkMemory memory;
    ObjectReference object = findFocus(operation, applications, FocusTracker(), process, memory);
    const auto interfaces = object.isNull() ? std::nullopt : interfacesOf(operation, object);
    if (!interfaces || !interfaces->text)
        object = firstText(operation, applications, process);
    if (object.isNull())
        return {};
    return readValue(TextElement(operation, object, applications.toolkitOf(operation, object.name))).text;
}

} // namespace

/// Prints the text that another process reads of a program: atspi-probe PID
int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    std::fputs(textOf(std::strtol(argv[1], nullptr, 10)).c_str(), stdout);
    return 0;
}
