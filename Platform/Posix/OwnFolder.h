#pragma once

#include <string>

namespace quillmoth::platform {

class UserDefaults;

/// Puts a folder that is this program's alone in order, at its start: takes group's and others' permissions
/// from the folder and the files in it, each once in its life, so that whoever widens them afterwards is left
/// in peace; and removes temporary files that an end in the middle of writing has left behind. `defaults`
/// remembers which files were narrowed. A folder that is not there is left so.
void putFolderInOrder(const std::string& folder, UserDefaults& defaults);

} // namespace quillmoth::platform
