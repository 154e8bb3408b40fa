#include "Quillmoth/Highlighting/LineScanner.h"

#include "Quillmoth/Highlighting/CharacterClass.h"
#include "Quillmoth/Highlighting/SwiftKeywords.h"

#include <algorithm>
#include <utility>

namespace quillmoth::highlighting {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kTakenAlone = "\"#@./`()"; // punctuation that may start something

bool isConstantName(std::string_view word) {
    return word.find('_') != kNone &&
           std::none_of(word.begin(), word.end(), [](char byte) { return byte >= 'a' && byte <= 'z'; });
}

/// True where a dot behind `byte` reaches into what stands before it.
bool endsExpression(char byte) {
    return isWordByte(byte) || (byte != '\0' && std::string_view(")]}?!>\"'`").find(byte) != kNone);
}

} // namespace

LineScanner::LineScanner(std::string_view line, LineState& state, std::vector<Piece>& pieces)
    : line_(line), state_(state), pieces_(pieces), outermostSingleLineString_(kNone) {}

void LineScanner::scan() {
    while (position_ < line_.size()) {
        if (isInString()) {
            scanString();
        } else if (isInBlockComment()) {
            scanBlockComment();
        } else {
            scanCode();
        }
    }
    if (isInString() || isInBlockComment()) { // opened by the last bytes of the line
        addTextSinceStart(isInString() ? TokenType::string : TokenType::comment);
    }
    closeWhatEndsWithTheLine();
}

void LineScanner::scanCode() {
    const char byte = line_[position_];
    switch (classOf(byte)) {
    case CharacterClass::blank: {
        const std::size_t start = std::exchange(position_, endOfBlanks(position_));
        add(start, position_, Piece::Kind::whitespace);
        return;
    }
    case CharacterClass::letter:
        return takeWord();
    case CharacterClass::digit:
        return takeNumber();
    case CharacterClass::other:
        break;
    }
    switch (byte) {
    case '"':
        return openString(0);
    case '#':
        return takeNumberSigns();
    case '@':
        return takeAttribute();
    case '.':
        return takeDots();
    case '/':
        return takeSlash();
    case '`':
        return takeBackquote();
    case '(':
        return takeOpeningParenthesis();
    case ')':
        return takeClosingParenthesis();
    default:
        return takePunctuation();
    }
}

void LineScanner::takeWord() {
    const std::size_t end = endOfWord(position_);
    const std::string_view word = line_.substr(position_, end - position_);
    const auto type = access_ == Access::none ? typeOfWord(word, end) : typeOfMember(word, end);
    take(end, type);
    namesFunction_ = word == "func";
}

std::optional<TokenType> LineScanner::typeOfWord(std::string_view word, std::size_t end) const {
    if (namesFunction_) {
        return TokenType::call;
    }
    if (isKeyword(word, end)) {
        return TokenType::keyword;
    }
    if (isUpper(word.front()) && !isConstantName(word)) {
        return TokenType::type;
    }
    return at(end) == '(' ? std::optional(TokenType::call) : std::nullopt;
}

std::optional<TokenType> LineScanner::typeOfMember(std::string_view word, std::size_t end) const {
    if (word == "self" || word == "init") {
        return TokenType::keyword;
    }
    if (access_ == Access::member && isUpper(word.front()) && !isConstantName(word)) {
        return TokenType::type;
    }
    if (at(end) == '(') {
        return TokenType::call;
    }
    return access_ == Access::member ? TokenType::property : TokenType::dotAccess;
}

bool LineScanner::isKeyword(std::string_view word, std::size_t end) const {
    switch (keywordClass(word)) {
    case KeywordClass::none:
        return false;
    case KeywordClass::literal:
        return true;
    case KeywordClass::reserved: {
        const bool startsArgument = before_ == '(' || before_ == ',';
        return !(startsArgument && at(end) == ':');
    }
    case KeywordClass::contextual:
        break;
    }
    const char next = at(endOfBlanks(end));
    return next == '{' || next == '}' || (at(end) != next && classOf(next) == CharacterClass::letter);
}

void LineScanner::takeNumber() {
    const auto isDigit = [this](std::size_t index) { return classOf(at(index)) == CharacterClass::digit; };
    const auto endOfDigits = [&](std::size_t index) {
        while (isDigit(index) || at(index) == '_') {
            ++index;
        }
        return index;
    };
    const char prefix = line_[position_] == '0' ? at(position_ + 1) : '\0';
    std::size_t end = position_;
    if (prefix == 'x' || prefix == 'b' || prefix == 'o') {
        end = endOfWord(position_);
    } else {
        end = endOfDigits(position_);
        if (at(end) == '.' && isDigit(end + 1)) {
            end = endOfDigits(end + 1);
        }
        if (at(end) == 'e' || at(end) == 'E') {
            const std::size_t sign = at(end + 1) == '+' || at(end + 1) == '-' ? 1 : 0;
            end = isDigit(end + 1 + sign) ? endOfDigits(end + 1 + sign) : end;
        }
    }
    take(end, TokenType::number);
    if (const std::size_t unit = endOfWord(end); unit > end) {
        takePlain(unit);
    }
}

