#include "Platform/Linux/AtSpi/Session.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillmoth::platform {

namespace {

/// Lazy trees take a moment to be built.
constexpr Operation::Milliseconds kWakeLimit{500};

template<class Answer>
Answer failed(AXError error) {
    Answer answer;
    answer.error = error;
    return answer;
}

template<>
AXError failed<AXError>(AXError error) {
    return error;
}

template<>
SelectedTextAnswer failed<SelectedTextAnswer>(AXError error) {
    return {.answer = {.error = error, .text = {}}, .isDoubtful = false};
}

using OpenQuestion = std::pair<std::weak_ptr<std::set<std::string>>, std::string>;

void onAnswered(GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<OpenQuestion> question(static_cast<OpenQuestion*>(data));
    const Variant reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
    // Any answer will do, the bus's own that the application has gone among them.
    if (const auto unresponsive = question->first.lock())
        unresponsive->erase(question->second);
}

} // namespace

Session::Session()
    : bus_([this](const std::string& sender, const std::string& path, const std::string& event,
                  GVariant* parameters) { onSignal(sender, path, event, parameters); }) {}

Session::~Session() = default;

void Session::prepare(const Request& request) {
    bus_.connection(request.cancellable);
}

bool Session::isTrusted(const Request& request) {
    return bus_.isEnabled(request.cancellable) && bus_.answers(request.cancellable);
}

bool Session::enable(const Request& request) {
    return bus_.setEnabled(request.cancellable) && bus_.isEnabled(request.cancellable);
}

FocusAnswer Session::focusedElement(const Request& request, std::int64_t process) {
    if (!bus_.isEnabled(request.cancellable))
        return failed<FocusAnswer>(kAXErrorAPIDisabled);
    return perform<FocusAnswer>(request, [this, process](Operation& operation) {
        if (isLeftAlone(operation, process))
            return failed<FocusAnswer>(kAXErrorCannotComplete);
        const ObjectReference finding = findFocus(operation, applications_, tracker_, process, walks_);
        if (!finding.isNull())
            return FocusAnswer{.error = kAXErrorSuccess, .object = finding};
        return FocusAnswer{.error = operation.isOver() ? operation.error() : kAXErrorNoValue, .object = {}};
    });
}

std::optional<std::int64_t> Session::activeProcess(const Request& request, std::int64_t own) {
    std::optional<std::int64_t> found;
    perform<AXError>(request, [&](Operation& operation) {
        for (const std::string& name : tracker_.applications()) {
            const std::int64_t process = applications_.processOf(operation, name);
            const ObjectReference window = tracker_.activeWindow(name);
            if (process == own || process == 0 || window.isNull() || unresponsive_->contains(name))
                continue;
            const auto states = statesOf(operation, window);
            if (states && states->has(ATSPI_STATE_ACTIVE)) {
                found = process;
                return kAXErrorSuccess;
            }
        }
        found = findActiveProcess(operation, applications_, [&](const ObjectReference& root) {
            return applications_.processOf(operation, root.name) == own || unresponsive_->contains(root.name);
        });
        return kAXErrorSuccess;
    });
    return found;
}

FieldReport Session::report(const Request& request, std::int64_t process) {
    FieldReport report;
    const FocusAnswer focus = focusedElement(request, process);
    report.isHung = focus.error == kAXErrorCannotComplete;
    report.hasFocus = focus.error == kAXErrorSuccess;
    if (!report.hasFocus)
        return report;
    perform<AXError>(request, [&](Operation& operation) {
        const Variant name = operation.property({.name = focus.object.name, .path = ATSPI_DBUS_PATH_ROOT},
                                                ATSPI_DBUS_INTERFACE_APPLICATION, "ToolkitName", "s");
        const auto interfaces = interfacesOf(operation, focus.object);
        const auto states = statesOf(operation, focus.object);
        report.toolkit = name ? g_variant_get_string(name.get(), nullptr) : "";
        report.hasText = interfaces && interfaces->text;
        report.takesEdits = interfaces && interfaces->editableText;
        const auto role = roleOf(operation, focus.object);
        report.isSecret = role == ATSPI_ROLE_PASSWORD_TEXT;
        report.isTerminal = role == ATSPI_ROLE_TERMINAL;
        report.isEditable =
            states && states->has(ATSPI_STATE_EDITABLE) && !states->has(ATSPI_STATE_READ_ONLY);
        return kAXErrorSuccess;
    });
    return report;
}

AXError Session::wake(const Request& request, std::int64_t process) {
    return perform<AXError>(request, [this, process](Operation& operation) {
        if (isLeftAlone(operation, process))
            return kAXErrorCannotComplete;
        const auto roots = applications_.rootsOf(operation, process);
        for (const ObjectReference& root : roots) {
            const Toolkit toolkit = applications_.toolkitOf(operation, root.name);
            if (toolkit != Toolkit::chromium && toolkit != Toolkit::unknown)
                continue;
            for (const ObjectReference& window : childrenOf(operation, root)) {
                for (const char* question : {"GetAttributes", "GetRelationSet"}) {
                    operation.call(window, ATSPI_DBUS_INTERFACE_ACCESSIBLE, question, nullptr, nullptr,
                                   kWakeLimit);
                }
            }
        }
        if (operation.isOver())
            return operation.error();
        return roots.empty() ? kAXErrorAttributeUnsupported : kAXErrorSuccess;
    });
}

