#pragma once

#include <concepts>
#include <type_traits>

namespace quillmoth {

/// A record has one list of its fields, which the reader and the writer go through in its order:
/// `bool visitFields(auto& fields, RecordOf<R> auto& record)` in the namespace of R, not in an unnamed one.
/// It gives `fields.required(key, value) && fields.optional(key, value) && ...`; `fields.ignoredOnWrite` is
/// an optional field that is read alone. A record that is only read may take `JSONFields&` and `R&` instead.
template<class Visited, class Record>
concept RecordOf = std::same_as<std::remove_const_t<Visited>, Record>;

} // namespace quillmoth
