#include "Platform/Linux/Gnome/GnomeKeySettings.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include <gio/gio.h>

namespace quillmoth::platform {

namespace {

constexpr const char* kMediaKeys = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char* kCustomShortcut = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr const char* kCustomList = "custom-keybindings";
constexpr const char* kOwnPath =
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/quillmoth/";
constexpr const char* kShell = "org.gnome.shell";
constexpr const char* kEnabledExtensions = "enabled-extensions";

constexpr const char* kSchemas[] = {"org.gnome.desktop.wm.keybindings", "org.gnome.mutter.keybindings",
                                    "org.gnome.mutter.wayland.keybindings", "org.gnome.shell.keybindings",
                                    kMediaKeys};

using Schema = std::unique_ptr<GSettingsSchema, void (*)(GSettingsSchema*)>;
using Settings = std::unique_ptr<GSettings, void (*)(gpointer)>;
using Value = std::unique_ptr<GVariant, void (*)(GVariant*)>;
using Names = std::vector<std::string>;

Schema schemaNamed(const char* name) {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    return {source != nullptr ? g_settings_schema_source_lookup(source, name, TRUE) : nullptr,
            &g_settings_schema_unref};
}

/// Null where the schema is not installed: without this question GLib would end the process.
Settings settingsOf(const char* name, const char* path = nullptr) {
    const Schema schema = schemaNamed(name);
    return {schema ? g_settings_new_full(schema.get(), nullptr, path) : nullptr, [](gpointer object) {
                if (object != nullptr)
                    g_object_unref(object);
            }};
}

std::string take(gchar* text) {
    const std::unique_ptr<gchar, void (*)(gpointer)> owned(text, &g_free);
    return owned ? owned.get() : "";
}

Names listIn(GSettings* settings, const char* key) {
    const std::unique_ptr<gchar*, void (*)(gchar**)> list(g_settings_get_strv(settings, key), &g_strfreev);
    Names names;
    for (gchar** each = list.get(); each != nullptr && *each != nullptr; ++each)
        names.emplace_back(*each);
    return names;
}

bool store(GSettings* settings, const char* key, const Names& names) {
    std::vector<const gchar*> list;
    for (const std::string& name : names)
        list.push_back(name.c_str());
    list.push_back(nullptr);
    const bool isStored = g_settings_set_strv(settings, key, list.data()) != FALSE;
    g_settings_sync();
    return isStored;
}

bool contains(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// A key holds one accelerator, or a list of them.
Names acceleratorsIn(GSettings* settings, const gchar* key) {
    const Value value(g_settings_get_value(settings, key), &g_variant_unref);
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING))
        return {g_variant_get_string(value.get(), nullptr)};
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY))
        return {};
    return listIn(settings, key);
}

std::string summaryOf(GSettingsSchema* schema, const gchar* key) {
    const std::unique_ptr<GSettingsSchemaKey, void (*)(GSettingsSchemaKey*)> described(
        g_settings_schema_get_key(schema, key), &g_settings_schema_key_unref);
    const gchar* summary = g_settings_schema_key_get_summary(described.get());
    return summary != nullptr ? summary : key;
}

using Visit = std::function<void(const std::string& accelerator, const std::function<std::string()>& words)>;

void visitSchema(const char* name, const Visit& visit) {
    const Schema schema = schemaNamed(name);
    const Settings settings = settingsOf(name);
    if (!schema || !settings)
        return;
    const std::unique_ptr<gchar*, void (*)(gchar**)> keys(g_settings_schema_list_keys(schema.get()),
                                                          &g_strfreev);
    for (gchar** key = keys.get(); *key != nullptr; ++key) {
        if (std::string_view(*key) == kCustomList)
            continue;
        for (const std::string& accelerator : acceleratorsIn(settings.get(), *key))
            visit(accelerator, [&] { return summaryOf(schema.get(), *key); });
    }
}

