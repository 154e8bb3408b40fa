#pragma once

#include "Platform/Linux/Shared/ClipboardMemory.h"
#include "Platform/Linux/X11/Selection/X11SelectionContent.h"

namespace quillmoth::platform {

using X11SelectionMemory = ClipboardMemory<SelectionContent>;

} // namespace quillmoth::platform