void LineScanner::takeBackquote() {
    const std::size_t end = endOfWord(position_ + 1);
    if (end == position_ + 1 || at(end) != '`') {
        return takePlain(position_ + 1);
    }
    const Access access = access_;
    const bool isCall = namesFunction_ || at(end + 1) == '(';
    if (isCall) {
        take(end + 1, TokenType::call);
    } else if (access == Access::none) {
        takePlain(end + 1);
    } else {
        take(end + 1, access == Access::member ? TokenType::property : TokenType::dotAccess);
    }
}

void LineScanner::takeDots() {
    const std::size_t end = endOfRun(position_, '.', line_.size());
    const bool isOne = end == position_ + 1;
    const bool namesNext = classOf(at(end)) == CharacterClass::letter || at(end) == '`';
    const bool reachesIn = position_ > 0 && endsExpression(line_[position_ - 1]);
    if (isOne && !reachesIn && classOf(at(end)) == CharacterClass::digit) {
        return takeNumber(); // ".5"
    }
    takePlain(end);
    if (isOne && namesNext) {
        access_ = reachesIn ? Access::member : Access::leadingDot;
    }
}

void LineScanner::takeAttribute() {
    const std::size_t end = endOfWord(position_ + 1);
    const bool isInsideName = position_ > 0 && isWordByte(line_[position_ - 1]);
    if (isInsideName || classOf(at(position_ + 1)) != CharacterClass::letter) {
        return takePlain(position_ + 1);
    }
    take(end, isUpper(line_[position_ + 1]) ? TokenType::preprocessing : TokenType::keyword);
}

void LineScanner::takeNumberSigns() {
    const std::size_t end = endOfRun(position_, '#', line_.size());
    const std::size_t count = end - position_;
    if (at(end) == '"') {
        return openString(count);
    }
    if (count == 1 && classOf(at(end)) == CharacterClass::letter) {
        return take(endOfWord(end), TokenType::preprocessing);
    }
    takePlain(end);
}

void LineScanner::takeSlash() {
    const bool isInAddress = position_ > 0 && line_[position_ - 1] == ':'; // "https://"
    if (at(position_ + 1) == '/' && !isInAddress) {
        return take(line_.size(), TokenType::comment);
    }
    if (at(position_ + 1) == '*' && opensBlockComment()) {
        start_ = position_;
        position_ += 2;
        return push({Context::Kind::blockComment, 1});
    }
    takePlain(endOfRun(position_, '/', line_.size()));
}

/// A path pattern such as "src/*" must not turn the rest of a text into a comment.
bool LineScanner::opensBlockComment() {
    const char previous = position_ > 0 ? line_[position_ - 1] : ' ';
    if (!isWordByte(previous) && previous != '.' && previous != '*' && previous != '~' && previous != '}') {
        return true;
    }
    if (!lastCommentEnd_) {
        lastCommentEnd_ = line_.rfind("*/");
    }
    return *lastCommentEnd_ != kNone && *lastCommentEnd_ >= position_ + 2;
}

void LineScanner::takePunctuation() {
    std::size_t end = position_ + 1;
    while (end < line_.size() && classOf(line_[end]) == CharacterClass::other &&
           kTakenAlone.find(line_[end]) == kNone) {
        ++end;
    }
    takePlain(end);
}

void LineScanner::takeOpeningParenthesis() {
    takePlain(position_ + 1);
    if (!state_.contexts.empty()) {
        ++state_.contexts.back().count;
    }
}

void LineScanner::takeClosingParenthesis() {
    if (state_.contexts.empty()) {
        return takePlain(position_ + 1);
    }
    if (state_.contexts.back().count > 0) {
        --state_.contexts.back().count;
        return takePlain(position_ + 1);
    }
    start_ = position_++;
    pop();
}

void LineScanner::openString(std::size_t numberSigns) {
    start_ = position_;
    position_ += numberSigns;
    const bool isMultiLine = endOfRun(position_, '"', 3) == position_ + 3;
    position_ += isMultiLine ? 3 : 1;
    push({isMultiLine ? Context::Kind::multiLineString : Context::Kind::singleLineString,
          static_cast<std::uint32_t>(numberSigns)});
    access_ = Access::none;
    namesFunction_ = false;
}

void LineScanner::scanString() {
    const Context string = state_.contexts.back();
    const std::size_t depth = state_.contexts.size();
    while (position_ < line_.size() && state_.contexts.size() == depth) {
        if (line_[position_] == '\\') {
            takeEscape(string.count);
        } else if (line_[position_] == '"') {
            takeQuotes(string);
        } else {
            ++position_;
        }
    }
    if (position_ == line_.size() && state_.contexts.size() == depth) {
        addTextSinceStart(TokenType::string);
    }
}

