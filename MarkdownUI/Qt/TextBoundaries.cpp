#include "MarkdownUI/Qt/TextBoundaries.h"

#include "MarkdownUI/Qt/UTF16Index.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace quillmoth::markdown {

namespace {

constexpr std::size_t kReach = 512; // bytes looked at on each side

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The surroundings of an offset, between whole characters of the text.
class Surroundings {
public:
    Surroundings(std::string_view text, std::size_t offset)
        : start_(startOf(text, offset)), index_(text.substr(start_, endOf(text, offset) - start_)),
          offset_(index_.utf16Of(offset - start_)) {}

    [[nodiscard]] const QString& text() const { return index_.text(); }

    [[nodiscard]] int offset() const { return offset_; }

    [[nodiscard]] std::size_t byteOf(qsizetype position) const {
        return start_ + index_.byteOf(static_cast<int>(position));
    }

private:
    static std::size_t startOf(std::string_view text, std::size_t offset) {
        std::size_t start = offset - std::min(offset, kReach);
        while (start < text.size() && isContinuation(text[start]))
            ++start;
        return start;
    }

    static std::size_t endOf(std::string_view text, std::size_t offset) {
        std::size_t end = std::min(text.size(), offset + kReach);
        while (end < text.size() && isContinuation(text[end]))
            ++end;
        return end;
    }

    std::size_t start_;
    UTF16Index index_;
    int offset_;
};

bool isWordLike(QChar unit) {
    return unit.isLetterOrNumber() || unit == QLatin1Char('_') || unit.isSurrogate();
}

} // namespace

std::pair<std::size_t, std::size_t> wordAround(std::string_view text, std::size_t offset) {
    const Surroundings around(text, offset);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, around.text());
    finder.setPosition(around.offset());
    const bool startsHere = finder.isAtBoundary() && around.offset() < around.text().size();
    const qsizetype start =
        startsHere ? around.offset() : std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    finder.setPosition(start);
    const qsizetype end = finder.toNextBoundary();
    return {around.byteOf(start), around.byteOf(end < 0 ? around.text().size() : end)};
}

std::pair<std::size_t, std::size_t> lineAround(std::string_view text, std::size_t offset) {
    const std::size_t before = offset == 0 ? std::string_view::npos : text.rfind('\n', offset - 1);
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    return {start, std::min(text.find('\n', offset), text.size())};
}

std::size_t nextCharacter(std::string_view text, std::size_t offset) {
    const Surroundings around(text, offset);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, around.text());
    finder.setPosition(around.offset());
    const qsizetype next = finder.toNextBoundary();
    return around.byteOf(next < 0 ? around.text().size() : next);
}

std::size_t previousCharacter(std::string_view text, std::size_t offset) {
    const Surroundings around(text, offset);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, around.text());
    finder.setPosition(around.offset());
    return around.byteOf(std::max<qsizetype>(finder.toPreviousBoundary(), 0));
}

std::size_t nextWord(std::string_view text, std::size_t offset) {
    const Surroundings around(text, offset);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, around.text());
    finder.setPosition(around.offset());
    for (qsizetype end = finder.toNextBoundary(); end >= 0; end = finder.toNextBoundary()) {
        if (isWordLike(around.text().at(end - 1)))
            return around.byteOf(end);
    }
    return around.byteOf(around.text().size());
}

std::size_t previousWord(std::string_view text, std::size_t offset) {
    const Surroundings around(text, offset);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, around.text());
    finder.setPosition(around.offset());
    for (qsizetype start = finder.toPreviousBoundary(); start >= 0; start = finder.toPreviousBoundary()) {
        if (start < around.text().size() && isWordLike(around.text().at(start)))
            return around.byteOf(start);
    }
    return around.byteOf(0);
}

} // namespace quillmoth::markdown
