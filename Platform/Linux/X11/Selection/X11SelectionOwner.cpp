#include "Platform/Linux/X11/Selection/X11SelectionOwner.h"

#include "Foundation/Limits.h"

#include "Platform/Linux/X11/Server/X11Windows.h"

#include "Foundation/Text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace quillmoth::platform {

namespace {

constexpr std::size_t kPieceSize = std::size_t{256} << 10U;
constexpr std::chrono::seconds kTransferLimit{10};
constexpr std::array<const char*, 4> kUnicodeTargets = {"UTF8_STRING", "text/plain;charset=utf-8",
                                                        "text/plain", "TEXT"};

SelectionFormat formatOf(xcb_atom_t target, xcb_atom_t type, const std::vector<std::uint32_t>& items) {
    SelectionFormat format{.target = target, .type = type, .itemBits = 32, .bytes = {}};
    format.bytes.resize(items.size() * sizeof(std::uint32_t));
    std::memcpy(format.bytes.data(), items.data(), format.bytes.size());
    return format;
}

/// None where the text does not fit into Latin-1, which the target STRING means.
std::optional<std::string> latin1From(const std::string& text) {
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto code = static_cast<unsigned char>(text[index]);
        if (code < 0x80) {
            bytes += text[index];
        } else if ((code == 0xC2 || code == 0xC3) && index + 1 < text.size()) {
            const auto next = static_cast<unsigned char>(text[++index]);
            bytes += static_cast<char>(((code & 0x03U) << 6U) | (next & 0x3FU));
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

} // namespace

X11SelectionOwner::X11SelectionOwner(X11SelectionConnection& connection, xcb_atom_t selection)
    : connection_(connection), selection_(selection) {}

bool X11SelectionOwner::own(SelectionContentRef content) {
    auto* server = connection_.get();
    since_ = connection_.serverTime();
    xcb_set_selection_owner(server, connection_.window(), selection_, since_);
    const bool isOwner = selectionOwner(server, selection_) == connection_.window();
    content_ = isOwner ? std::move(content) : nullptr;
    return isOwner;
}

void X11SelectionOwner::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
    case XCB_SELECTION_REQUEST:
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        break;
    case XCB_SELECTION_CLEAR:
        if (reinterpret_cast<const xcb_selection_clear_event_t&>(event).selection == selection_)
            content_.reset();
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notice.state == XCB_PROPERTY_DELETE && notice.window != connection_.window())
            sendPiece(notice.window, notice.atom);
        break;
    }
    default:
        break;
    }
}

void X11SelectionOwner::answer(const xcb_selection_request_event_t& request) {
    // A client of the first protocol names no property; the target's name serves then.
    const xcb_atom_t property = request.property != XCB_ATOM_NONE ? request.property : request.target;
    bool isDone = false;
    if (content_ && request.selection == selection_) {
        isDone = request.target == connection_.atom("MULTIPLE")
                     ? deliverSeveral(request.requestor, property)
                     : deliver(request.requestor, request.target, property);
    }
    xcb_selection_notify_event_t notice = {};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = isDone ? property : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    std::array<char, 32> event = {};
    std::memcpy(event.data(), &notice, sizeof notice);
    xcb_send_event(connection_.get(), 0, request.requestor, 0, event.data());
    xcb_flush(connection_.get());
}

bool X11SelectionOwner::deliver(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    auto format = formatFor(target);
    if (!format)
        return false;
    const bool isGivenText = isText(target);
    give(requestor, property, std::move(*format));
    if (isGivenText && onDelivered)
        onDelivered(requestor);
    return true;
}

/// ICCCM 2.6.2: the property holds pairs of target and property; a target that is refused gets "none".
bool X11SelectionOwner::deliverSeveral(xcb_window_t requestor, xcb_atom_t property) {
    auto* server = connection_.get();
    const auto cookie =
        xcb_get_property(server, 0, requestor, property, XCB_ATOM_ANY, 0, 2 * limits::kClipboardPairs);
    const auto reply = owned(xcb_get_property_reply(server, cookie, nullptr));
    if (!reply || reply->format != 32)
        return false;
    const auto* items = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    std::vector<xcb_atom_t> pairs(items, items + reply->value_len);
    for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
        if (!deliver(requestor, pairs[index], pairs[index + 1]))
            pairs[index + 1] = XCB_ATOM_NONE;
    }
    const SelectionFormat list = formatOf(XCB_ATOM_NONE, connection_.atom("ATOM_PAIR"), pairs);
    store(requestor, property, list, 0, list.bytes.size());
    return true;
}

