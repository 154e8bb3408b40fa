#include "Platform/Linux/X11/Server/X11Atoms.h"

#include "Platform/Linux/X11/Server/X11Reply.h"

namespace quillmoth::platform {

xcb_atom_t X11Atoms::atom(const std::string& name) {
    const auto [entry, isNew] = atoms_.try_emplace(name, XCB_ATOM_NONE);
    if (isNew) {
        const auto cookie =
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
        if (const auto reply = owned(xcb_intern_atom_reply(connection_, cookie, nullptr)))
            entry->second = reply->atom;
    }
    return entry->second;
}

const std::string& X11Atoms::name(xcb_atom_t atom) {
    const auto [entry, isNew] = names_.try_emplace(atom);
    if (isNew && atom != XCB_ATOM_NONE) {
        const auto cookie = xcb_get_atom_name(connection_, atom);
        if (const auto reply = owned(xcb_get_atom_name_reply(connection_, cookie, nullptr)))
            entry->second.assign(xcb_get_atom_name_name(reply.get()),
                                 static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
    }
    return entry->second;
}

} // namespace quillmoth::platform
