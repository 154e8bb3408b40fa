#include "Platform/Linux/Wayland/WaylandSelection.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <cstdio>
#include <cstring>

namespace {

QByteArray picture() {
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::green);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

void tellReady() {
    std::puts("ready");
    std::fflush(stdout);
}

/// Without a window, as a manager of clipboards does.
int ownOnWayland(const char* text, const char* html) {
    using namespace quillmoth::platform;
    auto connection = WaylandConnection::open();
    auto selection = connection ? WaylandSelection::create(**connection) : nullptr;
    if (!selection)
        return 1;
    selection->own(std::make_shared<const WaylandContent>(WaylandContent{
        .text = text, .others = {{"text/html", html}, {"image/png", picture().toStdString()}}}));
    tellReady();
    while (selection->owned() && (*connection)->step(WaylandConnection::Clock::time_point::max())) {
    }
    return 0;
}

int ownOnX11(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    auto* data = new QMimeData;
    data->setText(QString::fromUtf8(argv[1]));
    data->setHtml(QString::fromUtf8(argv[2]));
    data->setData("image/png", picture());
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(data);
    QObject::connect(clipboard, &QClipboard::changed, [clipboard](QClipboard::Mode mode) {
        if (mode == QClipboard::Clipboard && !clipboard->ownsClipboard())
            QGuiApplication::quit();
    });
    tellReady();
    return QGuiApplication::exec();
}

} // namespace

/// Owns the clipboard until another program takes it: clipboard-owner TEXT HTML [--wayland] puts both there,
/// with a picture.
int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[3], "--wayland") == 0)
        return ownOnWayland(argv[1], argv[2]);
    return argc == 3 ? ownOnX11(argc, argv) : 2;
}
