#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"

#include "Foundation/Text.h"
#include "Platform/Linux/AtSpi/Worker.h"

#include <unistd.h>

#include <thread>
#include <utility>

namespace quillmoth::platform {

/// An object of an application's accessible tree.
struct AtSpiAccessibility::ObjectElement final : AXUIElement {
    ObjectElement(ObjectReference reference, std::int64_t identifier)
        : object(std::move(reference)), process(identifier) {}

    ObjectReference object;
    std::int64_t process;
};

namespace {

struct SystemWideElement final : AXUIElement {};

/// Also stands for what has the focus in a process that does not tell.
struct ApplicationElement final : AXUIElement {
    explicit ApplicationElement(std::int64_t identifier) : process(identifier) {}

    std::int64_t process;
};

/// Holds the text itself: gathering it costs as much as finding out whether there is any.
struct GatheredRange final : AXTextMarkerRange {
    explicit GatheredRange(std::string gathered) : text(std::move(gathered)) {}

    std::string text;
};

constexpr std::chrono::milliseconds kPasteLimit{600};
constexpr std::chrono::milliseconds kFocusStep{5};
// A paste may still arrive behind that; moving the caret before would misplace it.
constexpr std::chrono::seconds kLatePasteTime{1};

template<class Target>
const Target* as(const AXUIElementRef& element) {
    return dynamic_cast<const Target*>(element.get());
}

AXError errorOf(PasteOutcome outcome) {
    switch (outcome) {
    case PasteOutcome::fetched:
        return kAXErrorSuccess;
    case PasteOutcome::terminal:
        return kAXErrorActionUnsupported;
    case PasteOutcome::notFetched:
    case PasteOutcome::takenBack:
    case PasteOutcome::impossible:
        break;
    }
    return kAXErrorFailure;
}

AXError store(std::optional<TextAnswer> answer, AXValue& value) {
    if (!answer)
        return kAXErrorCannotComplete;
    if (answer->error == kAXErrorSuccess)
        value = std::move(answer->text);
    return answer->error;
}

AXError store(const std::optional<RangeAnswer>& answer, AXValue& value) {
    if (!answer)
        return kAXErrorCannotComplete;
    if (answer->error == kAXErrorSuccess)
        value = answer->range;
    return answer->error;
}

AXError storeMarkerRange(TextAnswer answer, AXValue& value) {
    if (answer.error == kAXErrorSuccess)
        value = AXTextMarkerRangeRef(std::make_shared<const GatheredRange>(std::move(answer.text)));
    return answer.error;
}

} // namespace

AtSpiAccessibility::AtSpiAccessibility(AtSpiHooks hooks)
    : hooks_(std::move(hooks)), worker_(std::make_unique<Worker>()) {}

AtSpiAccessibility::~AtSpiAccessibility() = default;

void AtSpiAccessibility::start() {
    worker_->start();
}

bool AtSpiAccessibility::enableForDesktop() {
    return worker_
        ->ask<bool>([](Session& session, const Request& request) { return session.enable(request); })
        .value_or(false);
}

bool AtSpiAccessibility::busAnswers() {
    return worker_
        ->ask<bool>([](Session& session, const Request& request) { return session.answers(request); })
        .value_or(false);
}

std::optional<std::int64_t> AtSpiAccessibility::activeProcess() {
    return worker_
        ->ask<std::optional<std::int64_t>>(
            [](Session& session, const Request& request) { return session.activeProcess(request, getpid()); })
        .value_or(std::nullopt);
}

FieldReport AtSpiAccessibility::reportField(std::int64_t process) {
    if (process == getpid())
        return {};
    return worker_
        ->ask<FieldReport>([process](Session& session, const Request& request) {
            session.wake(request, process);
            return session.report(request, process);
        })
        .value_or(FieldReport{.isHung = true});
}

bool AtSpiAccessibility::hasFieldBesideTerminal(std::int64_t process) {
    const FieldReport field = reportField(process);
    return field.hasFocus && !field.isTerminal;
}

bool AtSpiAccessibility::isProcessTrusted() {
    return worker_
        ->ask<bool>([](Session& session, const Request& request) { return session.isTrusted(request); })
        .value_or(false);
}

bool AtSpiAccessibility::isProcessTrustedWithOptions(bool prompt) {
    if (isProcessTrusted())
        return true;
    if (!prompt)
        return false;
    if (hooks_.hasConsent && hooks_.hasConsent())
        return enableForDesktop() && isProcessTrusted();
    if (hooks_.askForConsent && !std::exchange(hasAsked_, true))
        hooks_.askForConsent();
    return false;
}

AXUIElementRef AtSpiAccessibility::createSystemWide() {
    return std::make_shared<const SystemWideElement>();
}

AXUIElementRef AtSpiAccessibility::createApplication(std::int64_t processIdentifier) {
    return std::make_shared<const ApplicationElement>(processIdentifier);
}

AXError AtSpiAccessibility::copyAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                               AXValue& value) {
    if (!element)
        return kAXErrorInvalidUIElement;
    if (attribute == "AXFocusedUIElement") {
        if (const auto* application = as<ApplicationElement>(element))
            return copyFocusedElement(application->process, value);
        const bool isSystemWide = as<SystemWideElement>(element) != nullptr && hooks_.frontProcess;
        return isSystemWide ? copyFocusedElement(hooks_.frontProcess(), value) : kAXErrorAttributeUnsupported;
    }
    if (attribute == "AXSelectedText")
        return copySelectedText(*element, value);
    const auto* target = as<ObjectElement>(element);
    if (target == nullptr)
        return kAXErrorAttributeUnsupported;
    const ObjectReference object = target->object;
    if (attribute == "AXValue")
        return store(worker_->ask<TextAnswer>([object](Session& session, const Request& request) {
            return session.value(request, object);
        }),
                     value);
    if (attribute == "AXSelectedTextRange")
        return store(worker_->ask<RangeAnswer>([object](Session& session, const Request& request) {
            return session.selectedRange(request, object);
        }),
                     value);
    if (attribute == "AXSelectedTextMarkerRange")
        return copyMarkerRange(*element, value);
    return kAXErrorAttributeUnsupported;
}

