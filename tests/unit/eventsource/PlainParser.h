#pragma once

#include "EventSource/Event.h"
#include "Foundation/Text.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::test {

/// The cutting of blocks in its plainest form: searches everything again for each block and erases what it
/// has used. The measure for what EventStreamParser gives, and for how fast.
class PlainParser {
public:
    std::vector<Event> append(std::string_view data) {
        buffer_.append(data);
        std::vector<Event> events;
        for (;;) {
            std::size_t position = std::string::npos;
            std::size_t length = 0;
            for (const std::string_view delimiter : {"\r\n\r\n", "\n\n", "\r\r"}) {
                position = buffer_.find(delimiter);
                length = delimiter.size();
                if (position != std::string::npos)
                    break;
            }
            if (position == std::string::npos)
                return events;
            const std::string block = buffer_.substr(0, position);
            buffer_.erase(0, position + length);
            if (isValidUTF8(block) && !block.starts_with(':'))
                events.push_back(parseEvent(block));
        }
    }

private:
    std::string buffer_;
};

} // namespace quillmoth::test
