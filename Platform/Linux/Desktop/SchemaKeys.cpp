#include "Platform/Linux/Desktop/DesktopKeySettings.h"

#include <memory>

#include <gio/gio.h>

namespace quillmoth::platform {

namespace {

using Schema = std::unique_ptr<GSettingsSchema, void (*)(GSettingsSchema*)>;
using Settings = std::unique_ptr<GSettings, void (*)(gpointer)>;
using Names = std::unique_ptr<gchar*, void (*)(gchar**)>;
using Value = std::unique_ptr<GVariant, void (*)(GVariant*)>;

void append(std::vector<KeyCombination>& keys, const gchar* text) {
    if (auto combination = acceleratorCombination(text))
        keys.push_back(std::move(*combination));
}

/// A key holds one accelerator, or a list of them.
void appendValue(std::vector<KeyCombination>& keys, GVariant* value) {
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
        append(keys, g_variant_get_string(value, nullptr));
    } else if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING_ARRAY)) {
        GVariantIter iterator;
        g_variant_iter_init(&iterator, value);
        const gchar* text = nullptr;
        while (g_variant_iter_next(&iterator, "&s", &text))
            append(keys, text);
    }
}

} // namespace

std::vector<KeyCombination> schemaKeys(const std::string& schemaName) {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    const Schema schema(source ? g_settings_schema_source_lookup(source, schemaName.c_str(), TRUE) : nullptr,
                        &g_settings_schema_unref);
    if (!schema)
        return {};
    const Settings settings(g_settings_new_full(schema.get(), nullptr, nullptr), &g_object_unref);
    const Names names(g_settings_schema_list_keys(schema.get()), &g_strfreev);
    std::vector<KeyCombination> keys;
    for (gchar** name = names.get(); *name != nullptr; ++name) {
        const Value value(g_settings_get_value(settings.get(), *name), &g_variant_unref);
        appendValue(keys, value.get());
    }
    return keys;
}

} // namespace quillmoth::platform
