#pragma once

#include "Platform/Accessibility.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::platform {

/// The answer to a read.
struct FakeAXAnswer {
    AXError error = kAXErrorSuccess;
    AXValue value;
};

/// A scripted element. What is not scripted answers kAXErrorAttributeUnsupported.
class FakeAXUIElement final : public AXUIElement {
public:
    explicit FakeAXUIElement(std::string elementName) : name(std::move(elementName)) {}

    /// Stands for the element in the record of calls.
    std::string name;
    std::map<std::string, FakeAXAnswer, std::less<>> attributes;
    std::map<std::string, FakeAXAnswer, std::less<>> parameterizedAttributes;
    /// The errors of writes; an attribute that is not in it takes any value.
    std::map<std::string, AXError, std::less<>> writeErrors;

    /// Makes a read of `attribute` give `value`.
    void set(const std::string& attribute, AXValue value) {
        attributes[attribute] = {.error = kAXErrorSuccess, .value = std::move(value)};
    }

    void fail(const std::string& attribute, AXError error) {
        attributes[attribute] = {.error = error, .value = {}};
    }
};

class FakeAXTextMarkerRange final : public AXTextMarkerRange {
public:
    explicit FakeAXTextMarkerRange(std::string rangeName) : name(std::move(rangeName)) {}

    std::string name;
};

/// Other applications, as far as a test has scripted them.
class FakeAccessibility final : public Accessibility {
public:
    [[nodiscard]] bool isProcessTrusted() override;
    bool isProcessTrustedWithOptions(bool prompt) override;
    [[nodiscard]] AXUIElementRef createSystemWide() override;
    [[nodiscard]] AXUIElementRef createApplication(std::int64_t processIdentifier) override;
    AXError copyAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                               AXValue& value) override;
    AXError copyParameterizedAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                            const AXValue& parameter, AXValue& value) override;
    AXError setAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                              const AXValue& value) override;

    /// The element for the whole system, "system".
    [[nodiscard]] FakeAXUIElement& systemWide() { return *systemWide_; }

    /// The element of a process, "application 42"; made on first use.
    [[nodiscard]] FakeAXUIElement& application(std::int64_t processIdentifier);

    bool isTrusted = true;
    /// All calls in order, such as "trusted", "trusted with prompt", "application 42",
    /// "copy <element> <attribute>", "copy <element> <attribute> for <parameter>",
    /// "set <element> <attribute> <value>".
    std::vector<std::string> calls;
    /// Runs after a write has been taken.
    std::function<void(const std::string& attribute)> onWrite;

private:
    std::shared_ptr<FakeAXUIElement> systemWide_ = std::make_shared<FakeAXUIElement>("system");
    std::map<std::int64_t, std::shared_ptr<FakeAXUIElement>> applications_;
};

/// How a value stands in the record of calls: texts in quotes, ranges as "{location, length}", elements and
/// marker ranges by their name.
[[nodiscard]] std::string describe(const AXValue& value);

} // namespace quillmoth::platform
