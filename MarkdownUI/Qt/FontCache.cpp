#include "MarkdownUI/Qt/FontCache.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

/// In pixels. Large semibold text is set tighter: by 1.4 % of its size at 24 pixels and 2 % from 32 on; not
/// at all up to 20.
double letterSpacingOf(const Font& font) {
    if (font.isMonospaced || font.weight < FontProperties::Weight::semibold || font.size <= 20)
        return 0;
    const double share =
        font.size < 24 ? 0.014 * (font.size - 20) / 4 : 0.014 + 0.006 * std::min((font.size - 24) / 8, 1.0);
    return -share * font.size;
}

QFont::Capitalization capitalizationOf(FontProperties::CapsVariant caps) {
    return caps == FontProperties::CapsVariant::normal ? QFont::MixedCase : QFont::SmallCaps;
}

/// The desktop's colour emoji; without it named, a text font that has some of them in black comes first.
const QString& emojiFamily() {
    static const QString family = [] {
        QString found;
        for (const QString& name : QFontDatabase::families()) {
            const bool isEmoji = name.contains(QLatin1String("Emoji"), Qt::CaseInsensitive);
            if (isEmoji && (found.isEmpty() || name.contains(QLatin1String("Color"))))
                found = name;
        }
        return found;
    }();
    return family;
}

/// The family that Qt takes for `family`, which may be an alias ("monospace"): named before another one, an
/// alias would lose to that.
QString installedFamily(const QString& family, QFont::StyleHint hint) {
    QFont font(family);
    font.setStyleHint(hint);
    return QFontInfo(font).family();
}

/// `families`, then the colour emoji where there are any.
QStringList withEmoji(QStringList families) {
    if (!emojiFamily().isEmpty())
        families.append(emojiFamily());
    return families;
}

bool isMonospaced(const Font& font) {
    const auto* design = std::get_if<FontDesign>(&font.family);
    return font.isMonospaced || (design != nullptr && *design == FontDesign::monospaced);
}

} // namespace

FontCache::FontCache()
    : FontCache(QFontDatabase::systemFont(QFontDatabase::GeneralFont).family(),
                QFontDatabase::systemFont(QFontDatabase::FixedFont).family()) {}

FontCache::FontCache(const QString& textFamily, const QString& codeFamily)
    : textFamily_(installedFamily(textFamily, QFont::AnyStyle)),
      codeFamily_(installedFamily(codeFamily, QFont::Monospace)) {}

const QFont& FontCache::fontOf(const Font& font) {
    const auto known = fonts_.find(font);
    return known != fonts_.end() ? known->second : fonts_.emplace(font, makeQFont(font)).first->second;
}

QFont FontCache::spacedFontOf(const Font& font, double spacing) {
    QFont spaced = fontOf(font);
    spaced.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    return spaced;
}

QFont FontCache::makeQFont(const Font& font) const {
    QFont result;
    if (const auto* name = std::get_if<std::string>(&font.family); name != nullptr && !font.isMonospaced) {
        result.setFamilies(withEmoji(QStringList{QString::fromStdString(*name), textFamily_}));
    } else if (isMonospaced(font)) {
        result.setFamilies(withEmoji(QStringList{codeFamily_}));
        result.setStyleHint(QFont::Monospace);
        result.setStyleStrategy(QFont::PreferNoShaping); // no ligatures in code
    } else {
        result.setFamilies(withEmoji(QStringList{textFamily_}));
    }
    result.setPixelSize(std::max(1, static_cast<int>(std::lround(font.size))));
    result.setWeight(static_cast<QFont::Weight>(font.weight));
    result.setItalic(font.isItalic);
    result.setCapitalization(capitalizationOf(font.caps));
    result.setHintingPreference(QFont::PreferVerticalHinting); // keeps the advances unrounded
    if (const double spacing = letterSpacingOf(font); spacing != 0)
        result.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    return result;
}

} // namespace quillmoth::markdown