SelectedTextAnswer Session::selectedText(const Request& request, const ObjectReference& object) {
    return withText<SelectedTextAnswer>(request, object, [](const TextElement& element) {
        SelectedTextAnswer answer{.answer = readSelectedText(element), .isDoubtful = false};
        // Terminals of one kind go on telling an empty range once their contents have changed.
        const auto role = roleOf(element.operation(), element.object());
        if (!role || *role == ATSPI_ROLE_PASSWORD_TEXT)
            return answer;
        const bool isTerminal = *role == ATSPI_ROLE_TERMINAL;
        answer.isDoubtful = (element.toolkit() == Toolkit::chromium && !answer.answer.text.empty()) ||
                            (element.toolkit() == Toolkit::unknown && answer.answer.text.empty()) ||
                            (isTerminal && element.selectionCount().value_or(0) > 0);
        return answer;
    });
}

SelectedTextAnswer Session::gatheredText(const Request& request, const ObjectReference& object) {
    return withText<SelectedTextAnswer>(request, object, [](const TextElement& element) {
        SelectedTextAnswer answer{.answer = readGatheredText(element), .isDoubtful = false};
        answer.isDoubtful = element.toolkit() == Toolkit::chromium && !answer.answer.text.empty();
        return answer;
    });
}

TextAnswer Session::value(const Request& request, const ObjectReference& object) {
    return withText<TextAnswer>(request, object, readValue);
}

RangeAnswer Session::selectedRange(const Request& request, const ObjectReference& object) {
    return withText<RangeAnswer>(request, object, readSelectedRange);
}

AXError Session::setSelectedRange(const Request& request, const ObjectReference& object, CFRange range) {
    return withText<AXError>(
        request, object, [range](const TextElement& element) { return writeSelectedRange(element, range); });
}

AXError Session::setValue(const Request& request, const ObjectReference& object, const std::string& text) {
    return withText<AXError>(request, object,
                             [&text](const TextElement& element) { return writeValue(element, text); });
}

PasteAnswer Session::preparePaste(const Request& request, const ObjectReference& object,
                                  const std::string& text) {
    return withText<PasteAnswer>(request, object, [&text](const TextElement& element) {
        return quillmoth::platform::preparePaste(element, text);
    });
}

PasteAnswer Session::prepareReplacement(const Request& request, const ObjectReference& object,
                                        const std::string& newText) {
    return withText<PasteAnswer>(request, object, [&newText](const TextElement& element) {
        return quillmoth::platform::prepareReplacement(element, newText);
    });
}

AXError Session::checkStillEditable(const Request& request, const ObjectReference& object,
                                    const std::string& before) {
    return withText<AXError>(request, object, [&before](const TextElement& element) {
        if (!takesEdits(element))
            return kAXErrorAttributeUnsupported;
        const auto content = element.content();
        return content && content->text == before ? kAXErrorSuccess : kAXErrorFailure;
    });
}

AXError Session::awaitChange(const Request& request, const ObjectReference& object,
                             const std::string& before) {
    return withText<AXError>(
        request, object, [&before](const TextElement& element) { return awaitOtherText(element, before); });
}

template<class Answer>
Answer Session::perform(const Request& request, const std::function<Answer(Operation&)>& body) {
    GDBusConnection* bus = bus_.connection(request.cancellable);
    if (bus == nullptr)
        return failed<Answer>(kAXErrorAPIDisabled);
    Operation operation(bus, request.cancellable, request.deadline);
    Answer answer = body(operation);
    if (!operation.unresponsive().empty())
        leaveAlone(bus, operation.unresponsive());
    return answer;
}

template<class Answer>
Answer Session::withText(const Request& request, const ObjectReference& object,
                         const std::function<Answer(const TextElement&)>& body) {
    if (unresponsive_->contains(object.name))
        return failed<Answer>(kAXErrorCannotComplete);
    return perform<Answer>(request, [&](Operation& operation) {
        const Toolkit toolkit = applications_.toolkitOf(operation, object.name);
        return body(TextElement(operation, object, toolkit));
    });
}

void Session::onSignal(const std::string& sender, const std::string& path, const std::string& event,
                       GVariant* parameters) {
    if (!event.ends_with(".NameOwnerChanged")) {
        walks_.fruitless.erase(sender);
        return tracker_.onSignal(sender, path, event, parameters);
    }
    const gchar* name = nullptr;
    const gchar* owner = nullptr;
    g_variant_get(parameters, "(&s&s&s)", &name, nullptr, &owner);
    if (*owner != '\0')
        return;
    applications_.forget(name);
    tracker_.forget(name);
    walks_.fruitless.erase(name);
    walks_.found.erase(name);
    unresponsive_->erase(name);
}

void Session::leaveAlone(GDBusConnection* bus, const std::string& name) {
    if (!unresponsive_->insert(name).second)
        return;
    // Owned by the answer's callback.
    auto question = std::make_unique<OpenQuestion>(unresponsive_, name);
    g_dbus_connection_call(bus, name.c_str(), ATSPI_DBUS_PATH_ROOT, ATSPI_DBUS_INTERFACE_ACCESSIBLE,
                           "GetRole", nullptr, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           std::numeric_limits<int>::max(), nullptr, onAnswered, question.release());
}

bool Session::isLeftAlone(Operation& operation, std::int64_t process) {
    return std::any_of(unresponsive_->begin(), unresponsive_->end(), [&](const std::string& name) {
        return applications_.processOf(operation, name) == process;
    });
}

} // namespace quillmoth::platform
