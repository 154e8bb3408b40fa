#include "Platform/Linux/Desktop/HandOver.h"

#include "Platform/Linux/Desktop/InstanceRequest.h"

#include <QByteArray>

#include <array>
#include <dbus/dbus.h>
#include <memory>
#include <utility>

namespace quillmoth::platform {

namespace {

struct CloseConnection {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};

struct ReleaseMessage {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};

using Connection = std::unique_ptr<DBusConnection, CloseConnection>;
using Message = std::unique_ptr<DBusMessage, ReleaseMessage>;

void appendText(DBusMessageIter* iterator, const char* text) {
    dbus_message_iter_append_basic(iterator, DBUS_TYPE_STRING, &text);
}

void appendTexts(DBusMessageIter* iterator, const std::vector<std::string>& texts) {
    DBusMessageIter array;
    dbus_message_iter_open_container(iterator, DBUS_TYPE_ARRAY, "s", &array);
    for (const auto& text : texts) {
        // The bus closes the connection of whoever sends it text that is no UTF-8.
        if (dbus_validate_utf8(text.c_str(), nullptr))
            appendText(&array, text.c_str());
    }
    dbus_message_iter_close_container(iterator, &array);
}

void appendEntry(DBusMessageIter* dictionary, const char* key, const char* value) {
    DBusMessageIter entry;
    DBusMessageIter variant;
    dbus_message_iter_open_container(dictionary, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
    appendText(&entry, key);
    dbus_message_iter_open_container(&entry, DBUS_TYPE_VARIANT, "s", &variant);
    appendText(&variant, value);
    dbus_message_iter_close_container(&entry, &variant);
    dbus_message_iter_close_container(dictionary, &entry);
}

/// What lets the receiver raise its window: the names of the token in the environment and in the call.
void appendPlatformData(DBusMessageIter* iterator) {
    constexpr std::array kNames{std::pair("DESKTOP_STARTUP_ID", "desktop-startup-id"),
                                std::pair("XDG_ACTIVATION_TOKEN", "activation-token")};
    DBusMessageIter dictionary;
    dbus_message_iter_open_container(iterator, DBUS_TYPE_ARRAY, "{sv}", &dictionary);
    for (const auto& [variable, key] : kNames) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty() && dbus_validate_utf8(value.constData(), nullptr))
            appendEntry(&dictionary, key, value.constData());
    }
    dbus_message_iter_close_container(iterator, &dictionary);
}

Message messageFor(const InstanceRequest& request) {
    const char* action = actionName(request.kind);
    const bool opens = request.kind == InstanceRequest::Kind::open;
    const char* method = action ? "ActivateAction" : opens ? "Open" : "Activate";
    Message message(
        dbus_message_new_method_call(kInstanceService, kInstancePath, kInstanceInterface, method));
    // Otherwise the bus would start the program to have somebody to ask.
    dbus_message_set_auto_start(message.get(), FALSE);
    DBusMessageIter iterator;
    dbus_message_iter_init_append(message.get(), &iterator);
    if (action) {
        DBusMessageIter parameters;
        appendText(&iterator, action);
        dbus_message_iter_open_container(&iterator, DBUS_TYPE_ARRAY, "v", &parameters);
        dbus_message_iter_close_container(&iterator, &parameters);
    } else if (opens) {
        appendTexts(&iterator, request.urls);
    }
    appendPlatformData(&iterator);
    return message;
}

} // namespace

HandOver handOver(const InstanceRequest& request, std::chrono::milliseconds timeout) {
    const Connection connection(dbus_bus_get_private(DBUS_BUS_SESSION, nullptr));
    if (!connection)
        return HandOver::noBus;
    dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);
    DBusError error = DBUS_ERROR_INIT;
    const Message message = messageFor(request);
    const Message reply(dbus_connection_send_with_reply_and_block(connection.get(), message.get(),
                                                                  static_cast<int>(timeout.count()), &error));
    if (reply)
        return HandOver::delivered;
    const bool nobody = dbus_error_has_name(&error, DBUS_ERROR_SERVICE_UNKNOWN) ||
                        dbus_error_has_name(&error, DBUS_ERROR_NAME_HAS_NO_OWNER);
    dbus_error_free(&error);
    return nobody ? HandOver::notRunning : HandOver::failed;
}

} // namespace quillmoth::platform
