#include "Platform/Linux/Sway/SwayTree.h"

#include <vector>

namespace quillmoth::platform {

std::string textIn(const nlohmann::json& object, const char* name) {
    const auto found = object.is_object() ? object.find(name) : object.end();
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

bool isSetIn(const nlohmann::json& object, const char* name) {
    const auto found = object.is_object() ? object.find(name) : object.end();
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

namespace {

std::int64_t numberIn(const nlohmann::json& object, const char* name) {
    const auto found = object.is_object() ? object.find(name) : object.end();
    return found != object.end() && found->is_number_integer() ? found->get<std::int64_t>() : 0;
}

} // namespace

std::optional<SwayWindow> windowIn(const nlohmann::json& container) {
    SwayWindow window{.identifier = numberIn(container, "id"),
                      .process = numberIn(container, "pid"),
                      .application = textIn(container, "app_id")};
    if (window.process <= 0)
        return std::nullopt;
    const auto properties = container.find("window_properties");
    if (window.application.empty() && properties != container.end())
        window.application = textIn(*properties, "class");
    return window;
}

std::optional<SwayWindow> focusedWindow(const nlohmann::json& tree) {
    std::vector<const nlohmann::json*> waiting{&tree};
    while (!waiting.empty()) {
        const nlohmann::json& container = *waiting.back();
        waiting.pop_back();
        if (isSetIn(container, "focused"))
            return windowIn(container);
        for (const char* kind : {"nodes", "floating_nodes"}) {
            const auto nodes = container.is_object() ? container.find(kind) : container.end();
            if (nodes == container.end() || !nodes->is_array())
                continue;
            for (const nlohmann::json& node : *nodes)
                waiting.push_back(&node);
        }
    }
    return std::nullopt;
}

std::string focusedOutput(const nlohmann::json& outputs) {
    for (const nlohmann::json& output : outputs) {
        if (isSetIn(output, "focused"))
            return textIn(output, "name");
    }
    return {};
}

} // namespace quillmoth::platform
