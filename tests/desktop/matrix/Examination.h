#pragma once

#include "tests/desktop/matrix/Fields.h"

#include <string>
#include <vector>

namespace quillmoth::test {

/// A line of the matrix: the name of the field and its cells, in the order of columnNames. A cell says "ok",
/// how it came about in brackets, "-" where there is nothing to be tried, or what was seen instead.
struct Row {
    std::string name;
    std::vector<std::string> cells;
};

std::vector<std::string> columnNames();

/// Tries everything on one field of a running program.
Row examine(CapturingDesktop& desktop, const Field& field);

/// A row in which every cell says `why`.
Row rowWithout(const std::string& name, const std::string& why);

} // namespace quillmoth::test
