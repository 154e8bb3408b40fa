#include "Quillmoth/Prompts/DocumentFile.h"

#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Platform/Documents.h"
#include "Quillmoth/Prompts/DocumentFolder.h"

#include <utility>

namespace quillmoth {

namespace {

/// More files beside one than these are not looked for.
constexpr int kMostBeside = 100;

Result<std::string> readText(const std::string& filename, platform::Documents& documents) {
    const auto path = documentPath(filename, documents);
    if (!path)
        return path.error();
    auto bytes = documents.readFile(*path);
    if (bytes && !isValidUTF8(*bytes))
        return Error{"Could not read \"" + *path + "\": It is no text in UTF-8"};
    return bytes;
}

bool stands(const std::string& filename, platform::Documents& documents) {
    const auto path = documentPath(filename, documents);
    return path && documents.fileExists(*path);
}

std::string nameBeside(const std::string& filename, int number) {
    return filename + ".new-" + std::to_string(number);
}

} // namespace

struct DocumentFile::State {
    std::string filename;
    std::string content;
    platform::Documents& documents;
    /// The name of the file to which it is saved.
    std::string target;
    bool isUnread = false;
    std::vector<std::string> takenOver = {};
    std::string fault = {};
    Signal<const std::string&> faults = {};

    void cannotBeUsed(const std::string& reason, const std::string& whatBecameOfIt) {
        fault = filename + " cannot be used: " + reason + "." + whatBecameOfIt;
    }

    void refuse(const std::string& reason) {
        isUnread = true;
        cannotBeUsed(reason,
                     " It stays as it is. What is new is kept beside it, and comes together with it when "
                     "Quillmoth starts and can read it.");
    }

    void saveFailed(const std::string& reason) {
        logLine(reason);
        logLine("error writing data");
        faults.emit(
            "Your " + content + " could not be saved. " + reason +
            ". The file is as it was. The change holds until Quillmoth ends, and is saved with the next one "
            "that can be.");
    }

    void saved() {
        for (const std::string& name : std::exchange(takenOver, {})) {
            if (const auto path = documentPath(name, documents))
                documents.removeFile(*path, [](const Result<void>&) {});
        }
    }
};

DocumentFile::DocumentFile(std::string filename, std::string content, platform::Documents& documents)
    : state_(new State{
          .filename = filename, .content = std::move(content), .documents = documents, .target = filename}) {}

const std::string& DocumentFile::filename() const {
    return state_->filename;
}

Result<std::string> DocumentFile::read() {
    auto bytes = readText(state_->filename, state_->documents);
    if (!bytes && stands(state_->filename, state_->documents))
        state_->refuse(bytes.error().description);
    return bytes;
}

void DocumentFile::keepAside(const std::string& bytes, const std::string& reason) {
    const auto kept = keepDamaged(state_->filename, bytes, state_->documents);
    if (!kept)
        state_->refuse(kept.error().description);
    else
        state_->cannotBeUsed(reason, kept->empty() ? "" : " What it held is kept in \"" + *kept + "\".");
}

bool DocumentFile::isUnread() const {
    return state_->isUnread;
}

std::vector<std::string> DocumentFile::filesBeside() const {
    std::vector<std::string> names;
    for (int number = 1; number <= kMostBeside; ++number) {
        if (const std::string name = nameBeside(state_->filename, number); stands(name, state_->documents))
            names.push_back(name);
    }
    return names;
}

Result<std::string> DocumentFile::readBeside(const std::string& name) const {
    return readText(name, state_->documents);
}

void DocumentFile::continueBeside(const std::string& name) {
    state_->target = name;
}

void DocumentFile::beginBeside() {
    int number = 1;
    while (number <= kMostBeside && stands(nameBeside(state_->filename, number), state_->documents))
        ++number;
    state_->target = nameBeside(state_->filename, number);
}

void DocumentFile::takeOver(const std::string& name) {
    state_->takenOver.push_back(name);
}

void DocumentFile::save(Result<std::string> json, std::function<void()> saved) {
    const auto folder = makeDocumentFolder(state_->documents);
    if (!folder || !json) {
        state_->saveFailed(folder ? json.error().description : folder.error().description);
        return;
    }
    state_->documents.saveFile(
        *folder + "/" + state_->target, std::move(*json),
        [weak = std::weak_ptr<State>(state_), saved = std::move(saved)](const Result<void>& result) {
            const auto state = weak.lock();
            if (!state)
                return;
            if (!result) {
                state->saveFailed(result.error().description);
                return;
            }
            state->saved();
            if (saved)
                saved();
        });
}

const std::string& DocumentFile::fault() const {
    return state_->fault;
}

Subscription DocumentFile::onFault(std::function<void(const std::string& words)> subscriber) {
    return state_->faults.subscribe(std::move(subscriber));
}

} // namespace quillmoth
