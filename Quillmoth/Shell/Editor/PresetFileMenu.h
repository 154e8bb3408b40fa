#pragma once

#include "Quillmoth/Shell/Editor/EditorStrip.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace quillmoth::platform {
class Documents;
class UUIDSource;
struct Platform;
} // namespace quillmoth::platform

namespace quillmoth {

class DataModel;

/// The button at the end of the strip: its menu imports and exports the whole list of presets as a file.
class PresetFileMenu final : public StripButton {
public:
    /// `imported` is called after an import, with the number of presets added. The services of `platform`
    /// outlive the button.
    PresetFileMenu(std::shared_ptr<DataModel> model, const platform::Platform& platform,
                   std::function<void(std::size_t)> imported);

    void showMenu();

    /// What the dialogs end with: the work, and a sheet that says how it went.
    void importFrom(const QString& path);
    void exportTo(const QString& path);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void chooseFile(bool saves);

    std::shared_ptr<DataModel> model_;
    platform::Documents& documents_;
    platform::UUIDSource& uuidSource_;
    std::function<void(std::size_t)> imported_;
};

} // namespace quillmoth