void LineScanner::takeEscape(std::size_t numberSigns) {
    const std::size_t signsEnd = endOfRun(position_ + 1, '#', numberSigns);
    const bool isEscape = signsEnd - (position_ + 1) == numberSigns;
    if (!isEscape) {
        position_ = signsEnd;
    } else if (at(signsEnd) == '(') {
        position_ = signsEnd + 1;
        addTextSinceStart(TokenType::string);
        push({Context::Kind::interpolation, 0});
        before_ = '(';
    } else {
        position_ = std::min(signsEnd + 1, line_.size());
    }
}

void LineScanner::takeQuotes(const Context& string) {
    const bool isMultiLine = string.kind == Context::Kind::multiLineString;
    const std::size_t quotesEnd = endOfRun(position_, '"', isMultiLine ? line_.size() : 1);
    const bool isEnough = !isMultiLine || quotesEnd - position_ >= 3;
    const std::size_t signsEnd = endOfRun(quotesEnd, '#', string.count);
    position_ = signsEnd;
    if (isEnough && signsEnd - quotesEnd == string.count) {
        addTextSinceStart(TokenType::string);
        before_ = '"';
        pop();
    }
}

void LineScanner::scanBlockComment() {
    std::uint32_t& depth = state_.contexts.back().count;
    while (position_ < line_.size() && depth > 0) {
        const char byte = line_[position_];
        const char next = at(position_ + 1);
        const bool opens = byte == '/' && next == '*';
        const bool closes = byte == '*' && next == '/';
        depth += opens ? 1 : 0;
        depth -= closes ? 1 : 0;
        position_ += opens || closes ? 2 : 1;
    }
    addTextSinceStart(TokenType::comment);
    if (depth == 0) {
        pop();
    }
}

void LineScanner::push(Context context) {
    if (context.kind == Context::Kind::singleLineString && outermostSingleLineString_ == kNone) {
        outermostSingleLineString_ = state_.contexts.size();
    }
    state_.contexts.push_back(context);
}

void LineScanner::pop() {
    state_.contexts.pop_back();
    if (outermostSingleLineString_ != kNone && state_.contexts.size() <= outermostSingleLineString_) {
        outermostSingleLineString_ = kNone;
    }
}

void LineScanner::closeWhatEndsWithTheLine() {
    if (outermostSingleLineString_ != kNone) {
        state_.contexts.resize(outermostSingleLineString_);
    }
}

bool LineScanner::isInString() const {
    if (state_.contexts.empty()) {
        return false;
    }
    const Context::Kind kind = state_.contexts.back().kind;
    return kind == Context::Kind::multiLineString || kind == Context::Kind::singleLineString;
}

bool LineScanner::isInBlockComment() const {
    return !state_.contexts.empty() && state_.contexts.back().kind == Context::Kind::blockComment;
}

std::size_t LineScanner::endOfWord(std::size_t start) const {
    while (start < line_.size() && isWordByte(line_[start])) {
        ++start;
    }
    return start;
}

std::size_t LineScanner::endOfBlanks(std::size_t start) const {
    while (start < line_.size() && isBlank(line_[start])) {
        ++start;
    }
    return start;
}

std::size_t LineScanner::endOfRun(std::size_t start, char byte, std::size_t most) const {
    std::size_t end = start;
    while (end < line_.size() && line_[end] == byte && end - start < most) {
        ++end;
    }
    return end;
}

char LineScanner::at(std::size_t position) const {
    return position < line_.size() ? line_[position] : '\0';
}

void LineScanner::take(std::size_t end, std::optional<TokenType> type) {
    add(position_, end, type ? Piece::Kind::token : Piece::Kind::plainText, type.value_or(TokenType{}));
    position_ = end;
    before_ = line_[end - 1];
    access_ = Access::none;
    namesFunction_ = false;
}

/// The text of a string or comment; blanks that start the line are no part of it.
void LineScanner::addTextSinceStart(TokenType type) {
    if (start_ == 0) {
        const std::size_t blanks = std::min(endOfBlanks(0), position_);
        add(0, blanks, Piece::Kind::whitespace);
        start_ = blanks;
    }
    add(start_, position_, Piece::Kind::token, type);
    start_ = position_;
}

void LineScanner::add(std::size_t start, std::size_t end, Piece::Kind kind, TokenType type) {
    if (start == end) {
        return;
    }
    const bool joins = kind == Piece::Kind::plainText && !pieces_.empty() && pieces_.back().kind == kind &&
                       pieces_.back().start + pieces_.back().length == start;
    if (joins) {
        pieces_.back().length += static_cast<std::uint32_t>(end - start);
    } else {
        pieces_.push_back(
            {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start), kind, type});
    }
}

} // namespace quillmoth::highlighting
