#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <cstdio>

/// Owns the clipboard until another program takes it: clipboard-owner TEXT HTML puts both there, with a
/// picture.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    auto* data = new QMimeData;
    data->setText(arguments[1]);
    data->setHtml(arguments[2]);
    data->setData("image/png", bytes);
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(data);
    QObject::connect(clipboard, &QClipboard::changed, [clipboard](QClipboard::Mode mode) {
        if (mode == QClipboard::Clipboard && !clipboard->ownsClipboard())
            QGuiApplication::quit();
    });
    std::puts("ready");
    std::fflush(stdout);
    return QGuiApplication::exec();
}
