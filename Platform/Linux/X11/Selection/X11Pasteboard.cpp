#include "Platform/Linux/X11/Selection/X11Pasteboard.h"

#include "Platform/Linux/X11/Selection/X11ClipboardExchange.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace quillmoth::platform {

namespace {

using Clock = X11SelectionConnection::Clock;

constexpr std::chrono::milliseconds kReadLimit{750};
/// The thread gives up a little earlier than the one who waits for it.
constexpr std::chrono::milliseconds kWaitMargin{60};
constexpr std::chrono::milliseconds kHandOverLimit{1000};

/// A content of the toolkit's, by names, for atoms belong to the thread.
struct NamedContent {
    std::optional<std::string> text;
    std::vector<std::pair<std::string, std::string>> others;
};

/// What this process's own text fields have put on the clipboard. The toolkit answers for them on the main
/// thread, which is the one that would wait.
std::optional<NamedContent> toolkitsOwn() {
    const QClipboard* clipboard = qGuiApp != nullptr ? QGuiApplication::clipboard() : nullptr;
    if (clipboard == nullptr || !clipboard->ownsClipboard() || clipboard->mimeData() == nullptr)
        return std::nullopt;
    const QMimeData& data = *clipboard->mimeData();
    NamedContent content;
    if (data.hasText())
        content.text = data.text().toStdString();
    for (const QString& format : data.formats()) {
        if (!format.startsWith("text/plain") && !format.startsWith("application/x-qt"))
            content.others.emplace_back(format.toStdString(), data.data(format).toStdString());
    }
    return content;
}

SelectionContentRef withAtoms(X11SelectionConnection& connection, std::optional<NamedContent> named) {
    if (!named)
        return nullptr;
    SelectionContent content{.text = std::move(named->text), .others = {}, .isComplete = true};
    for (auto& [name, bytes] : named->others) {
        const xcb_atom_t target = connection.atom(name);
        content.others.push_back(
            {.target = target, .type = target, .itemBits = 8, .bytes = std::move(bytes)});
    }
    return std::make_shared<const SelectionContent>(std::move(content));
}

} // namespace

/// Carries out one call after the other, and in between answers other programs.
class X11Pasteboard::Thread {
public:
    using Work = std::function<void(X11ClipboardExchange&)>;

    Thread() : thread_([this] { run(); }) {}

    ~Thread() {
        isStopping_ = true;
        connection_.wake();
        thread_.join();
    }

    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    X11SelectionConnection& connection() { return connection_; }

    /// Does not wait.
    void post(Work work) {
        {
            const std::lock_guard lock(mutex_);
            jobs_.push_back(std::move(work));
        }
        connection_.wake();
    }

    /// Waits until it is done, or for the deadline; what comes late then has no effect on the caller.
    template<class Answer>
    std::optional<Answer> ask(std::function<Answer(X11ClipboardExchange&)> work, Clock::time_point deadline) {
        auto answer = std::make_shared<std::optional<Answer>>();
        post([this, answer, work = std::move(work)](X11ClipboardExchange& clipboard) {
            Answer found = work(clipboard);
            const std::lock_guard lock(mutex_);
            answer->emplace(std::move(found));
            changed_.notify_all();
        });
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, deadline, [&answer] { return answer->has_value(); });
        return std::move(*answer);
    }

    /// For what is quick: a read that is under way is given up for it.
    void order(const std::function<void(X11ClipboardExchange&)>& work) {
        isUrgent_ = true;
        ask<bool>(
            [work](X11ClipboardExchange& clipboard) {
                work(clipboard);
                return true;
            },
            Clock::now() + kReadLimit);
    }

    bool awaitFetched(Clock::time_point deadline) {
        std::unique_lock lock(mutex_);
        return changed_.wait_until(lock, deadline, [this] { return isFetched_; });
    }

    /// What the application has cut; an outer none where it has cut nothing before the deadline.
    std::optional<std::optional<std::string>> awaitCut(Clock::time_point deadline) {
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, deadline, [this] { return cut_.has_value(); });
        return cut_;
    }

    void forgetFetched() {
        const std::lock_guard lock(mutex_);
        isFetched_ = false;
        cut_.reset();
    }

