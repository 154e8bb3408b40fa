#include "Quillmoth/Shell/Looks/Fonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QStringList>

namespace quillmoth {

namespace {

QString emojiFamily() {
    static const QString family = [] {
        for (const QString& candidate : QFontDatabase::families())
            if (candidate.contains(QLatin1String("Color Emoji")) || candidate == QLatin1String("Twemoji"))
                return candidate;
        return QString();
    }();
    return family;
}

QFont withFamilies(QStringList families, double pixelSize) {
    QFont font = QGuiApplication::font();
    families.removeAll(QString());
    font.setFamilies(families);
    font.setPixelSize(qMax(1, qRound(pixelSize)));
    font.setStyleName(QString());
    font.setStyleStrategy(QFont::PreferAntialias);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

/// The family that is really used: behind a name that no font has, the emoji would take spaces and digits.
QString generalFamily() {
    return QFontInfo(QGuiApplication::font()).family();
}

} // namespace

QFont textFont(double pixelSize, QFont::Weight weight) {
    QFont font = withFamilies({generalFamily(), emojiFamily()}, pixelSize);
    font.setWeight(weight);
    return font;
}

QFont emojiFont(double pixelSize) {
    // Pictures fill less of their em than letters seem to.
    constexpr double kEnlarged = 1.17;
    return withFamilies({emojiFamily(), generalFamily()}, pixelSize * kEnlarged);
}

bool startsWithPictograph(const QString& text) {
    constexpr char32_t kFirstPictograph = 0x2190;
    constexpr char32_t kFirstIdeograph = 0x2E80;
    constexpr char32_t kFirstSupplementary = 0x1F000;
    constexpr char16_t kEmojiPresentation = 0xFE0F;
    const auto codePoints = text.left(4).toUcs4();
    if (codePoints.isEmpty())
        return false;
    const char32_t first = codePoints.front();
    return text.left(4).contains(QChar(kEmojiPresentation)) ||
           (first >= kFirstPictograph && first < kFirstIdeograph) ||
           (first >= kFirstSupplementary && first < 0x20000);
}

} // namespace quillmoth
