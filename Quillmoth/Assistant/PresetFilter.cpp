#include "Quillmoth/Assistant/PresetFilter.h"

#include "Foundation/Text.h"

#include <cstring>

namespace quillmoth {

namespace {

/// Not part of any UTF-8 text.
constexpr char kSeparator = '\xFF';

/// The bit of a letter, a digit or another sign of upper-case ASCII; 0 for every other byte.
std::uint64_t letterOf(char byte) {
    constexpr unsigned kFirst = 0x20;
    const unsigned place = static_cast<unsigned char>(byte) - kFirst;
    return place < 64 ? std::uint64_t{1} << place : 0;
}

} // namespace

void PresetFilter::Names::add(std::string_view name, std::int64_t index) {
    const std::string upper = uppercased(name);
    std::uint64_t present = 0;
    for (const char c : upper) {
        ++counts[static_cast<unsigned char>(c)];
        present |= letterOf(c);
    }
    letters.push_back(present);
    text.append(upper) += kSeparator;
    ends.push_back(text.size());
    indices.push_back(index);
}

/// Its rarest byte first, as that one excludes the most places, then the next rarest.
PresetFilter::Names::Anchors PresetFilter::Names::anchorsOf(std::string_view upper) const {
    const auto count = [&](std::size_t i) { return counts[static_cast<unsigned char>(upper[i])]; };
    Anchors anchors{0, upper.size() - 1};
    for (std::size_t i = 1; i < upper.size(); ++i) {
        if (count(i) < count(anchors.first))
            anchors = {i, anchors.first};
        else if (i != anchors.first && count(i) < count(anchors.second))
            anchors.second = i;
    }
    return anchors;
}

std::size_t PresetFilter::Names::find(std::string_view upper, Anchors anchors, std::size_t from) const {
    // A vector of the compiler's: compared in one instruction where the processor can.
    using Block = std::uint8_t __attribute__((vector_size(16)));
    const Block first = Block{} + static_cast<std::uint8_t>(upper[anchors.first]);
    const Block second = Block{} + static_cast<std::uint8_t>(upper[anchors.second]);
    for (; from + upper.size() + sizeof(Block) <= text.size(); from += sizeof(Block)) {
        Block firsts;
        Block seconds;
        std::memcpy(&firsts, text.data() + from + anchors.first, sizeof(Block));
        std::memcpy(&seconds, text.data() + from + anchors.second, sizeof(Block));
        const auto both = (firsts == first) & (seconds == second);
        std::array<std::uint64_t, 2> halves;
        std::memcpy(halves.data(), &both, sizeof(both));
        if ((halves[0] | halves[1]) == 0)
            continue;
        for (std::size_t i = halves[0] == 0 ? sizeof(Block) / 2 : 0; i < sizeof(Block); ++i) {
            if (both[i] != 0 && text.compare(from + i, upper.size(), upper) == 0)
                return from + i;
        }
    }
    return text.find(upper, from);
}

std::vector<std::int64_t> PresetFilter::Names::holding(std::string_view upper) const {
    if (upper.empty())
        return indices;
    // Most names may have it: to look for each place of it takes long.
    if (const std::uint64_t letter = letterOf(upper.front()); upper.size() == 1 && letter != 0)
        return holdingLetter(letter);
    std::vector<std::int64_t> found;
    const Anchors anchors = anchorsOf(upper);
    std::size_t name = 0;
    for (auto hit = find(upper, anchors, 0); hit != std::string::npos;
         hit = find(upper, anchors, ends[name - 1])) {
        while (ends[name] <= hit)
            ++name;
        found.push_back(indices[name++]);
    }
    return found;
}

std::vector<std::int64_t> PresetFilter::Names::holdingLetter(std::uint64_t letter) const {
    std::vector<std::int64_t> found = indices;
    std::size_t count = 0;
    // Without a branch, which would be mispredicted for every other name.
    for (std::size_t name = 0; name < letters.size(); ++name) {
        found[count] = found[name];
        count += (letters[name] & letter) != 0 ? 1 : 0;
    }
    found.resize(count);
    return found;
}

std::vector<std::int64_t> PresetFilter::matching(const std::vector<PromptData>& prompts,
                                                 std::string_view search, bool context) {
    if (!isValid_)
        rebuild(prompts);
    return (context ? context_ : nonContext_).holding(uppercased(search));
}

void PresetFilter::rebuild(const std::vector<PromptData>& prompts) {
    context_ = {};
    nonContext_ = {};
    for (std::size_t i = 0; i < prompts.size(); ++i) {
        const auto& given = prompts[i].promptType;
        const std::string_view type = given ? std::string_view(*given) : "context";
        if (type == "context")
            context_.add(prompts[i].name, static_cast<std::int64_t>(i));
        else if (type == "nonContext")
            nonContext_.add(prompts[i].name, static_cast<std::int64_t>(i));
    }
    isValid_ = true;
}

} // namespace quillmoth