AXError AtSpiAccessibility::copyParameterizedAttributeValue(const AXUIElementRef& element,
                                                            std::string_view attribute,
                                                            const AXValue& parameter, AXValue& value) {
    if (!element)
        return kAXErrorInvalidUIElement;
    const auto* marker = std::get_if<AXTextMarkerRangeRef>(&parameter);
    const auto* range = marker != nullptr ? dynamic_cast<const GatheredRange*>(marker->get()) : nullptr;
    if (attribute != "AXAttributedStringForTextMarkerRange" || range == nullptr)
        return kAXErrorAttributeUnsupported;
    value = range->text;
    return kAXErrorSuccess;
}

AXError AtSpiAccessibility::setAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                              const AXValue& value) {
    if (!element)
        return kAXErrorInvalidUIElement;
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr && attribute == "AXSelectedText" && as<SystemWideElement>(element) == nullptr)
        return setSelectedText(element, *text);
    if (const auto* application = as<ApplicationElement>(element)) {
        const auto* flag = std::get_if<bool>(&value);
        // What these switch on is never switched off again.
        return flag != nullptr && *flag ? setApplicationFlag(application->process, attribute)
                                        : kAXErrorAttributeUnsupported;
    }
    if (as<ObjectElement>(element) == nullptr)
        return kAXErrorAttributeUnsupported;
    if (text != nullptr && attribute == "AXValue")
        return setText(element, *text);
    if (const auto* range = std::get_if<CFRange>(&value);
        range != nullptr && attribute == "AXSelectedTextRange")
        return setRange(element, *range);
    return kAXErrorAttributeUnsupported;
}

