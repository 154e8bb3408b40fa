#include "MarkdownUI/Document/ParsePlan.h"

#include "Foundation/Limits.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

constexpr std::string_view kBlanks = " \t";

// What the comparison of a line with one level of nesting costs, and what one cell of a table.
constexpr std::uint64_t kStepsOfLevel = 20;
constexpr std::uint64_t kStepsOfCell = 1000;

bool isOneOf(std::string_view set, char c) {
    return set.find(c) != std::string_view::npos;
}

/// How many levels of quotes and lists the line may open.
std::uint64_t nestingOf(std::string_view line) {
    constexpr std::string_view kMarks = ">-+*.)";
    constexpr std::string_view kBetween = " \t0123456789";
    std::uint64_t marks = 0;
    for (const char c : line) {
        if (isOneOf(kMarks, c))
            ++marks;
        else if (!isOneOf(kBetween, c))
            break;
    }
    return marks;
}

/// True for the start of a bulleted item wherever it stands: what is searched ends before it.
bool startsItem(std::string_view line) {
    constexpr std::size_t kDeepestIndent = 3;
    constexpr std::string_view kBullets = "-+*";
    const std::size_t bullet = line.find_first_not_of(' ');
    return bullet <= kDeepestIndent && bullet + 2 < line.size() && isOneOf(kBullets, line[bullet]) &&
           isOneOf(kBlanks, line[bullet + 1]) && !isOneOf(kBlanks, line[bullet + 2]);
}

class Estimate {
public:
    void add(std::string_view line) {
        const bool isBlank = line.find_first_not_of(kBlanks) == std::string_view::npos;
        if (isBlank || startsItem(line))
            endSearch();
        if (isBlank)
            endTable();
        ++lines_;
        deepest_ = std::max(deepest_, nestingOf(line));
        searchedBytes_ += line.size() + 1;
        openers_ += static_cast<std::uint64_t>(
            std::count_if(line.begin(), line.end(), [](char c) { return c == '[' || c == '<' || c == '@'; }));
        ++rows_;
        bars_ = std::max(bars_, static_cast<std::uint64_t>(std::count(line.begin(), line.end(), '|')));
    }

    void end() {
        endSearch();
        endTable();
        steps_ += deepest_ * lines_ * kStepsOfLevel + cells_ * kStepsOfCell;
    }

    [[nodiscard]] std::uint64_t steps() const { return steps_; }

    [[nodiscard]] std::uint64_t cells() const { return cells_; }

private:
    void endSearch() {
        steps_ += openers_ * searchedBytes_;
        openers_ = searchedBytes_ = 0;
    }

    void endTable() {
        cells_ += bars_ * rows_;
        bars_ = rows_ = 0;
    }

    std::uint64_t steps_ = 0;
    std::uint64_t cells_ = 0;
    std::uint64_t lines_ = 0;
    std::uint64_t deepest_ = 0;
    // Of the paragraph at most.
    std::uint64_t openers_ = 0;
    std::uint64_t searchedBytes_ = 0;
    // Since the last blank line.
    std::uint64_t rows_ = 0;
    std::uint64_t bars_ = 0;
};

} // namespace

ParsePlan parsePlanOf(std::string_view text) {
    if (text.size() > limits::kMarkdown)
        return ParsePlan::never;
    Estimate estimate;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        estimate.add(text.substr(start, end - start));
        const bool isPair = text.substr(end).starts_with("\r\n");
        start = end + (isPair ? 2 : 1);
    }
    estimate.end();
    if (estimate.cells() > limits::kTableCells || estimate.steps() > limits::kParseSteps)
        return ParsePlan::never;
    const bool isLong = text.size() > limits::kParsedAtOnce || estimate.steps() > limits::kParseStepsAtOnce;
    return isLong ? ParsePlan::later : ParsePlan::atOnce;
}

} // namespace quillmoth::markdown