std::optional<SelectionFormat> X11SelectionOwner::formatFor(xcb_atom_t target) {
    if (target == connection_.atom("TARGETS"))
        return targetList();
    if (target == connection_.atom("TIMESTAMP"))
        return formatOf(target, XCB_ATOM_INTEGER, {since_});
    for (const SelectionFormat& format : content_->others) {
        if (format.target == target)
            return format;
    }
    if (!content_->text)
        return std::nullopt;
    if (target == XCB_ATOM_STRING)
        return textAs(target);
    const xcb_atom_t type = target == connection_.atom("TEXT") ? connection_.atom("UTF8_STRING") : target;
    return isText(target) ? std::optional(SelectionFormat{
                                .target = target, .type = type, .itemBits = 8, .bytes = *content_->text})
                          : std::nullopt;
}

bool X11SelectionOwner::isText(xcb_atom_t target) {
    return target == XCB_ATOM_STRING ||
           std::any_of(kUnicodeTargets.begin(), kUnicodeTargets.end(),
                       [&](const char* name) { return connection_.atom(name) == target; });
}

std::optional<SelectionFormat> X11SelectionOwner::textAs(xcb_atom_t target) const {
    auto bytes = latin1From(*content_->text);
    return bytes ? std::optional(SelectionFormat{
                       .target = target, .type = XCB_ATOM_STRING, .itemBits = 8, .bytes = std::move(*bytes)})
                 : std::nullopt;
}

SelectionFormat X11SelectionOwner::targetList() {
    std::vector<xcb_atom_t> list = {connection_.atom("TARGETS"), connection_.atom("TIMESTAMP"),
                                    connection_.atom("MULTIPLE")};
    if (content_->text) {
        for (const char* name : kUnicodeTargets)
            list.push_back(connection_.atom(name));
        if (textAs(XCB_ATOM_STRING))
            list.push_back(XCB_ATOM_STRING);
    }
    for (const SelectionFormat& format : content_->others)
        list.push_back(format.target);
    return formatOf(connection_.atom("TARGETS"), XCB_ATOM_ATOM, list);
}

void X11SelectionOwner::give(xcb_window_t requestor, xcb_atom_t property, SelectionFormat format) {
    if (format.bytes.size() <= kPieceSize) {
        store(requestor, property, format, 0, format.bytes.size());
        return;
    }
    // ICCCM 2.7.2: the receiver starts by removing a property that tells the least size.
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_.get(), requestor, XCB_CW_EVENT_MASK, &events);
    const auto size = static_cast<std::uint32_t>(std::min<std::size_t>(format.bytes.size(), UINT32_MAX));
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property,
                        connection_.atom("INCR"), 32, 1, &size);
    const auto now = Clock::now();
    transfers_.remove_if([now](const Transfer& each) { return now - each.lastProgress > kTransferLimit; });
    transfers_.push_back({requestor, property, std::move(format), 0, now});
}

void X11SelectionOwner::sendPiece(xcb_window_t requestor, xcb_atom_t property) {
    const auto transfer = std::find_if(transfers_.begin(), transfers_.end(), [&](const Transfer& each) {
        return each.requestor == requestor && each.property == property;
    });
    if (transfer == transfers_.end())
        return;
    const std::size_t length = std::min(kPieceSize, transfer->format.bytes.size() - transfer->sent);
    store(requestor, property, transfer->format, transfer->sent, length);
    xcb_flush(connection_.get());
    transfer->sent += length;
    transfer->lastProgress = Clock::now();
    if (length == 0)
        transfers_.erase(transfer);
}

void X11SelectionOwner::store(xcb_window_t requestor, xcb_atom_t property, const SelectionFormat& format,
                              std::size_t offset, std::size_t length) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, format.type,
                        format.itemBits, static_cast<std::uint32_t>(length / (format.itemBits / 8U)),
                        format.bytes.data() + offset);
}

/// The freedesktop clipboard manager specification: asked to save the targets, the manager fetches them.
bool X11SelectionOwner::handOver(Clock::time_point deadline) {
    auto* server = connection_.get();
    const xcb_atom_t manager = connection_.atom("CLIPBOARD_MANAGER");
    if (!content_ || selectionOwner(server, manager) == XCB_WINDOW_NONE)
        return false;
    xcb_convert_selection(server, connection_.window(), manager, connection_.atom("SAVE_TARGETS"),
                          connection_.atom("QUILLMOTH_SAVED"), since_);
    const auto answer = connection_.await(
        [manager](const xcb_generic_event_t& event) {
            return (event.response_type & 0x7F) == XCB_SELECTION_NOTIFY &&
                   reinterpret_cast<const xcb_selection_notify_event_t&>(event).selection == manager;
        },
        deadline);
    return answer && reinterpret_cast<const xcb_selection_notify_event_t&>(*answer).property != XCB_ATOM_NONE;
}

} // namespace quillmoth::platform
