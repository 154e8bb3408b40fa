#include "Platform/Fake/FakeAccessibility.h"

#include <type_traits>
#include <utility>

namespace quillmoth::platform {

namespace {

const FakeAXUIElement& fake(const AXUIElementRef& element) {
    return dynamic_cast<const FakeAXUIElement&>(*element);
}

AXError answer(const std::map<std::string, FakeAXAnswer, std::less<>>& answers, std::string_view attribute,
               AXValue& value) {
    const auto found = answers.find(attribute);
    if (found == answers.end())
        return kAXErrorAttributeUnsupported;
    if (found->second.error == kAXErrorSuccess)
        value = found->second.value;
    return found->second.error;
}

std::string describeRange(const CFRange& range) {
    return "{" + std::to_string(range.location) + ", " + std::to_string(range.length) + "}";
}

} // namespace

std::string describe(const AXValue& value) {
    return std::visit(
        [](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::monostate>)
                return "nothing";
            else if constexpr (std::is_same_v<Held, std::string>)
                return "\"" + held + "\"";
            else if constexpr (std::is_same_v<Held, bool>)
                return held ? "true" : "false";
            else if constexpr (std::is_same_v<Held, double>)
                return std::to_string(held);
            else if constexpr (std::is_same_v<Held, CFRange>)
                return describeRange(held);
            else if constexpr (std::is_same_v<Held, AXUIElementRef>)
                return held ? fake(held).name : "no element";
            else
                return held ? dynamic_cast<const FakeAXTextMarkerRange&>(*held).name : "no range";
        },
        value);
}

bool FakeAccessibility::isProcessTrusted() {
    calls.emplace_back("trusted");
    return isTrusted;
}

bool FakeAccessibility::isProcessTrustedWithOptions(bool prompt) {
    calls.emplace_back(prompt ? "trusted with prompt" : "trusted without prompt");
    return isTrusted;
}

AXUIElementRef FakeAccessibility::createSystemWide() {
    calls.emplace_back("system");
    return systemWide_;
}

AXUIElementRef FakeAccessibility::createApplication(std::int64_t processIdentifier) {
    calls.push_back(application(processIdentifier).name);
    return applications_.at(processIdentifier);
}

FakeAXUIElement& FakeAccessibility::application(std::int64_t processIdentifier) {
    auto& element = applications_[processIdentifier];
    if (!element)
        element = std::make_shared<FakeAXUIElement>("application " + std::to_string(processIdentifier));
    return *element;
}

AXError FakeAccessibility::copyAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                              AXValue& value) {
    calls.push_back("copy " + fake(element).name + " " + std::string(attribute));
    return answer(fake(element).attributes, attribute, value);
}

AXError FakeAccessibility::copyParameterizedAttributeValue(const AXUIElementRef& element,
                                                           std::string_view attribute,
                                                           const AXValue& parameter, AXValue& value) {
    calls.push_back("copy " + fake(element).name + " " + std::string(attribute) + " for " +
                    describe(parameter));
    return answer(fake(element).parameterizedAttributes, attribute, value);
}

AXError FakeAccessibility::setAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                             const AXValue& value) {
    const FakeAXUIElement& target = fake(element);
    calls.push_back("set " + target.name + " " + std::string(attribute) + " " + describe(value));
    const auto error = target.writeErrors.find(attribute);
    if (error != target.writeErrors.end() && error->second != kAXErrorSuccess)
        return error->second;
    // Callers hold elements as const; what they show changes all the same.
    const_cast<FakeAXUIElement&>(target).set(std::string(attribute), value);
    if (onWrite)
        onWrite(std::string(attribute));
    return kAXErrorSuccess;
}

} // namespace quillmoth::platform
