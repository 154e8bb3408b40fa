#pragma once

#include "Platform/Linux/X11/Selection/X11SelectionConnection.h"
#include "Platform/Linux/X11/Selection/X11SelectionContent.h"

namespace quillmoth::platform {

/// Asks the owner of a selection for what it holds. An owner that does not answer for a fifth of a second, or
/// that would take beyond the deadline, is given up. The thread of its connection.
class X11SelectionReader {
public:
    using Clock = X11SelectionConnection::Clock;

    /// `connection` outlives the object.
    explicit X11SelectionReader(X11SelectionConnection& connection)
        : connection_(connection), window_(connection.window()) {}

    /// One form of it; none where the owner has no such form or does not deliver it.
    [[nodiscard]] std::optional<SelectionFormat> read(xcb_atom_t selection, xcb_atom_t target,
                                                      Clock::time_point deadline);

    [[nodiscard]] std::optional<std::string> text(xcb_atom_t selection, Clock::time_point deadline);

    /// All forms that can be given again later: no names of resources of the owner's, no requests.
    [[nodiscard]] SelectionContent content(xcb_atom_t selection, Clock::time_point deadline);

    /// Takes in what still comes of a content that was given up, so that its owner gets done with it. To be
    /// given every event that nobody waits for.
    void handle(const xcb_generic_event_t& event);

private:
    using Targets = std::vector<xcb_atom_t>;

    [[nodiscard]] Targets targets(xcb_atom_t selection, Clock::time_point deadline);
    [[nodiscard]] std::optional<std::string> textAmong(const Targets& offered, xcb_atom_t selection,
                                                       Clock::time_point deadline);
    std::optional<SelectionFormat> pieces(xcb_atom_t property, SelectionFormat announcement,
                                          Clock::time_point deadline);
    std::optional<SelectionFormat> takeProperty(xcb_atom_t property, xcb_atom_t target);
    [[nodiscard]] Clock::time_point answerDeadline(Clock::time_point deadline) const;

    X11SelectionConnection& connection_;
    /// Properties are taken in turn, so that what comes late for one request is not taken for the next.
    unsigned turn_ = 0;

    struct Abandoned {
        xcb_window_t window = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;

        friend bool operator==(const Abandoned&, const Abandoned&) = default;
    };

    /// Another one after each content that was given up: some owners keep one transfer a window.
    xcb_window_t window_;
    std::vector<Abandoned> abandoned_;
    bool isStuck_ = false;
};

} // namespace quillmoth::platform
