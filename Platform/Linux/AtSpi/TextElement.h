#pragma once

#include "Platform/Linux/AtSpi/Applications.h"
#include "Platform/Linux/AtSpi/TextOffsets.h"

#include <atspi/atspi-constants.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

/// U+FFFC, which stands in a text for an object within it.
inline constexpr std::string_view kEmbeddedObject = "\uFFFC";

/// The set of an accessible object's states.
class States {
public:
    States() = default;

    States(std::uint32_t low, std::uint32_t high) : bits_((std::uint64_t{high} << 32U) | low) {}

    [[nodiscard]] bool has(AtspiStateType state) const {
        return ((bits_ >> static_cast<unsigned>(state)) & 1U) != 0;
    }

private:
    std::uint64_t bits_ = 0;
};

[[nodiscard]] std::optional<States> statesOf(Operation& operation, const ObjectReference& object);
[[nodiscard]] std::optional<AtspiRole> roleOf(Operation& operation, const ObjectReference& object);

/// Which of the interfaces that matter here an object offers.
struct Interfaces {
    bool text = false;
    bool editableText = false;
    bool hypertext = false;
};

[[nodiscard]] std::optional<Interfaces> interfacesOf(Operation& operation, const ObjectReference& object);

/// Whether the object has a text to read or write: the cells of a list or a table have one too, which is what
/// they are called.
[[nodiscard]] bool hasOwnText(const Interfaces& interfaces, AtspiRole role, States states);

/// The text of an accessible object. Offsets are in the application's own units; text is UTF-8 without
/// Gecko's fillers. Where a call fails the operation knows why. The accessibility thread.
class TextElement {
public:
    TextElement(Operation& operation, ObjectReference object, Toolkit toolkit);

    [[nodiscard]] const ObjectReference& object() const { return object_; }

    [[nodiscard]] Operation& operation() const { return operation_; }

    [[nodiscard]] Toolkit toolkit() const { return toolkit_; }

    [[nodiscard]] std::optional<std::int64_t> characterCount() const;
    /// Negative where the element has no caret.
    [[nodiscard]] std::optional<std::int64_t> caret() const;
    /// At most 256, whatever the application says.
    [[nodiscard]] std::optional<std::int64_t> selectionCount() const;
    [[nodiscard]] std::optional<TextRange> selection(std::int64_t index) const;
    [[nodiscard]] std::optional<std::string> text(TextRange range) const;

    struct Content {
        std::string text;
        OffsetUnit unit = OffsetUnit::codePoint;
    };

    /// The whole text and the unit in which its application counts. None also where an application that is
    /// not known tells a text and a length that do not belong together.
    [[nodiscard]] std::optional<Content> content() const;

    bool setCaret(std::int64_t offset) const;
    /// Makes `range` the only selection.
    bool select(TextRange range) const;
    bool insert(std::int64_t offset, const std::string& text) const;
    bool remove(TextRange range) const;

private:
    [[nodiscard]] std::optional<std::int64_t> number(const char* property) const;
    bool command(const char* interface, const char* method, GVariant* parameters) const;

    Operation& operation_;
    ObjectReference object_;
    Toolkit toolkit_;
};

} // namespace quillmoth::platform