void visitCustomShortcuts(const Visit& visit) {
    const Settings media = settingsOf(kMediaKeys);
    for (const std::string& path : media ? listIn(media.get(), kCustomList) : Names()) {
        // What is no path would end the process.
        const bool isPath =
            path.starts_with('/') && path.ends_with('/') && path.find("//") == std::string::npos;
        if (!isPath || path == kOwnPath)
            continue;
        const Settings shortcut = settingsOf(kCustomShortcut, path.c_str());
        if (shortcut)
            visit(take(g_settings_get_string(shortcut.get(), "binding")),
                  [&] { return take(g_settings_get_string(shortcut.get(), "name")); });
    }
}

void visitAll(const Visit& visit) {
    for (const char* schema : kSchemas)
        visitSchema(schema, visit);
    visitCustomShortcuts(visit);
}

} // namespace

bool hasCustomShortcuts() {
    return schemaNamed(kMediaKeys) && schemaNamed(kCustomShortcut);
}

std::optional<std::string> ownCustomShortcut() {
    const Settings media = settingsOf(kMediaKeys);
    if (!media || !contains(listIn(media.get(), kCustomList), kOwnPath))
        return std::nullopt;
    const Settings own = settingsOf(kCustomShortcut, kOwnPath);
    return own ? std::optional(take(g_settings_get_string(own.get(), "binding"))) : std::nullopt;
}

void setOwnCustomShortcut(const std::string& accelerator, const std::string& command) {
    const Settings media = settingsOf(kMediaKeys);
    const Settings own = settingsOf(kCustomShortcut, kOwnPath);
    if (!media || !own)
        return;
    g_settings_set_string(own.get(), "name", "Quillmoth");
    g_settings_set_string(own.get(), "command", command.c_str());
    g_settings_set_string(own.get(), "binding", accelerator.c_str());
    Names paths = listIn(media.get(), kCustomList);
    if (!contains(paths, kOwnPath)) {
        paths.emplace_back(kOwnPath);
        store(media.get(), kCustomList, paths);
    }
    g_settings_sync();
}

void removeOwnCustomShortcut() {
    const Settings media = settingsOf(kMediaKeys);
    const Settings own = settingsOf(kCustomShortcut, kOwnPath);
    if (!media || !own)
        return;
    for (const char* key : {"binding", "command", "name"})
        g_settings_reset(own.get(), key);
    Names paths = listIn(media.get(), kCustomList);
    std::erase(paths, kOwnPath);
    store(media.get(), kCustomList, paths);
}

std::optional<std::string>
holderOfShortcut(const std::function<bool(const std::string& accelerator)>& isWanted) {
    std::optional<std::string> holder;
    visitAll([&](const std::string& accelerator, const std::function<std::string()>& words) {
        if (!holder && isWanted(accelerator))
            holder = words();
    });
    return holder;
}

std::vector<std::string> takenAccelerators() {
    Names all;
    visitAll([&](const std::string& accelerator, const std::function<std::string()>&) {
        all.push_back(accelerator);
    });
    return all;
}

KeyRepeat keyRepeat() {
    const Settings keyboard = settingsOf("org.gnome.desktop.peripherals.keyboard");
    KeyRepeat repeat;
    if (keyboard) {
        repeat.delay = std::chrono::milliseconds(g_settings_get_uint(keyboard.get(), "delay"));
        repeat.interval = std::chrono::milliseconds(g_settings_get_uint(keyboard.get(), "repeat-interval"));
    }
    return repeat;
}

bool setShellExtensionEnabled(const std::string& identifier, bool isEnabled) {
    const Settings shell = settingsOf(kShell);
    if (!shell)
        return false;
    Names enabled = listIn(shell.get(), kEnabledExtensions);
    if (contains(enabled, identifier) == isEnabled)
        return true;
    if (isEnabled)
        enabled.push_back(identifier);
    else
        std::erase(enabled, identifier);
    return store(shell.get(), kEnabledExtensions, enabled);
}

bool isShellExtensionEnabled(const std::string& identifier) {
    const Settings shell = settingsOf(kShell);
    return shell && contains(listIn(shell.get(), kEnabledExtensions), identifier);
}

} // namespace quillmoth::platform
