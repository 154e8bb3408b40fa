#pragma once

#include <map>
#include <string>
#include <xcb/xcb.h>

namespace quillmoth::platform {

/// The atoms of one connection, by name and back; each is asked of the server once. The thread of its
/// connection.
class X11Atoms {
public:
    /// `connection` outlives the object.
    explicit X11Atoms(xcb_connection_t* connection) : connection_(connection) {}

    /// XCB_ATOM_NONE where the server has gone.
    [[nodiscard]] xcb_atom_t atom(const std::string& name);
    /// Empty for what is no atom.
    [[nodiscard]] const std::string& name(xcb_atom_t atom);

private:
    xcb_connection_t* connection_;
    std::map<std::string, xcb_atom_t> atoms_;
    std::map<xcb_atom_t, std::string> names_;
};

} // namespace quillmoth::platform
