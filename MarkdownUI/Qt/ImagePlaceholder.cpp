#include "MarkdownUI/Qt/ImagePlaceholder.h"

#include "Foundation/Qt/Symbols.h"
#include "MarkdownUI/Qt/ImageLimits.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>

#include <algorithm>

namespace quillmoth::markdown {

namespace {

constexpr double kPlaceholderRadius = 8;
constexpr double kPlaceholderPadding = 12;
constexpr double kPlaceholderSymbol = 20;
constexpr double kLowFrame = 40;
constexpr double kLowPadding = 7;
constexpr double kLowSymbol = 14;

const auto kBetween = QStringLiteral(" · ");

QString oneLine(const QString& text) {
    return text.simplified();
}

QString problemText(ImageProblem problem) {
    switch (problem) {
    case ImageProblem::none:
        return {};
    case ImageProblem::unreachable:
        return QStringLiteral("Could not be loaded");
    case ImageProblem::privateNetwork:
        return QStringLiteral("On a private network");
    case ImageProblem::elsewhere:
        return QStringLiteral("Leads to another host");
    case ImageProblem::tooManyBytes:
        return QStringLiteral("Larger than %1 MB, not loaded").arg(kMostImageBytes >> 20);
    case ImageProblem::tooManyPixels:
        return QStringLiteral("More than %1 megapixels, not shown").arg(kMostImagePixels / 1'000'000);
    case ImageProblem::unknownFormat:
        return QStringLiteral("Not a PNG, JPEG, GIF or WebP image");
    }
    return {};
}

/// As much of it as fits into `width`; of the host the end, which says whose it is.
void drawHostAndNote(QPainter& painter, const QRectF& line, const QString& host, const QString& note) {
    const QFontMetricsF metrics(painter.font());
    const QString behind = host.isEmpty() ? note : kBetween + note;
    const double room = std::max(line.width() - metrics.horizontalAdvance(behind), line.width() / 3);
    const QString shown = metrics.elidedText(host, Qt::ElideLeft, room) + behind;
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(shown, Qt::ElideRight, line.width()));
}

} // namespace

QString ImagePlaceholder::note() const {
    if (isLoading)
        return QStringLiteral("Loading…");
    const QString text = problemText(problem);
    if (!isPressable)
        return text;
    const auto press = problem == ImageProblem::unreachable ? QStringLiteral("Click to try again")
                                                            : QStringLiteral("Click to load");
    return text.isEmpty() ? press : text + ". " + press;
}

QString ImagePlaceholder::spokenName(const QString& alt) const {
    QStringList words{alt.isEmpty() ? QStringLiteral("Image") : QStringLiteral("Image: ") + oneLine(alt)};
    if (!host.isEmpty())
        words << QStringLiteral("from ") + host;
    if (isLoading)
        words << QStringLiteral("loading");
    else if (const QString text = problemText(problem); !text.isEmpty())
        words << text;
    if (isPressable)
        words << QStringLiteral("press to load it");
    return words.join(QStringLiteral(", "));
}

void paintPlaceholder(QPainter& painter, const ImagePlaceholder& placeholder, const QString& alt,
                      const QRectF& frame, const MarkdownPalette& palette, FontCache& fonts) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette.divider);
    painter.setBrush(palette.codeFill);
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), kPlaceholderRadius, kPlaceholderRadius);
    painter.setClipRect(frame, Qt::IntersectClip);
    const bool isLow = frame.height() < kLowFrame;
    const double padding = isLow ? kLowPadding : kPlaceholderPadding;
    const double side = isLow ? kLowSymbol : kPlaceholderSymbol;
    const QRectF symbol(frame.left() + padding, frame.center().y() - side / 2, side, side);
    drawSymbol(painter, QStringLiteral("photo"), symbol, palette.gray);
    QRectF text = frame.adjusted(padding + side + padding, 0, -padding, 0);
    const QString title = alt.isEmpty() ? QStringLiteral("Image") : oneLine(alt);
    painter.setFont(fonts.fontOf({.size = isLow ? 12.0 : 13.0, .weight = FontProperties::Weight::medium}));
    const QFontMetricsF metrics(painter.font());
    painter.setPen(palette.text);
    if (isLow) {
        const QString shown = metrics.elidedText(title, Qt::ElideRight, text.width() / 3);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, shown);
        text.setLeft(text.left() + metrics.horizontalAdvance(shown) + padding);
    } else {
        text.adjust(0, padding / 2 + 1, 0, -padding / 2 - 1);
        const QRectF upper(text.left(), text.top(), text.width(), text.height() / 2);
        painter.drawText(upper, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(title, Qt::ElideRight, upper.width()));
        text.setTop(upper.bottom());
    }
    painter.setFont(fonts.fontOf({.size = 12}));
    painter.setPen(palette.gray);
    drawHostAndNote(painter, text, placeholder.host, placeholder.note());
    painter.restore();
}

} // namespace quillmoth::markdown
