#include "Platform/Qt/FileWatch.h"

#include <QFileInfo>
#include <QFileSystemWatcher>

#include <memory>
#include <utility>

namespace quillmoth::platform {

Subscription watchFiles(std::function<std::vector<std::string>()> paths, std::function<void()> changed) {
    auto watcher = std::make_shared<QFileSystemWatcher>();
    const auto watch = [watcher = watcher.get(), paths = std::move(paths)] {
        for (const std::string& path : paths()) {
            const QString name = QString::fromStdString(path);
            if (QFileInfo::exists(name))
                watcher->addPath(name);
        }
    };
    const auto notice = [watch, changed = std::move(changed)] {
        watch();
        changed();
    };
    QObject::connect(watcher.get(), &QFileSystemWatcher::fileChanged, watcher.get(), notice);
    QObject::connect(watcher.get(), &QFileSystemWatcher::directoryChanged, watcher.get(), notice);
    watch();
    return Subscription([watcher] {});
}

} // namespace quillmoth::platform
