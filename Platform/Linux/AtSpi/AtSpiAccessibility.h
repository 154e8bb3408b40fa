#pragma once

#include "Platform/Accessibility.h"
#include "Platform/Linux/AtSpi/FieldReport.h"
#include "Platform/PasteOutcome.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillmoth::platform {

class Worker;
struct PasteAnswer;
struct TextAnswer;

/// What the accessibility back end asks of the window system and of the program. All are called on the main
/// thread; each may be left empty.
struct AtSpiHooks {
    /// The process of the application in front.
    std::function<std::optional<std::int64_t>()> frontProcess = {};
    /// Until when the application in front may be without its focus, since a window of this program had the
    /// keyboard: until then what has the focus is asked for again.
    std::function<std::chrono::steady_clock::time_point()> focusComesBackBy = {};
    /// The text of the PRIMARY selection where the application in front owns it.
    std::function<std::optional<std::string>()> frontPrimarySelection = {};
    /// Has the application in front paste `text` over what is selected there. An empty text deletes that.
    std::function<PasteOutcome(const std::string& text, std::chrono::steady_clock::time_point deadline)>
        pasteText = {};
    /// What has not been fetched of the latest paste is not to be had any more.
    std::function<void()> withdrawPaste = {};
    /// Whether the user has allowed accessibility to be switched on for the desktop.
    std::function<bool()> hasConsent = {};
    /// Asks the user for that; does not wait for the answer.
    std::function<void()> askForConsent = {};
};

/// Accessibility over AT-SPI 2. All that waits for other applications happens on a thread of its own, so a
/// call keeps the main thread for a second at most, and an application that did not answer in time is passed
/// over at once until it answers again. Where the accessibility bus is gone or accessibility is not enabled
/// on the desktop, reading the focus fails with kAXErrorAPIDisabled; it works again when the bus is back.
/// Main thread.
class AtSpiAccessibility final : public Accessibility {
public:
    explicit AtSpiAccessibility(AtSpiHooks hooks);
    ~AtSpiAccessibility() override;

    /// Connects in the background, so that changes of the focus are noted from now on. Does not wait.
    void start();

    /// Switches accessibility on for the desktop and keeps it on: only with the user's consent.
    bool enableForDesktop();

    /// Whether the accessibility bus answers, enabled or not.
    [[nodiscard]] bool busAnswers();

    /// The process of another application whose window says that it is the active one. None where none does.
    [[nodiscard]] std::optional<std::int64_t> activeProcess();

    /// What can be done with what has the focus in `process`.
    [[nodiscard]] FieldReport reportField(std::int64_t process);

    /// Whether something that is no terminal is known to have the focus in `process`.
    [[nodiscard]] bool hasFieldBesideTerminal(std::int64_t process);

    [[nodiscard]] bool isProcessTrusted() override;
    /// Asks at most once in the life of the object; with consent given already, enables instead.
    bool isProcessTrustedWithOptions(bool prompt) override;

    [[nodiscard]] AXUIElementRef createSystemWide() override;
    [[nodiscard]] AXUIElementRef createApplication(std::int64_t processIdentifier) override;

    AXError copyAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                               AXValue& value) override;
    AXError copyParameterizedAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                            const AXValue& parameter, AXValue& value) override;
    AXError setAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                              const AXValue& value) override;

private:
    struct ObjectElement;

    struct Paste {
        AXUIElementRef element;
        std::chrono::steady_clock::time_point when;
    };

    struct PasteResult {
        AXError error = kAXErrorSuccess;
        /// Nothing was pasted and nothing will be: the text may be changed in another way.
        bool mayEdit = false;
        /// The keys were sent, and the text has not been fetched so far.
        bool isPending = false;
    };

    AXError copyFocusedElement(std::optional<std::int64_t> process, AXValue& value);
    AXError copySelectedText(const AXUIElement& element, AXValue& value);
    AXError copyMarkerRange(const AXUIElement& element, AXValue& value);
    /// Some applications' offsets are not to be relied on; what they put into PRIMARY is.
    void preferPrimary(TextAnswer& answer) const;
    AXError setApplicationFlag(std::int64_t process, std::string_view attribute);
    AXError setText(const AXUIElementRef& element, const std::string& text);
    AXError setSelectedText(const AXUIElementRef& element, const std::string& text);
    PasteResult pasteOver(const AXUIElementRef& element, const PasteAnswer& prepared);
    PasteResult paste(const AXUIElementRef& element, const std::string& text);
    AXError setRange(const AXUIElementRef& element, CFRange range);
    [[nodiscard]] bool isBeingPastedInto(const AXUIElementRef& element) const;

    AtSpiHooks hooks_;
    bool hasAsked_ = false;
    Paste lastPaste_;
    std::unique_ptr<Worker> worker_;
};

} // namespace quillmoth::platform
