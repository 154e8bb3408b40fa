#pragma once

#include "Foundation/Result.h"

#include <cstddef>
#include <string>

namespace quillmoth::platform {
class Documents;
class UUIDSource;
} // namespace quillmoth::platform

namespace quillmoth {

class DataModel;

/// The whole list of presets as a file of the user's choice, in the form of the presets file itself. Main
/// thread; paths are absolute.
[[nodiscard]] Result<void> exportPresets(const DataModel& model, platform::Documents& documents,
                                         const std::string& path);

struct PresetImport {
    std::size_t added = 0;
    /// Left out, since the list has them already, whatever their ids.
    std::size_t present = 0;
};

/// Appends the presets of the file, with new ids, as one change. A file that holds no presets changes
/// nothing.
[[nodiscard]] Result<PresetImport> importPresets(DataModel& model, platform::Documents& documents,
                                                 platform::UUIDSource& uuidSource, const std::string& path);

} // namespace quillmoth
