#pragma once

#include <QColor>
#include <QIcon>
#include <string>

namespace quillmoth::platform {

/// The named symbol in one colour, at the sizes that trays ask for. Null where there is no such symbol.
QIcon tintedSymbol(const std::string& name, const QColor& colour);

} // namespace quillmoth::platform
