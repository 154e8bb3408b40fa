#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>

#include <string>

namespace quillmoth::markdown {

/// A picture of one colour, as the data of a file.
inline QByteArray pictureData(const QColor& color, int width, int height, const char* format = "PNG") {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return data;
}

/// The same as a URL.
inline std::string pictureURL(const QColor& color, int width, int height) {
    return "data:image/png;base64," + pictureData(color, width, height).toBase64().toStdString();
}

} // namespace quillmoth::markdown
