#pragma once

namespace quillmoth::platform {

/// From now on the kernel writes no core file of this process, nor pipes one to a program that keeps it, nor
/// of programs that are started from here: they may raise the limit again. To be called first.
/// QUILLMOTH_CORE=1 in the environment keeps the limit as it is.
void forbidCoreFiles();

} // namespace quillmoth::platform
