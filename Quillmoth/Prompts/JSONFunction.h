#pragma once

#include "Foundation/Log.h"
#include "Foundation/Result.h"
#include "Quillmoth/Prompts/DocumentFile.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {
class Bundle;
}

/// Whole-array JSON files of the user's, and resources of the application.
namespace quillmoth::jsonFunction {

/// The bytes of a resource. A missing or unreadable one is a fatal fault.
[[nodiscard]] std::string load(const std::string& filename, const platform::Bundle& bundle);

/// Whether one of `records` has the same JSON text.
template<class Record>
bool holds(const std::vector<Record>& records, const Record& record) {
    const auto text = writeJSON(std::vector<Record>{record});
    return text && std::any_of(records.begin(), records.end(), [&](const Record& each) {
               const auto other = writeJSON(std::vector<Record>{each});
               return other && *other == *text;
           });
}

/// Of a file that cannot be read: what was saved beside it before, to be continued there.
template<class Record, class Read>
std::optional<std::vector<Record>> loadBeside(DocumentFile& file, Read&& read) {
    for (const std::string& name : file.filesBeside()) {
        const auto bytes = file.readBeside(name);
        if (auto records = bytes ? read(*bytes) : bytes.error()) {
            file.continueBeside(name);
            return std::move(*records);
        }
    }
    file.beginBeside();
    return std::nullopt;
}

/// Puts in front of `records` what was saved beside the file while it could not be read, but for what is
/// among `shipped`.
template<class Record, class Read>
void takeOverBeside(DocumentFile& file, Read&& read, const std::vector<Record>& shipped,
                    std::optional<std::vector<Record>>& records) {
    for (const std::string& name : file.filesBeside()) {
        const auto bytes = file.readBeside(name);
        auto beside = bytes ? read(*bytes) : bytes.error();
        if (!beside)
            continue;
        auto& all = records ? *records : records.emplace(shipped);
        std::erase_if(*beside, [&](const Record& each) { return holds(all, each) || holds(shipped, each); });
        all.insert(all.begin(), std::make_move_iterator(beside->begin()),
                   std::make_move_iterator(beside->end()));
        file.takeOver(name);
    }
}

/// The array in the user's file, or none on any failure, which is logged. `read` decodes a JSON text. A text
/// that it cannot decode is kept aside, since the next save replaces the file. What was saved beside a file
/// that could not be read is taken over, but for what is among `shipped`, and goes with the next save.
template<class Record, class Read>
std::optional<std::vector<Record>> loadJSONFile(DocumentFile& file, Read&& read,
                                                const std::vector<Record>& shipped = {}) {
    const auto bytes = file.read();
    Result<std::vector<Record>> found = bytes ? read(*bytes) : bytes.error();
    if (!found) {
        logLine("error reading data file:" + file.filename() + " :" + found.error().description);
        if (bytes)
            file.keepAside(*bytes, found.error().description);
    }
    if (file.isUnread())
        return loadBeside<Record>(file, read);
    auto records = found ? std::optional(std::move(*found)) : std::nullopt;
    takeOverBeside(file, read, shipped, records);
    return records;
}

/// Writes the whole array in the background; `saved` is called once it is on the disk. A failure is logged
/// and told by the file, and leaves it as it was.
template<class Record>
void saveJSONFile(const std::vector<Record>& array, DocumentFile& file, std::function<void()> saved = {}) {
    file.save(writeJSON(array), std::move(saved));
}

} // namespace quillmoth::jsonFunction
