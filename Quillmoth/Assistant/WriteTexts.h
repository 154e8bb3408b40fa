#pragma once

#include <string>

namespace quillmoth {

enum class WriteResult;

/// What the user is told of an answer that did not get to `application`, and where it is now; empty for
/// WriteResult::written. `application` is empty where its name is not known. With `hasAnswer` the answer
/// stands on the clipboard; otherwise it is empty and there is nothing to paste.
[[nodiscard]] std::string textFor(WriteResult result, const std::string& application, bool hasAnswer);

} // namespace quillmoth
