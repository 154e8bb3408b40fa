#pragma once

// xcb's header for XKB names two members "explicit", which C++ reserves. Including them under another name is
// the only way to use the header; the members are not used here.
#define explicit explicitMembers
#include <xcb/xkb.h>
#undef explicit
