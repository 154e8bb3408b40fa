#pragma once

#include "Platform/Linux/AtSpi/AccessibilityBus.h"
#include "Platform/Linux/AtSpi/FieldReport.h"
#include "Platform/Linux/AtSpi/FocusSearch.h"
#include "Platform/Linux/AtSpi/SelectionReader.h"
#include "Platform/Linux/AtSpi/TextWriter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>

namespace quillmoth::platform {

/// What one request of the main thread may take: it is cancelled when nobody waits for it any more.
struct Request {
    GCancellable* cancellable = nullptr;
    Operation::Clock::time_point deadline;
};

struct FocusAnswer {
    AXError error = kAXErrorSuccess;
    ObjectReference object;
};

struct SelectedTextAnswer {
    TextAnswer answer;
    /// What the application tells of its selection is not to be relied on: PRIMARY says more.
    bool isDoubtful = false;
};

/// The program's requests to the accessibility bus. An application that has not answered in time is left
/// alone until it answers a question that is kept waiting for it. The accessibility thread.
class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Connects, so that events are known by the first request.
    void prepare(const Request& request);

    [[nodiscard]] bool isTrusted(const Request& request);
    bool enable(const Request& request);

    [[nodiscard]] bool answers(const Request& request) { return bus_.answers(request.cancellable); }

    /// Other than `own`, which is not asked.
    [[nodiscard]] std::optional<std::int64_t> activeProcess(const Request& request, std::int64_t own);

    [[nodiscard]] FieldReport report(const Request& request, std::int64_t process);

    [[nodiscard]] FocusAnswer focusedElement(const Request& request, std::int64_t process);

    /// Makes an application that builds its accessible tree on demand build it.
    AXError wake(const Request& request, std::int64_t process);

    [[nodiscard]] SelectedTextAnswer selectedText(const Request& request, const ObjectReference& object);
    [[nodiscard]] SelectedTextAnswer gatheredText(const Request& request, const ObjectReference& object);
    [[nodiscard]] TextAnswer value(const Request& request, const ObjectReference& object);
    [[nodiscard]] RangeAnswer selectedRange(const Request& request, const ObjectReference& object);
    AXError setSelectedRange(const Request& request, const ObjectReference& object, CFRange range);
    AXError setValue(const Request& request, const ObjectReference& object, const std::string& text);
    [[nodiscard]] PasteAnswer preparePaste(const Request& request, const ObjectReference& object,
                                           const std::string& text);
    [[nodiscard]] PasteAnswer prepareReplacement(const Request& request, const ObjectReference& object,
                                                 const std::string& newText);
    /// kAXErrorSuccess where the element answers, still holds `before`, and takes edits.
    AXError checkStillEditable(const Request& request, const ObjectReference& object,
                               const std::string& before);
    /// kAXErrorSuccess once the text is another one than `before`.
    AXError awaitChange(const Request& request, const ObjectReference& object, const std::string& before);

private:
    using Unresponsive = std::set<std::string>;

    template<class Answer>
    Answer perform(const Request& request, const std::function<Answer(Operation&)>& body);
    template<class Answer>
    Answer withText(const Request& request, const ObjectReference& object,
                    const std::function<Answer(const TextElement&)>& body);

    void onSignal(const std::string& sender, const std::string& path, const std::string& event,
                  GVariant* parameters);
    void leaveAlone(GDBusConnection* bus, const std::string& name);
    [[nodiscard]] bool isLeftAlone(Operation& operation, std::int64_t process);

    Applications applications_;
    FocusTracker tracker_;
    WalkMemory walks_;
    /// Shared with the questions that are still open.
    std::shared_ptr<Unresponsive> unresponsive_ = std::make_shared<Unresponsive>();
    AccessibilityBus bus_;
};

} // namespace quillmoth::platform
