#include "MarkdownUI/Qt/ImageDecoder.h"

#include "MarkdownUI/Qt/ImageLimits.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <utility>

namespace quillmoth::markdown {

namespace {

constexpr int kBytesOfPixel = 4;

struct Signature {
    const char* format; ///< Qt's name
    qsizetype at;
    QByteArrayView bytes;
};

constexpr std::array kSignatures{
    Signature{"png", 0, "\x89PNG\r\n\x1A\n"},
    Signature{"jpeg", 0, "\xFF\xD8\xFF"},
    Signature{"gif", 0, "GIF87a"},
    Signature{"gif", 0, "GIF89a"},
    Signature{"webp", 8, "WEBP"},
};

const char* imageFormatOf(const QByteArray& data) {
    for (const Signature& signature : kSignatures) {
        const bool isWebP = signature.at > 0;
        if (QByteArrayView(data).sliced(std::min(signature.at, data.size())).startsWith(signature.bytes) &&
            (!isWebP || data.startsWith("RIFF")))
            return signature.format;
    }
    return nullptr;
}

DecodedImage refused(ImageProblem problem) {
    return {{}, problem};
}

} // namespace

DecodedImage decodeImage(const ImageAnswer& answer) {
    if (answer.problem != ImageProblem::none)
        return refused(answer.problem);
    if (answer.data.isEmpty())
        return refused(ImageProblem::unreachable);
    if (answer.data.size() > kMostImageBytes)
        return refused(ImageProblem::tooManyBytes);
    const char* const format = imageFormatOf(answer.data);
    if (format == nullptr)
        return refused(ImageProblem::unknownFormat);
    QByteArray data = answer.data;
    QBuffer buffer(&data);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty())
        return refused(ImageProblem::unknownFormat);
    if (std::int64_t{size.width()} * size.height() > kMostImagePixels)
        return refused(ImageProblem::tooManyPixels);
    if (size.width() > kLargestImageSide || size.height() > kLargestImageSide)
        reader.setScaledSize(
            size.scaled(kLargestImageSide, kLargestImageSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    QImage image = reader.read();
    return image.isNull() ? refused(ImageProblem::unknownFormat) : DecodedImage{std::move(image)};
}

void allowImagesOfFullSize() {
    QImageReader::setAllocationLimit(static_cast<int>(kMostImagePixels * kBytesOfPixel >> 20) + 1);
}

} // namespace quillmoth::markdown
