#include "Platform/Qt/ResourceBundle.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

/// Outside every namespace, as Qt asks: a static library's resources are registered by name.
static void registerCompiledResources() {
    Q_INIT_RESOURCE(quillmoth_platform);
}

namespace quillmoth::platform {

namespace {

using Entry = std::pair<std::string_view, std::string_view>;

constexpr std::array<Entry, 4> kInformation{{
    {"CFBundleIdentifier", "org.quillmoth.Quillmoth"},
    {"CFBundleName", "Quillmoth"},
    {"CFBundleShortVersionString", QUILLMOTH_VERSION},
    {"CFBundleVersion", QUILLMOTH_BUILD},
}};

} // namespace

ResourceBundle::ResourceBundle() {
    registerCompiledResources();
}

std::optional<std::string> ResourceBundle::urlForResource(std::string_view filename) const {
    const auto name = QString::fromUtf8(filename.data(), static_cast<qsizetype>(filename.size()));
    if (name.isEmpty() || name.contains(QLatin1Char('/')))
        return std::nullopt;
    const std::array places{QStringLiteral(":/bundle/") + name, QCoreApplication::applicationDirPath() +
                                                                    QStringLiteral("/../share/quillmoth/") +
                                                                    name};
    const auto found = std::find_if(places.begin(), places.end(),
                                    [](const auto& place) { return QFileInfo(place).isFile(); });
    return found == places.end() ? std::nullopt : std::optional(found->toStdString());
}

Result<std::string> ResourceBundle::read(const std::string& resourceURL) const {
    QFile file(QString::fromStdString(resourceURL));
    if (!file.open(QIODevice::ReadOnly))
        return Error{"Could not read the resource \"" + resourceURL +
                     "\": " + file.errorString().toStdString()};
    return file.readAll().toStdString();
}

std::optional<std::string> ResourceBundle::info(std::string_view key) const {
    const auto* found = std::find_if(kInformation.begin(), kInformation.end(),
                                     [&](const Entry& entry) { return entry.first == key; });
    return found == kInformation.end() ? std::nullopt : std::optional<std::string>(found->second);
}

} // namespace quillmoth::platform
