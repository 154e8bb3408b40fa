#include "Platform/Linux/X11/Selection/X11SelectionReader.h"

#include "Foundation/Limits.h"
#include "Foundation/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kAnswerLimit{200};
constexpr unsigned kProperties = 8;

/// Requests, and names of things that live in the owner, rather than forms of the content.
constexpr std::array<std::string_view, 12> kNoForms = {
    "TARGETS", "MULTIPLE",        "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION",
    "PIXMAP",  "INSERT_PROPERTY", "BITMAP",    "DRAWABLE",     "WINDOW", "COLORMAP",
};

constexpr std::array<std::string_view, 4> kUnicodeForms = {"UTF8_STRING", "text/plain;charset=utf-8",
                                                           "text/plain;charset=UTF-8", "text/plain"};

bool isTextForm(std::string_view name) {
    return name == "STRING" || name == "TEXT" || name == "COMPOUND_TEXT" || name.starts_with("text/plain");
}

/// Lower comes first: what is dearest to the user is read before time runs out.
int rankOf(std::string_view name) {
    constexpr std::array<std::string_view, 6> kOrder = {
        "text/html", "text/uri-list", "x-special/gnome-copied-files", "image/png", "text/rtf", "image/"};
    const auto* found = std::find_if(kOrder.begin(), kOrder.end(),
                                     [name](std::string_view each) { return name.starts_with(each); });
    return static_cast<int>(found - kOrder.begin());
}

/// Whether a form can be missed where those in `read` are there: another encoding of the same picture, or
/// what only the program itself reads.
bool isDispensable(std::string_view name, bool hasPicture, bool hasText) {
    if (name.starts_with("image/"))
        return hasPicture;
    return hasText && !name.starts_with("text/") && !name.starts_with("x-special/");
}

std::string utf8FromLatin1(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text += byte;
        } else {
            text += static_cast<char>(0xC0U | (code >> 6U));
            text += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return text;
}

bool isType(const xcb_generic_event_t& event, int type) {
    return (event.response_type & 0x7F) == type;
}

} // namespace

std::optional<SelectionFormat> X11SelectionReader::read(xcb_atom_t selection, xcb_atom_t target,
                                                        Clock::time_point deadline) {
    if (!connection_.isOpen() || isStuck_ || target == XCB_ATOM_NONE)
        return std::nullopt;
    const xcb_atom_t property =
        connection_.atom("QUILLMOTH_SELECTION_" + std::to_string(++turn_ % kProperties));
    xcb_delete_property(connection_.get(), window_, property);
    xcb_convert_selection(connection_.get(), window_, selection, target, property, XCB_CURRENT_TIME);
    bool isRefused = false;
    const auto answer = connection_.await(
        [&](const xcb_generic_event_t& event) {
            const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
            const bool isOurs = isType(event, XCB_SELECTION_NOTIFY) && notice.selection == selection &&
                                notice.target == target;
            isRefused = isOurs && notice.property == XCB_ATOM_NONE;
            return isRefused || (isOurs && notice.property == property);
        },
        answerDeadline(deadline));
    isStuck_ = !answer;
    if (!answer || isRefused)
        return std::nullopt;
    auto format = takeProperty(property, target);
    if (format && format->type == connection_.atom("INCR"))
        return pieces(property, *std::move(format), deadline);
    return format;
}

/// ICCCM 2.7.2: each removal of the property asks for the next piece; an empty one is the end.
std::optional<SelectionFormat> X11SelectionReader::pieces(xcb_atom_t property, SelectionFormat announcement,
                                                          Clock::time_point deadline) {
    std::optional<SelectionFormat> whole;
    std::uint32_t size = 0;
    if (announcement.bytes.size() >= sizeof size)
        std::memcpy(&size, announcement.bytes.data(), sizeof size);
    while (connection_.await(
        [this, property](const xcb_generic_event_t& event) {
            const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            return isType(event, XCB_PROPERTY_NOTIFY) && notice.window == window_ &&
                   notice.atom == property && notice.state == XCB_PROPERTY_NEW_VALUE;
        },
        answerDeadline(deadline))) {
        auto piece = takeProperty(property, announcement.target);
        if (!piece)
            return std::nullopt;
        if (piece->bytes.empty())
            return whole ? std::move(whole) : std::move(piece);
        if (whole) {
            whole->bytes += piece->bytes;
        } else {
            whole = std::move(piece);
            whole->bytes.reserve(std::min<std::size_t>(size, limits::kClipboardForm));
        }
        if (whole->bytes.size() > limits::kClipboardForm)
            break;
    }
    isStuck_ = true;
    abandoned_.push_back({window_, property});
    window_ = connection_.makeWindow();
    return std::nullopt;
}

