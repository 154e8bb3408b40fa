#include "Platform/Linux/AtSpi/AccessibilityBus.h"
#include "Platform/Linux/AtSpi/FocusSearch.h"
#include "Platform/Linux/AtSpi/SelectionReader.h"
#include "tests/desktop/support/DesktopWindows.h"

#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <string>
#include <string_view>

using namespace quillmoth::platform;

namespace {

constexpr const char* kUsage =
    "Usage: atspi-probe [--pid N] [--text | --selection | --range | --focus | --tree]\n"
    "Prints what the accessibility bus tells of process N, by default that of the active window:\n"
    "  --text       the whole text of the focused element, or else of the first text element, editable ones "
    "first\n"
    "  --selection  its selected text\n"
    "  --range      its selection as location and length in UTF-16 units\n"
    "  --focus      where the focus is\n"
    "  --tree       all accessible objects that are on screen\n"
    "Without any of these: focus, range, selection and text.\n";

struct Options {
    std::int64_t process = 0;
    std::string what;
};

Options optionsFrom(int argc, char** argv) {
    Options options;
    for (int index = 1; index < argc; ++index) {
        const std::string_view argument = argv[index];
        if (argument == "--pid" && index + 1 < argc)
            options.process = std::strtoll(argv[++index], nullptr, 10);
        else
            options.what = argument;
    }
    return options;
}

std::int64_t activeProcess() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    std::int64_t process = 0;
    if (xcb_connection_has_error(connection) == 0) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const quillmoth::test::DesktopWindows windows(connection, root);
        process = windows.processIdentifier(windows.activeWindow());
    }
    xcb_disconnect(connection);
    return process;
}

/// The first text element in the windows of `process`, editable ones before others.
ObjectReference firstText(Operation& operation, Applications& applications, std::int64_t process) {
    ObjectReference fallback;
    std::deque<ObjectReference> waiting;
    for (const auto& root : applications.rootsOf(operation, process))
        waiting.push_back(root);
    while (!waiting.empty() && !operation.isOver()) {
        const ObjectReference object = std::move(waiting.front());
        waiting.pop_front();
        const auto states = statesOf(operation, object);
        const auto interfaces = interfacesOf(operation, object);
        if (states && interfaces && interfaces->text) {
            if (states->has(ATSPI_STATE_EDITABLE))
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

std::string textProperty(Operation& operation, const ObjectReference& object, const char* name) {
    const Variant value = operation.property(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, name, "s");
    return value ? g_variant_get_string(value.get(), nullptr) : "";
}

std::string described(Operation& operation, const ObjectReference& object) {
    const Variant reply =
        operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetRoleName", nullptr, "(s)");
    const gchar* role = "?";
    if (reply)
        g_variant_get(reply.get(), "(&s)", &role);
    const States states = statesOf(operation, object).value_or(States());
    std::string line = std::string(role) + " \"" + textProperty(operation, object, "Name") + '"';
    const std::pair<AtspiStateType, const char*> told[] = {
        {ATSPI_STATE_CHECKED, "checked"},      {ATSPI_STATE_FOCUSED, "focused"},
        {ATSPI_STATE_ACTIVE, "active"},        {ATSPI_STATE_EDITABLE, "editable"},
        {ATSPI_STATE_READ_ONLY, "read-only"},  {ATSPI_STATE_SINGLE_LINE, "single-line"},
        {ATSPI_STATE_MULTI_LINE, "multi-line"}};
    for (const auto& [state, name] : told) {
        if (states.has(state))
            line.append(" ").append(name);
    }
    return line + " " + object.name + object.path;
}

void printTree(Operation& operation, Applications& applications, const ObjectReference& object, int depth) {
    const std::string line = described(operation, object);
    std::printf("%*s%s\n", 2 * depth, "", line.c_str());
    if (line.starts_with("document")) {
        const auto value =
            readValue(TextElement(operation, object, applications.toolkitOf(operation, object.name)));
        std::printf("%*s%s\n", 2 * depth + 2, "", value.text.c_str());
    }
    for (const auto& child : childrenOf(operation, object)) {
        if (!child.isNull() && statesOf(operation, child).value_or(States()).has(ATSPI_STATE_SHOWING))
            printTree(operation, applications, child, depth + 1);
    }
}

int report(AXError error) {
    std::fprintf(stderr, "atspi-probe: error %d\n", error);
    return 1;
}

int print(const TextAnswer& answer) {
    if (answer.error != kAXErrorSuccess)
        return report(answer.error);
    std::fwrite(answer.text.data(), 1, answer.text.size(), stdout);
    return 0;
}

int print(const RangeAnswer& answer) {
    if (answer.error != kAXErrorSuccess)
        return report(answer.error);
    std::printf("%lld,%lld", static_cast<long long>(answer.range.location),
                static_cast<long long>(answer.range.length));
    return 0;
}

int printAll(Operation& operation, const TextElement& element) {
    std::printf("focus: %s\nrange: ", described(operation, element.object()).c_str());
    print(readSelectedRange(element));
    std::printf("\nselection: ");
    print(readSelectedText(element));
    std::printf("\ntext: ");
    const int result = print(readValue(element));
    std::printf("\n");
    return result;
}

int probe(const Options& options, Operation& operation) {
    Applications applications;
    const FocusTracker tracker;
    if (options.what == "--tree") {
        for (const auto& root : applications.rootsOf(operation, options.process))
            printTree(operation, applications, root, 0);
        return 0;
    }
    ObjectReference object = findFocus(operation, applications, tracker, options.process).object;
    const auto interfaces = object.isNull() ? std::nullopt : interfacesOf(operation, object);
    if (options.what != "--focus" && !(interfaces && interfaces->text))
        object = firstText(operation, applications, options.process);
    if (object.isNull())
        return report(operation.isOver() ? operation.error() : kAXErrorNoValue);
    const TextElement element(operation, object, applications.toolkitOf(operation, object.name));
    if (options.what == "--text")
        return print(readValue(element));
    if (options.what == "--selection")
        return print(readSelectedText(element));
    if (options.what == "--range")
        return print(readSelectedRange(element));
    if (options.what == "--focus")
        return print(TextAnswer{.text = described(operation, object) + "\n"});
    return printAll(operation, element);
}

} // namespace

int main(int argc, char** argv) {
    Options options = optionsFrom(argc, argv);
    if (options.what == "--help" || options.what == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (options.process == 0)
        options.process = activeProcess();
    AccessibilityBus bus([](const auto&...) {});
    GDBusConnection* connection = bus.connection(nullptr);
    if (connection == nullptr || options.process == 0) {
        std::fputs(connection == nullptr ? "atspi-probe: no accessibility bus\n"
                                         : "atspi-probe: no active window\n",
                   stderr);
        return 1;
    }
    Operation operation(connection, nullptr, Operation::Clock::now() + std::chrono::seconds(10));
    return probe(options, operation);
}
