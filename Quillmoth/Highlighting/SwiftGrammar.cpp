#include "Quillmoth/Highlighting/SwiftGrammar.h"

#include "Quillmoth/Highlighting/LineScanner.h"

namespace quillmoth::highlighting {

LineState SwiftGrammar::step(std::string_view line, LineState state, std::vector<Piece>& pieces) const {
    LineScanner(line, state, pieces).scan();
    return state;
}

} // namespace quillmoth::highlighting
