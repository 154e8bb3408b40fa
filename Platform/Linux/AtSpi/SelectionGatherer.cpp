#include "Platform/Linux/AtSpi/SelectionGatherer.h"

#include "Foundation/Limits.h"
#include "Foundation/Log.h"

#include <algorithm>
#include <array>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kTimeLimit{500};

bool runsWithinLine(AtspiRole role) {
    constexpr std::array kInline = {ATSPI_ROLE_LINK,
                                    ATSPI_ROLE_STATIC,
                                    ATSPI_ROLE_TEXT,
                                    ATSPI_ROLE_LABEL,
                                    ATSPI_ROLE_CONTENT_DELETION,
                                    ATSPI_ROLE_CONTENT_INSERTION,
                                    ATSPI_ROLE_IMAGE,
                                    ATSPI_ROLE_MARK,
                                    ATSPI_ROLE_SUBSCRIPT,
                                    ATSPI_ROLE_PUSH_BUTTON,
                                    ATSPI_ROLE_SUPERSCRIPT,
                                    ATSPI_ROLE_ENTRY};
    return std::find(kInline.begin(), kInline.end(), role) != kInline.end();
}

class Gatherer {
public:
    explicit Gatherer(const TextElement& root)
        : operation_(root.operation()), toolkit_(root.toolkit()), end_(Operation::Clock::now() + kTimeLimit) {
    }

    /// What is selected in `object`. Where nothing is, `takeAll` takes the whole of it, since the object
    /// around it has it selected as one character.
    void gather(const ObjectReference& object, bool takeAll, int depth) {
        if (++objects_ > limits::kSelectedElements || depth > limits::kSelectedDepth ||
            Operation::Clock::now() > end_) {
            isPartial_ = true;
            return;
        }
        const TextElement element(operation_, object, toolkit_);
        const std::int64_t selections = element.selectionCount().value_or(0);
        for (std::int64_t index = 0; index < selections && !isFull(); ++index)
            append(element, element.selection(index).value_or(TextRange{}), depth);
        if (selections > 0)
            return;
        if (takeAll)
            append(element, {.start = 0, .end = element.characterCount().value_or(0)}, depth);
        else
            enterAll(element, depth);
    }

    [[nodiscard]] std::string takeText() { return std::move(text_); }

    /// True where not all was looked at.
    [[nodiscard]] bool isPartial() const { return isPartial_; }

private:
    void append(const TextElement& element, TextRange range, int depth) {
        if (range.empty() || isFull())
            return;
        const std::string text = element.text(withinSelectionLimit(range)).value_or("");
        const OffsetUnit unit =
            toolkit_ == Toolkit::qt || toolkit_ == Toolkit::gecko ? OffsetUnit::utf16 : OffsetUnit::codePoint;
        std::int64_t offset = range.start;
        std::size_t start = 0;
        for (std::size_t found = text.find(kEmbeddedObject); found != std::string::npos;
             found = isFull() ? std::string::npos : text.find(kEmbeddedObject, start)) {
            const std::string_view before = std::string_view(text).substr(start, found - start);
            text_.append(before);
            offset += lengthIn(unit, before);
            enter(embeddedAt(element, offset), depth);
            ++offset;
            start = found + kEmbeddedObject.size();
        }
        text_.append(text, start);
    }

    /// What is beyond is cut, whatever it is.
    [[nodiscard]] bool isFull() const { return text_.size() > limits::kSelection; }

    void enterAll(const TextElement& element, int depth) {
        const Variant reply =
            operation_.call(element.object(), ATSPI_DBUS_INTERFACE_HYPERTEXT, "GetNLinks", nullptr, "(i)");
        gint32 links = 0;
        if (reply)
            g_variant_get(reply.get(), "(i)", &links);
        for (gint32 index = 0; index < links && !operation_.isOver() && objects_ < limits::kSelectedElements;
             ++index) {
            const ObjectReference object = linked(element, index);
            const std::size_t before = text_.size();
            startLineFor(object);
            const std::size_t start = text_.size();
            gather(object, false, depth + 1);
            if (text_.size() == start)
                text_.resize(before);
        }
    }

    void enter(const ObjectReference& object, int depth) {
        if (object.isNull())
            return;
        const bool isBlock = startLineFor(object);
        gather(object, true, depth + 1);
        if (isBlock)
            startLine();
    }

    bool startLineFor(const ObjectReference& object) {
        const auto role = roleOf(operation_, object);
        const bool isBlock = role && !runsWithinLine(*role);
        if (isBlock)
            startLine();
        return isBlock;
    }

    void startLine() {
        if (!text_.empty() && text_.back() != '\n')
            text_.push_back('\n');
    }

    ObjectReference embeddedAt(const TextElement& element, std::int64_t offset) {
        const Variant reply =
            operation_.call(element.object(), ATSPI_DBUS_INTERFACE_HYPERTEXT, "GetLinkIndex",
                            g_variant_new("(i)", static_cast<gint32>(offset)), "(i)");
        gint32 index = -1;
        if (reply)
            g_variant_get(reply.get(), "(i)", &index);
        return index < 0 ? ObjectReference{} : linked(element, index);
    }

    ObjectReference linked(const TextElement& element, gint32 index) {
        const Variant link = operation_.call(element.object(), ATSPI_DBUS_INTERFACE_HYPERTEXT, "GetLink",
                                             g_variant_new("(i)", index), "((so))");
        const Variant object = link ? operation_.call(objectIn(link.get()), ATSPI_DBUS_INTERFACE_HYPERLINK,
                                                      "GetObject", g_variant_new("(i)", 0), "((so))")
                                    : nullptr;
        return object ? objectIn(object.get()) : ObjectReference{};
    }

    Operation& operation_;
    Toolkit toolkit_;
    Operation::Clock::time_point end_;
    int objects_ = 0;
    bool isPartial_ = false;
    std::string text_;
};

} // namespace

std::string gatherSelectedText(const TextElement& element) {
    Gatherer gatherer(element);
    gatherer.gather(element.object(), false, 0);
    std::string text = gatherer.takeText();
    if (gatherer.isPartial())
        logLine("the selection spans too many elements, and was not read to its end");
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

} // namespace quillmoth::platform
