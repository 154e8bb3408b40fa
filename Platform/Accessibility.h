#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace quillmoth::platform {

/// 0 is success.
using AXError = std::int32_t;
constexpr AXError kAXErrorSuccess = 0;
constexpr AXError kAXErrorFailure = -25200;
constexpr AXError kAXErrorInvalidUIElement = -25202;
constexpr AXError kAXErrorCannotComplete = -25204;
constexpr AXError kAXErrorAttributeUnsupported = -25205;
constexpr AXError kAXErrorActionUnsupported = -25206;
constexpr AXError kAXErrorAPIDisabled = -25211;
constexpr AXError kAXErrorNoValue = -25212;

/// A range in UTF-16 code units.
struct CFRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    friend bool operator==(const CFRange&, const CFRange&) = default;
};

/// A thing on the screen, or the system or an application as a whole; made and understood by the back end.
class AXUIElement {
public:
    virtual ~AXUIElement() = default;
};

/// A stretch of text in an element's own terms; opaque.
class AXTextMarkerRange {
public:
    virtual ~AXTextMarkerRange() = default;
};

using AXUIElementRef = std::shared_ptr<const AXUIElement>;
using AXTextMarkerRangeRef = std::shared_ptr<const AXTextMarkerRange>;

/// The value of an attribute; monostate is no value. Texts of attributed strings are plain here.
using AXValue =
    std::variant<std::monostate, std::string, bool, double, CFRange, AXUIElementRef, AXTextMarkerRangeRef>;

/// Reads and writes what other applications show. Main thread; each call may wait for the other application,
/// for a second at most, and then fails with kAXErrorCannotComplete.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    [[nodiscard]] virtual bool isProcessTrusted() = 0;

    /// The same; with `prompt` the user is asked where the answer is false. Does not wait for the user.
    virtual bool isProcessTrustedWithOptions(bool prompt) = 0;

    [[nodiscard]] virtual AXUIElementRef createSystemWide() = 0;
    [[nodiscard]] virtual AXUIElementRef createApplication(std::int64_t processIdentifier) = 0;

    /// `value` is written on success only. "AXSelectedText" succeeds without a value where nothing is known
    /// to be selected and that is not to be relied on.
    virtual AXError copyAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                       AXValue& value) = 0;
    virtual AXError copyParameterizedAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                                    const AXValue& parameter, AXValue& value) = 0;

    /// Writing a text succeeds only once it is seen to have arrived. "AXValue" changes the element's text;
    /// "AXSelectedText" pastes over what is selected, also into an application as a whole. What fails with
    ///     kAXErrorAttributeUnsupported  cannot be done, and nothing was changed;
    ///     kAXErrorActionUnsupported     is not done, for it is a terminal;
    ///     kAXErrorNoValue               is not done, for it is a password field;
    ///     kAXErrorCannotComplete        was not answered in time and may still arrive;
    ///     kAXErrorFailure               was tried, and has not arrived.
    virtual AXError setAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                      const AXValue& value) = 0;
};

} // namespace quillmoth::platform
