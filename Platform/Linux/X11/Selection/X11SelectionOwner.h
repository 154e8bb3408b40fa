#pragma once

#include "Platform/Linux/X11/Selection/X11SelectionConnection.h"
#include "Platform/Linux/X11/Selection/X11SelectionContent.h"

#include <list>

namespace quillmoth::platform {

/// Owns a selection and answers the programs that want what it holds, large contents in pieces (ICCCM 2.0,
/// section 2). The thread of its connection, which hands it all events.
class X11SelectionOwner {
public:
    using Clock = X11SelectionConnection::Clock;

    /// `connection` outlives the object.
    X11SelectionOwner(X11SelectionConnection& connection, xcb_atom_t selection);

    /// Takes the selection over. False where the server did not allow it.
    bool own(SelectionContentRef content);

    /// What is offered now; null where others own the selection.
    [[nodiscard]] const SelectionContentRef& content() const { return content_; }

    void handle(const xcb_generic_event_t& event);

    /// Called when the text has been given to `requestor`; not when it has only asked which forms there
    /// are.
    std::function<void(xcb_window_t requestor)> onDelivered;

    /// Gives the content to the clipboard manager, where there is one, and waits until it has it. Without one
    /// the content ends with this connection.
    bool handOver(Clock::time_point deadline);

private:
    /// A content on its way in pieces.
    struct Transfer {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        SelectionFormat format;
        std::size_t sent = 0;
        Clock::time_point lastProgress;
    };

    void answer(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool deliver(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool deliverSeveral(xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] std::optional<SelectionFormat> formatFor(xcb_atom_t target);
    [[nodiscard]] bool isText(xcb_atom_t target);
    [[nodiscard]] std::optional<SelectionFormat> textAs(xcb_atom_t target) const;
    [[nodiscard]] SelectionFormat targetList();
    void give(xcb_window_t requestor, xcb_atom_t property, SelectionFormat format);
    void sendPiece(xcb_window_t requestor, xcb_atom_t property);
    void store(xcb_window_t requestor, xcb_atom_t property, const SelectionFormat& format, std::size_t offset,
               std::size_t length);

    X11SelectionConnection& connection_;
    xcb_atom_t selection_;
    xcb_timestamp_t since_ = XCB_CURRENT_TIME;
    SelectionContentRef content_;
    std::list<Transfer> transfers_;
};

} // namespace quillmoth::platform
