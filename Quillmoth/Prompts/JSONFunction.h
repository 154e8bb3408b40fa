#pragma once

#include "Foundation/Log.h"
#include "Foundation/Result.h"

#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {
class Bundle;
class Documents;
} // namespace quillmoth::platform

/// Whole-array JSON files in the folder "Quillmoth" of the user's documents, and resources of the
/// application.
namespace quillmoth::jsonFunction {

/// The bytes of a resource. A missing or unreadable one is a fatal fault.
[[nodiscard]] std::string load(const std::string& filename, const platform::Bundle& bundle);

/// The bytes of the user's file `filename`.
[[nodiscard]] Result<std::string> readDocument(const std::string& filename, platform::Documents& documents);

/// Replaces the user's file `filename`, making the folder where it is missing.
[[nodiscard]] Result<void> writeDocument(const std::string& filename, const Result<std::string>& json,
                                         platform::Documents& documents);

/// Whether the user's file is there, whatever it holds.
[[nodiscard]] bool documentExists(const std::string& filename, platform::Documents& documents);

/// Copies what the user's file held to the first free "<filename>.damaged-<n>" beside it, and logs where;
/// once for the same bytes. The path of the copy; empty where there is none.
std::string keepAside(const std::string& filename, const std::string& bytes, platform::Documents& documents);

/// The array in the user's file, or none on any failure, which is logged. `read` decodes a JSON text. Bytes
/// that it cannot decode are kept aside, since the next save replaces the file. Where the file is there and
/// of no use, `problem` says so in words for the user.
template<class Record, class Read>
std::optional<std::vector<Record>> loadJSONFile(const std::string& filename, platform::Documents& documents,
                                                Read&& read, std::string& problem) {
    const auto bytes = readDocument(filename, documents);
    Result<std::vector<Record>> records = bytes ? read(*bytes) : bytes.error();
    if (records)
        return std::move(*records);
    logLine("error reading data file:" + filename + " :" + records.error().description);
    if (bytes || documentExists(filename, documents))
        problem = filename + " cannot be used: " + records.error().description + ".";
    const std::string kept = bytes ? keepAside(filename, *bytes, documents) : "";
    if (!kept.empty())
        problem += " What it held is kept in \"" + kept + "\".";
    return std::nullopt;
}

/// Writes the whole array. A failure is logged and leaves the file as it was.
template<class Record>
void saveJSONFile(const std::vector<Record>& array, const std::string& filename,
                  platform::Documents& documents) {
    if (!writeDocument(filename, writeJSON(array), documents))
        logLine("error writing data");
}

} // namespace quillmoth::jsonFunction
