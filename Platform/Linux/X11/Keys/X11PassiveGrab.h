#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <span>

/// Passive grabs of a key on the root window by the X Input Extension 2, for all master keyboards. The
/// modifiers that are held must be exactly those of one of `variants`.
namespace quillmoth::platform {

/// False where another client has the combination by the same means already.
bool grabKey(X11Connection& connection, xcb_keycode_t keycode, std::span<const std::uint32_t> variants);

/// The same, without asking how it went.
void grabKeyUnchecked(X11Connection& connection, xcb_keycode_t keycode,
                      std::span<const std::uint32_t> variants);

void ungrabKey(X11Connection& connection, xcb_keycode_t keycode, std::span<const std::uint32_t> variants);

} // namespace quillmoth::platform
