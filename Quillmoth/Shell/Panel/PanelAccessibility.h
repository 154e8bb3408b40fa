#pragma once

namespace quillmoth {

/// Makes the panel's own widgets known to assistive technology. Once is enough; more calls do nothing.
void installPanelAccessibility();

} // namespace quillmoth
