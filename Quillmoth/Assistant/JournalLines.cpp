#include "Quillmoth/Assistant/JournalLines.h"

#include "Foundation/JSONReader.h"
#include "Foundation/JSONWriter.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

static bool visitFields(auto& fields, RecordOf<JournalLine> auto& line) {
    return fields.required("conversation", line.conversation) && fields.optional("created", line.created) &&
           fields.optional("role", line.role) && fields.optional("content", line.content) &&
           fields.optional("more", line.more) && fields.optional("done", line.done);
}

std::string journalText(const JournalLine& line) {
    std::string text;
    JSONWriter(text).write(line);
    return text += '\n';
}

namespace {

void carryOut(JournalLine line, JournalContent& content, platform::UUIDSource& uuidSource) {
    auto& all = content.conversations;
    auto found = std::find_if(all.begin(), all.end(), [&](const JournalledConversation& each) {
        return each.key == line.conversation;
    });
    if (line.done.value_or(false)) {
        if (found != all.end())
            all.erase(found);
        return;
    }
    if (found == all.end())
        found = all.insert(all.end(), {.key = line.conversation});
    if (line.created) {
        found->created = *line.created;
        found->messages.clear();
    }
    if (line.role && line.content)
        found->messages.push_back(
            makeChatMessage(uuidSource, std::move(*line.role), std::move(*line.content)));
    if (line.more && !found->messages.empty())
        found->messages.back().content += *line.more;
}

} // namespace

JournalContent readJournal(std::string_view text, platform::UUIDSource& uuidSource) {
    JournalContent content;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const bool isComplete = end != std::string_view::npos;
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(isComplete ? end + 1 : text.size());
        if (line.empty())
            continue;
        if (auto read = readJSON<JournalLine>(line))
            carryOut(std::move(*read), content, uuidSource);
        else
            content.damagedLines += isComplete ? 1 : 0;
    }
    return content;
}

} // namespace quillmoth