void X11SelectionReader::handle(const xcb_generic_event_t& event) {
    const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    const Abandoned piece{notice.window, notice.atom};
    if (!isType(event, XCB_PROPERTY_NOTIFY) || notice.state != XCB_PROPERTY_NEW_VALUE ||
        std::find(abandoned_.begin(), abandoned_.end(), piece) == abandoned_.end())
        return;
    xcb_delete_property(connection_.get(), piece.window, piece.property);
    xcb_flush(connection_.get());
}

std::optional<SelectionFormat> X11SelectionReader::takeProperty(xcb_atom_t property, xcb_atom_t target) {
    constexpr std::uint32_t kWholeLength = 0x1FFFFFFF;
    const auto cookie =
        xcb_get_property(connection_.get(), 1, window_, property, XCB_ATOM_ANY, 0, kWholeLength);
    const auto reply = owned(xcb_get_property_reply(connection_.get(), cookie, nullptr));
    if (!reply)
        return std::nullopt;
    return SelectionFormat{.target = target,
                           .type = reply->type,
                           .itemBits = reply->format,
                           .bytes = {static_cast<const char*>(xcb_get_property_value(reply.get())),
                                     static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))}};
}

std::optional<std::string> X11SelectionReader::text(xcb_atom_t selection, Clock::time_point deadline) {
    isStuck_ = false;
    return textAmong(targets(selection, deadline), selection, deadline);
}

std::optional<std::string> X11SelectionReader::textAmong(const Targets& offered, xcb_atom_t selection,
                                                         Clock::time_point deadline) {
    // Whoever does not tell its forms is asked for the usual ones.
    const auto mayHave = [&offered](xcb_atom_t target) {
        return offered.empty() || std::find(offered.begin(), offered.end(), target) != offered.end();
    };
    for (const std::string_view name : kUnicodeForms) {
        const xcb_atom_t target = connection_.atom(std::string(name));
        if (!mayHave(target) || (offered.empty() && name != kUnicodeForms.front()))
            continue;
        if (auto format = read(selection, target, deadline); format && format->itemBits == 8)
            return isValidUTF8(format->bytes) ? std::move(format->bytes) : sanitizedUTF8(format->bytes);
    }
    if (!mayHave(XCB_ATOM_STRING))
        return std::nullopt;
    const auto latin = read(selection, XCB_ATOM_STRING, deadline);
    return latin && latin->itemBits == 8 ? std::optional(utf8FromLatin1(latin->bytes)) : std::nullopt;
}

X11SelectionReader::Targets X11SelectionReader::targets(xcb_atom_t selection, Clock::time_point deadline) {
    const auto list = read(selection, connection_.atom("TARGETS"), deadline);
    Targets offered(list && list->itemBits == 32 ? list->bytes.size() / sizeof(xcb_atom_t) : 0);
    if (!offered.empty())
        std::memcpy(offered.data(), list->bytes.data(), offered.size() * sizeof(xcb_atom_t));
    return offered;
}

SelectionContent X11SelectionReader::content(xcb_atom_t selection, Clock::time_point deadline) {
    isStuck_ = false;
    SelectionContent content;
    Targets offered = targets(selection, deadline);
    content.text = textAmong(offered, selection, deadline);
    const bool offersText = std::any_of(offered.begin(), offered.end(), [this](xcb_atom_t target) {
        return isTextForm(connection_.atomName(target)) || connection_.atomName(target) == "UTF8_STRING";
    });
    std::erase_if(offered, [this](xcb_atom_t target) {
        const std::string& name = connection_.atomName(target);
        return name == kUnicodeForms.front() || isTextForm(name) ||
               std::find(kNoForms.begin(), kNoForms.end(), name) != kNoForms.end();
    });
    std::stable_sort(offered.begin(), offered.end(), [this](xcb_atom_t one, xcb_atom_t other) {
        return rankOf(connection_.atomName(one)) < rankOf(connection_.atomName(other));
    });
    content.isComplete = !isStuck_ && (content.text || !offersText);
    bool hasPicture = false;
    for (const xcb_atom_t target : offered) {
        auto format = read(selection, target, deadline);
        const std::string& name = connection_.atomName(target);
        hasPicture = hasPicture || (format && name.starts_with("image/"));
        // A form that its owner refuses was never there.
        if (!format && isStuck_ && !isDispensable(name, hasPicture, content.text.has_value()))
            content.isComplete = false;
        if (format)
            content.others.push_back(std::move(*format));
    }
    return content;
}

X11SelectionReader::Clock::time_point X11SelectionReader::answerDeadline(Clock::time_point deadline) const {
    return std::min(deadline, Clock::now() + kAnswerLimit);
}

} // namespace quillmoth::platform