AXError AtSpiAccessibility::copyFocusedElement(std::optional<std::int64_t> process, AXValue& value) {
    // A question to ourselves would wait for the thread that asks.
    if (!process || *process == getpid())
        return kAXErrorNoValue;
    const auto ask = [&] {
        return worker_->ask<FocusAnswer>([process = *process](Session& session, const Request& request) {
            return session.focusedElement(request, process);
        });
    };
    auto answer = ask();
    const auto comesBackBy =
        hooks_.focusComesBackBy ? hooks_.focusComesBackBy() : std::chrono::steady_clock::time_point();
    while (answer && answer->error == kAXErrorNoValue && std::chrono::steady_clock::now() < comesBackBy) {
        // What tells of it is handled by the other thread.
        std::this_thread::sleep_for(kFocusStep);
        answer = ask();
    }
    if (!answer)
        return kAXErrorCannotComplete;
    if (answer->error == kAXErrorSuccess)
        value = AXUIElementRef(std::make_shared<const ObjectElement>(answer->object, *process));
    if (answer->error != kAXErrorNoValue)
        return answer->error;
    value = AXUIElementRef(std::make_shared<const ApplicationElement>(*process));
    return kAXErrorSuccess;
}

AXError AtSpiAccessibility::copySelectedText(const AXUIElement& element, AXValue& value) {
    if (dynamic_cast<const ApplicationElement*>(&element) != nullptr)
        return kAXErrorSuccess;
    const auto* target = dynamic_cast<const ObjectElement*>(&element);
    if (target == nullptr)
        return kAXErrorAttributeUnsupported;
    auto selected =
        worker_->ask<SelectedTextAnswer>([object = target->object](Session& session, const Request& request) {
            return session.selectedText(request, object);
        });
    if (!selected)
        return kAXErrorCannotComplete;
    TextAnswer& answer = selected->answer;
    if (selected->isDoubtful)
        preferPrimary(answer);
    if (answer.error == kAXErrorSuccess && answer.text.empty() && selected->isDoubtful)
        return kAXErrorSuccess;
    return store(std::move(answer), value);
}

AXError AtSpiAccessibility::copyMarkerRange(const AXUIElement& element, AXValue& value) {
    const auto* target = dynamic_cast<const ObjectElement*>(&element);
    if (target == nullptr)
        return kAXErrorAttributeUnsupported;
    auto gathered =
        worker_->ask<SelectedTextAnswer>([object = target->object](Session& session, const Request& request) {
            return session.gatheredText(request, object);
        });
    if (!gathered)
        return kAXErrorCannotComplete;
    if (gathered->isDoubtful)
        preferPrimary(gathered->answer);
    return storeMarkerRange(std::move(gathered->answer), value);
}

void AtSpiAccessibility::preferPrimary(TextAnswer& answer) const {
    if (answer.error != kAXErrorSuccess || answer.text.empty() || !hooks_.frontPrimarySelection)
        return;
    auto primary = hooks_.frontPrimarySelection();
    if (primary && !primary->empty())
        answer.text = std::move(*primary);
}

AXError AtSpiAccessibility::setApplicationFlag(std::int64_t process, std::string_view attribute) {
    if (attribute == "AXManualAccessibility") {
        if (process == getpid())
            return kAXErrorCannotComplete;
        return worker_
            ->ask<AXError>([process](Session& session, const Request& request) {
                return session.wake(request, process);
            })
            .value_or(kAXErrorCannotComplete);
    }
    if (attribute != "AXEnhancedUserInterface")
        return kAXErrorAttributeUnsupported;
    const bool mayEnable = hooks_.hasConsent && hooks_.hasConsent();
    return mayEnable && (isProcessTrusted() || enableForDesktop()) ? kAXErrorSuccess : kAXErrorAPIDisabled;
}

