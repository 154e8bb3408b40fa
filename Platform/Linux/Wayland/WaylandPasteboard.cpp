#include "Platform/Linux/Wayland/WaylandPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>
#include <utility>

namespace quillmoth::platform {

namespace {

using namespace std::chrono_literals;

constexpr auto kReadLimit = 750ms;
/// The thread gives up a little earlier than the one who waits for it.
constexpr auto kWaitMargin = 60ms;
/// A copy that the program waits for is read at once; a large one goes on meanwhile.
constexpr auto kCopyReadLimit = 1500ms;
/// For programs that keep a history of the clipboard.
constexpr auto kHistoryTime = 40ms;
/// Some programs fetch what they paste in several forms, one after the other.
constexpr auto kFetchGrace = 300ms;
/// Whatever looks at the clipboard again and again does not keep the former content away.
constexpr auto kLongestGrace = 1500ms;
/// A program that has stopped still has the keys of the paste before it: bringing the former content back
/// would have it paste that.
constexpr auto kUnfetchedLimit = 60s;

/// What this process's own text fields have put on the clipboard. The toolkit answers for them on the main
/// thread, which is the one that would wait.
WaylandContentRef toolkitsContent() {
    const QClipboard* clipboard = qGuiApp != nullptr ? QGuiApplication::clipboard() : nullptr;
    if (clipboard == nullptr || !clipboard->ownsClipboard() || clipboard->mimeData() == nullptr)
        return nullptr;
    const QMimeData& data = *clipboard->mimeData();
    WaylandContent content;
    if (data.hasText())
        content.text = data.text().toStdString();
    for (const QString& format : data.formats()) {
        if (!format.startsWith(QStringLiteral("text/plain")) &&
            !format.startsWith(QStringLiteral("application/x-qt")))
            content.others.emplace_back(format.toStdString(), data.data(format).toStdString());
    }
    return std::make_shared<const WaylandContent>(std::move(content));
}

} // namespace

std::unique_ptr<WaylandPasteboard> WaylandPasteboard::create(WaylandConnection& connection) {
    auto selection = WaylandSelection::create(connection);
    if (!selection)
        return nullptr;
    std::unique_ptr<WaylandPasteboard> pasteboard(new WaylandPasteboard(connection, std::move(selection)));
    // What is there already.
    connection.synchronize();
    return pasteboard;
}

WaylandPasteboard::WaylandPasteboard(WaylandConnection& connection,
                                     std::unique_ptr<WaylandSelection> selection)
    : connection_(connection), selection_(std::move(selection)) {
    selection_->onReplaced = [this] { replaced(); };
    selection_->onFetched = [this] { fetched(); };
    selection_->onPrimaryChanged = [handler = primaryHandler_] {
        QMetaObject::invokeMethod(
            qGuiApp,
            [handler] {
                if (*handler)
                    (*handler)();
            },
            Qt::QueuedConnection);
    };
}

WaylandPasteboard::~WaylandPasteboard() {
    *primaryHandler_ = nullptr;
}

void WaylandPasteboard::replaced() {
    // What the user has copied meanwhile is newer than what was to come back. Some programs copy what they
    // paste, though.
    if (loan_ && expectsCut_) {
        connection_.post([this] { takeCut(); });
    } else if (loan_ && loan_->endsBy) {
        connection_.setAlarm(Clock::now() + 2 * kFetchGrace, [this] { endLoan(); });
        connection_.post([this] { keepLoanOfSameText(); });
    } else {
        loan_.reset();
    }
    if (!memory_.hasBeenReplaced())
        return;
    connection_.post([this] { memory_.hasReadCopy(selection_->text(false, Clock::now() + kCopyReadLimit)); });
}

void WaylandPasteboard::keepLoanOfSameText() {
    const auto text = selection_->text(false, Clock::now() + kFetchGrace);
    if (loan_ && text != loan_->text)
        loan_.reset();
}

void WaylandPasteboard::takeCut() {
    auto text = selection_->text(false, Clock::now() + kFetchGrace);
    if (loan_)
        offerLoan();
    const std::lock_guard lock(mutex_);
    expectsCut_ = false;
    cut_ = std::move(text).value_or("");
    changed_.notify_all();
}

void WaylandPasteboard::fetched() {
    if (!loan_)
        return;
    const auto now = Clock::now();
    if (!loan_->endsBy)
        loan_->endsBy = now + kLongestGrace;
    connection_.setAlarm(std::min(now + kFetchGrace, *loan_->endsBy), [this] { endLoan(); });
    const std::lock_guard lock(mutex_);
    isFetched_ = true;
    changed_.notify_all();
}

void WaylandPasteboard::endLoan() {
    if (auto loan = std::exchange(loan_, std::nullopt))
        selection_->own(std::move(loan->former));
}

WaylandContentRef WaylandPasteboard::current(const WaylandContentRef& own, Clock::time_point deadline) const {
    if (own)
        return own;
    if (loan_)
        return loan_->former;
    if (selection_->owned())
        return selection_->owned();
    return std::make_shared<const WaylandContent>(selection_->content(deadline));
}

void WaylandPasteboard::offerLoan() {
    WaylandContent content{.text = loan_->text};
    // Programs that keep a history of the clipboard leave out what says so.
    content.others.emplace_back("x-kde-passwordManagerHint", "secret");
    selection_->own(std::make_shared<const WaylandContent>(std::move(content)));
}

bool WaylandPasteboard::lend(const std::string& text, const WaylandContentRef& own,
                             Clock::time_point deadline) {
    auto former = current(own, deadline);
    if (!former->isComplete)
        return false;
    loan_ = Loan{.text = text, .former = std::move(former)};
    offerLoan();
    connection_.setAlarm(Clock::now() + kUnfetchedLimit, [this] { endLoan(); });
    return true;
}

void WaylandPasteboard::order(std::function<void()> work) {
    connection_.ask<bool>(
        [work = std::move(work)] {
            work();
            return true;
        },
        Clock::now() + kReadLimit);
}

std::optional<std::string> WaylandPasteboard::string() const {
    using Known = std::optional<std::optional<std::string>>;
    const auto deadline = Clock::now() + kReadLimit;
    const auto reading = connection_.ask<std::pair<Known, WaylandContentRef>>(
        [this, own = toolkitsContent(), deadline] {
            Known known = memory_.known(Clock::now());
            WaylandContentRef content = known ? nullptr : current(own, deadline);
            if (content)
                memory_.hasRead(content);
            return std::pair(std::move(known), std::move(content));
        },
        deadline + kWaitMargin);
    if (reading && reading->first)
        return *reading->first;
    const WaylandContentRef content = reading ? reading->second : nullptr;
    isWhole_ = content && content->isComplete;
    return content ? content->text : std::nullopt;
}

void WaylandPasteboard::clearContents() {
    order([this] {
        endLoan();
        memory_.clear(Clock::now());
    });
}

void WaylandPasteboard::setString(const std::string& text) {
    isWhole_ = true;
    order([this, text] {
        using Kind = ClipboardMemory<WaylandContent>::Decision::Kind;
        loan_.reset();
        const auto decision = memory_.write(text, Clock::now());
        if (decision.kind == Kind::restore)
            selection_->own(decision.content);
        else if (decision.kind == Kind::write)
            selection_->own(std::make_shared<const WaylandContent>(WaylandContent{.text = text}));
        connection_.synchronize();
    });
}

PasteOutcome WaylandPasteboard::paste(const std::string& text, const PasteKeys& keys,
                                      Clock::time_point deadline) {
    const auto isLent =
        connection_.ask<bool>([this, text, own = toolkitsContent(),
                               deadline] { return lend(text, own, deadline) && connection_.synchronize(); },
                              deadline + kWaitMargin);
    if (!isLent.value_or(false)) {
        takeBack();
        return PasteOutcome::impossible;
    }
    if (keys.cut) {
        if (const auto outcome = cut(keys, deadline); outcome != PasteOutcome::fetched)
            return outcome;
    }
    std::this_thread::sleep_for(kHistoryTime);
    {
        const std::lock_guard lock(mutex_);
        isFetched_ = false;
    }
    if (!keys.paste()) {
        takeBack();
        return keys.undo && keys.undo() ? PasteOutcome::takenBack : PasteOutcome::impossible;
    }
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, deadline, [this] { return isFetched_; }) ? PasteOutcome::fetched
                                                                              : PasteOutcome::notFetched;
}

PasteOutcome WaylandPasteboard::cut(const PasteKeys& keys, Clock::time_point deadline) {
    const auto expect = [this](bool expects) {
        const std::lock_guard lock(mutex_);
        expectsCut_ = expects;
        cut_.reset();
    };
    expect(true);
    if (!keys.cut()) {
        expect(false);
        takeBack();
        return PasteOutcome::impossible;
    }
    std::optional<std::string> taken;
    {
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, deadline, [this] { return cut_.has_value(); });
        taken = cut_;
    }
    expect(false);
    if (taken == keys.selected)
        return PasteOutcome::fetched;
    if (taken)
        keys.undo();
    takeBack();
    return PasteOutcome::takenBack;
}

void WaylandPasteboard::takeBack() {
    order([this] { endLoan(); });
}

std::optional<std::string> WaylandPasteboard::primary() const {
    const auto deadline = Clock::now() + kReadLimit;
    return connection_
        .ask<std::optional<std::string>>([this, deadline] { return selection_->text(true, deadline); },
                                         deadline + kWaitMargin)
        .value_or(std::nullopt);
}

} // namespace quillmoth::platform