private:
    void run() {
        if (!connection_.isOpen())
            return;
        X11ClipboardExchange clipboard(connection_);
        connection_.isInterrupted = [this] { return isUrgent_ || isStopping_; };
        clipboard.onFetched = [this] {
            const std::lock_guard lock(mutex_);
            isFetched_ = true;
            changed_.notify_all();
        };
        clipboard.onCut = [this](std::optional<std::string> text) {
            const std::lock_guard lock(mutex_);
            isFetched_ = false;
            cut_.emplace(std::move(text));
            changed_.notify_all();
        };
        while (!isStopping_ && connection_.isOpen()) {
            clipboard.work();
            // Last before the wait: whatever is posted from here on ends it.
            runJobs(clipboard);
            connection_.handleEvents(clipboard.nextWork());
        }
        runJobs(clipboard);
        connection_.isInterrupted = [] { return false; };
        clipboard.handOver(Clock::now() + kHandOverLimit);
    }

    void runJobs(X11ClipboardExchange& clipboard) {
        for (;;) {
            Work work;
            {
                const std::lock_guard lock(mutex_);
                isUrgent_ = false;
                if (jobs_.empty())
                    return;
                work = std::move(jobs_.front());
                jobs_.pop_front();
            }
            // What others have done before the call is to be known by then.
            connection_.handleWaitingEvents();
            work(clipboard);
        }
    }

    X11SelectionConnection connection_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Work> jobs_;
    bool isFetched_ = false;
    std::optional<std::optional<std::string>> cut_;
    std::atomic<bool> isUrgent_ = false;
    std::atomic<bool> isStopping_ = false;
    std::thread thread_;
};

X11Pasteboard::X11Pasteboard() = default;
X11Pasteboard::~X11Pasteboard() = default;

X11Pasteboard::Thread& X11Pasteboard::thread() const {
    if (!thread_)
        thread_ = std::make_unique<Thread>();
    return *thread_;
}

std::optional<std::string> X11Pasteboard::string() const {
    const auto deadline = Clock::now() + kReadLimit;
    Thread& thread = this->thread();
    const auto reading = thread.ask<X11ClipboardExchange::Reading>(
        [&connection = thread.connection(), own = toolkitsOwn(), deadline](X11ClipboardExchange& clipboard) {
            return clipboard.read(withAtoms(connection, own), deadline);
        },
        deadline + kWaitMargin);
    if (reading && reading->known)
        return *reading->known;
    const SelectionContentRef content = reading ? reading->content : nullptr;
    isWhole_ = content && content->isComplete;
    thread.post([content](X11ClipboardExchange& clipboard) { clipboard.hasSeen(content); });
    return content ? content->text : std::nullopt;
}

void X11Pasteboard::clearContents() {
    thread().order([](X11ClipboardExchange& clipboard) { clipboard.clear(); });
}

void X11Pasteboard::setString(const std::string& text) {
    isWhole_ = true;
    thread().order([text](X11ClipboardExchange& clipboard) { clipboard.write(text); });
}

PasteOutcome X11Pasteboard::paste(const std::string& text, const X11Application& application,
                                  const PasteKeys& keys, Clock::time_point deadline) {
    Thread& thread = this->thread();
    thread.forgetFetched();
    // The time for fetching does not run while another program's content is read.
    const auto readDeadline = Clock::now() + kReadLimit;
    const auto timeToFetch = deadline - Clock::now();
    const auto isLent = thread.ask<bool>(
        [&connection = thread.connection(), own = toolkitsOwn(), text, application, readDeadline,
         cuts = static_cast<bool>(keys.cut)](X11ClipboardExchange& clipboard) {
            const bool isOffered =
                clipboard.lend(text, application, withAtoms(connection, own), readDeadline);
            if (isOffered && cuts)
                clipboard.expectCut();
            return isOffered;
        },
        readDeadline + kWaitMargin);
    if (!isLent.value_or(false)) {
        takeBack();
        return PasteOutcome::impossible;
    }
    if (keys.cut) {
        if (const auto outcome = cut(keys, Clock::now() + timeToFetch); outcome != PasteOutcome::fetched)
            return outcome;
    }
    if (keys.quietTime.count() > 0)
        std::this_thread::sleep_for(keys.quietTime);
    // What was fetched before the keys, by a look at what is new there, was for no paste.
    thread.order([](X11ClipboardExchange& clipboard) { clipboard.expectFetch(); });
    thread.forgetFetched();
    const bool isSent = keys.paste();
    const bool isFetched = isSent && thread.awaitFetched(Clock::now() + timeToFetch);
    if (keys.release)
        keys.release();
    if (!isSent) {
        takeBack();
        return keys.undo && keys.undo() ? PasteOutcome::takenBack : PasteOutcome::impossible;
    }
    return isFetched ? PasteOutcome::fetched : PasteOutcome::notFetched;
}

PasteOutcome X11Pasteboard::cut(const PasteKeys& keys, Clock::time_point deadline) {
    if (!keys.cut()) {
        takeBack();
        return PasteOutcome::impossible;
    }
    const auto taken = thread().awaitCut(deadline);
    if (taken && *taken == keys.selected)
        return PasteOutcome::fetched;
    if (taken)
        keys.undo();
    takeBack();
    return PasteOutcome::takenBack;
}

void X11Pasteboard::takeBack() {
    thread().order([](X11ClipboardExchange& clipboard) { clipboard.takeBack(); });
}

bool X11Pasteboard::hasOwner(const std::string& selection) const {
    return thread()
        .ask<bool>([selection](X11ClipboardExchange& clipboard) { return clipboard.hasOwner(selection); },
                   Clock::now() + kReadLimit)
        .value_or(false);
}

} // namespace quillmoth::platform