/// A paste comes first, for it is one step to the application's own undo.
AXError AtSpiAccessibility::setText(const AXUIElementRef& element, const std::string& text) {
    const ObjectReference object = as<ObjectElement>(element)->object;
    const std::string newText = sanitizedUTF8(text);
    PasteResult paste{.error = kAXErrorAttributeUnsupported, .mayEdit = true};
    if (hooks_.pasteText) {
        const auto prepared =
            worker_->ask<PasteAnswer>([object, newText](Session& session, const Request& request) {
                return session.prepareReplacement(request, object, newText);
            });
        if (!prepared)
            return kAXErrorCannotComplete;
        if (prepared->error == kAXErrorSuccess && prepared->before == newText)
            return kAXErrorSuccess;
        if (prepared->error == kAXErrorSuccess)
            paste = pasteOver(element, *prepared);
        else if (prepared->error != kAXErrorAttributeUnsupported)
            return prepared->error;
    }
    if (!paste.mayEdit)
        return paste.error;
    const AXError error = worker_
                              ->ask<AXError>([object, newText](Session& session, const Request& request) {
                                  return session.setValue(request, object, newText);
                              })
                              .value_or(kAXErrorCannotComplete);
    return error == kAXErrorAttributeUnsupported ? paste.error : error;
}

AXError AtSpiAccessibility::setSelectedText(const AXUIElementRef& element, const std::string& text) {
    if (!hooks_.pasteText)
        return kAXErrorAttributeUnsupported;
    const auto* target = as<ObjectElement>(element);
    if (target == nullptr)
        return text.empty() ? kAXErrorAttributeUnsupported : paste(element, text).error;
    const auto prepared = worker_->ask<PasteAnswer>(
        [object = target->object, text = sanitizedUTF8(text)](Session& session, const Request& request) {
            return session.preparePaste(request, object, text);
        });
    if (!prepared)
        return kAXErrorCannotComplete;
    return prepared->error == kAXErrorSuccess ? pasteOver(element, *prepared).error : prepared->error;
}

AtSpiAccessibility::PasteResult AtSpiAccessibility::pasteOver(const AXUIElementRef& element,
                                                              const PasteAnswer& prepared) {
    // Deleting is proved by the text alone.
    if (prepared.replacement.empty() && !prepared.before)
        return {.error = kAXErrorAttributeUnsupported, .mayEdit = true};
    const PasteResult result = paste(element, prepared.replacement);
    if (!prepared.before)
        return result;
    const auto ask =
        [&](AXError (Session::*question)(const Request&, const ObjectReference&, const std::string&)) {
            return worker_
                ->ask<AXError>([object = as<ObjectElement>(element)->object, before = *prepared.before,
                                question](Session& session, const Request& request) {
                    return (session.*question)(request, object, before);
                })
                .value_or(kAXErrorCannotComplete);
        };
    if (result.error == kAXErrorSuccess)
        return {.error = ask(&Session::awaitChange)};
    // A program that answers has read the keys, and means something else by them.
    if (!result.isPending || !hooks_.withdrawPaste || ask(&Session::checkStillEditable) != kAXErrorSuccess)
        return result;
    hooks_.withdrawPaste();
    lastPaste_ = {};
    return {.error = kAXErrorFailure, .mayEdit = true};
}

AtSpiAccessibility::PasteResult AtSpiAccessibility::paste(const AXUIElementRef& element,
                                                          const std::string& text) {
    const PasteOutcome outcome = hooks_.pasteText(text, std::chrono::steady_clock::now() + kPasteLimit);
    const bool isPending = outcome == PasteOutcome::notFetched;
    if (isPending)
        lastPaste_ = {.element = element, .when = std::chrono::steady_clock::now()};
    return {
        .error = errorOf(outcome), .mayEdit = outcome == PasteOutcome::impossible, .isPending = isPending};
}

AXError AtSpiAccessibility::setRange(const AXUIElementRef& element, CFRange range) {
    if (isBeingPastedInto(element))
        return kAXErrorSuccess;
    return worker_
        ->ask<AXError>(
            [object = as<ObjectElement>(element)->object, range](Session& session, const Request& request) {
                return session.setSelectedRange(request, object, range);
            })
        .value_or(kAXErrorCannotComplete);
}

bool AtSpiAccessibility::isBeingPastedInto(const AXUIElementRef& element) const {
    const auto* pasted = as<ObjectElement>(lastPaste_.element);
    return pasted != nullptr && pasted->object == as<ObjectElement>(element)->object &&
           std::chrono::steady_clock::now() - lastPaste_.when < kLatePasteTime;
}

} // namespace quillmoth::platform
