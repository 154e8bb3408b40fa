#include "tests/desktop/wayland/KWinPicture.h"

#include <QByteArray>
#include <QImage>
#include <cstdint>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <memory>
#include <unistd.h>

namespace quillmoth::test {

namespace {

constexpr int kPictureLimitMilliseconds = 5000;

using Connection = std::unique_ptr<GDBusConnection, decltype(&g_object_unref)>;
using Answer = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;

std::uint32_t number(GVariant* answer, const char* name) {
    const Answer fields(g_variant_get_child_value(answer, 0), &g_variant_unref);
    guint32 value = 0;
    g_variant_lookup(fields.get(), name, "u", &value);
    return value;
}

QByteArray readToItsEnd(int file) {
    QByteArray bytes;
    char buffer[65536];
    for (ssize_t count = 0; (count = read(file, buffer, sizeof buffer)) > 0;)
        bytes.append(buffer, static_cast<qsizetype>(count));
    return bytes;
}

/// KWin writes the pixels there later, and closes it.
Answer askForPixels(int file) {
    const Connection bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr), &g_object_unref);
    if (!bus)
        return Answer(nullptr, &g_variant_unref);
    GUnixFDList* files = g_unix_fd_list_new();
    g_unix_fd_list_append(files, file, nullptr);
    GVariant* answer = g_dbus_connection_call_with_unix_fd_list_sync(
        bus.get(), "org.kde.KWin", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2",
        "CaptureWorkspace", g_variant_new("(a{sv}h)", nullptr, 0), nullptr, G_DBUS_CALL_FLAGS_NONE,
        kPictureLimitMilliseconds, files, nullptr, nullptr, nullptr);
    g_object_unref(files);
    return {answer, &g_variant_unref};
}

} // namespace

bool saveKWinPicture(const std::string& path) {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0)
        return false;
    const Answer answer = askForPixels(ends[1]);
    close(ends[1]);
    const QByteArray pixels = answer ? readToItsEnd(ends[0]) : QByteArray();
    close(ends[0]);
    if (pixels.isEmpty())
        return false;
    const QImage image(reinterpret_cast<const uchar*>(pixels.constData()),
                       static_cast<int>(number(answer.get(), "width")),
                       static_cast<int>(number(answer.get(), "height")),
                       static_cast<qsizetype>(number(answer.get(), "stride")),
                       static_cast<QImage::Format>(number(answer.get(), "format")));
    return image.save(QString::fromStdString(path), "PNG");
}

} // namespace quillmoth::test
