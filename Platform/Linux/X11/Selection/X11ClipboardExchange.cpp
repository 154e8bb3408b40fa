#include "Platform/Linux/X11/Selection/X11ClipboardExchange.h"

#include "Platform/Linux/X11/Server/X11Windows.h"

#include <utility>
#include <xcb/xfixes.h>

namespace quillmoth::platform {

namespace {

/// A copy that the program waits for is read at once; a large one goes on meanwhile.
constexpr std::chrono::milliseconds kCopyReadLimit{1500};
/// Some programs fetch what they paste in several forms, one after the other.
constexpr std::chrono::milliseconds kFetchGrace{300};
/// A program that has stopped still has the keys of the paste before it: bringing the former content back
/// would have it paste that.
constexpr std::chrono::seconds kUnfetchedLimit{60};

} // namespace

X11ClipboardExchange::X11ClipboardExchange(X11SelectionConnection& connection)
    : connection_(connection), selection_(connection.atom("CLIPBOARD")), reader_(connection),
      owner_(connection, selection_) {
    connection_.setHandler([this](const xcb_generic_event_t& event) { handle(event); });
    owner_.onDelivered = [this](xcb_window_t requestor) { delivered(requestor); };
    auto* server = connection_.get();
    const auto* fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (fixes == nullptr || !fixes->present)
        return;
    ownerEvent_ = static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    owned(xcb_xfixes_query_version_reply(server, xcb_xfixes_query_version(server, 2, 0), nullptr)).reset();
    xcb_xfixes_select_selection_input(server, connection_.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    xcb_flush(server);
}

void X11ClipboardExchange::handle(const xcb_generic_event_t& event) {
    owner_.handle(event);
    reader_.handle(event);
    if ((event.response_type & 0x7F) != ownerEvent_ || ownerEvent_ == 0)
        return;
    const auto owner = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event).owner;
    if (owner == connection_.window())
        return;
    if (paste_ && paste_->awaitsCut && isClientOf(connection_.get(), paste_->application, owner)) {
        paste_->awaitsCut = false;
        paste_->isCut = true;
        return;
    }
    if (paste_ && paste_->isFetched && isClientOf(connection_.get(), paste_->application, owner)) {
        paste_->isTaken = true;
        return;
    }
    // What the user has copied meanwhile is newer than what was to come back.
    paste_.reset();
    wantsCopy_ = memory_.hasBeenReplaced() || wantsCopy_;
}

void X11ClipboardExchange::work() {
    if (paste_ && paste_->isCut)
        offerAgainAfterCut();
    if (paste_ && paste_->isTaken)
        judgeTaking();
    if (std::exchange(wantsCopy_, false)) {
        auto text = reader_.text(selection_, Clock::now() + kCopyReadLimit);
        // Given up for something quick, to be begun anew behind that.
        wantsCopy_ = !text && connection_.isInterrupted();
        if (!wantsCopy_)
            memory_.hasReadCopy(std::move(text));
    }
    if (paste_ && Clock::now() >= paste_->restoreAt)
        takeBack();
}

X11ClipboardExchange::Clock::time_point X11ClipboardExchange::nextWork() const {
    if (wantsCopy_ || (paste_ && (paste_->isCut || paste_->isTaken)))
        return Clock::now();
    return paste_ ? paste_->restoreAt : Clock::time_point::max();
}

X11ClipboardExchange::Reading X11ClipboardExchange::read(const SelectionContentRef& own,
                                                         Clock::time_point deadline) {
    work();
    if (auto known = memory_.known(Clock::now()))
        return {.known = std::move(known), .content = nullptr};
    return {.known = std::nullopt, .content = current(own, deadline)};
}

void X11ClipboardExchange::clear() {
    takeBack();
    memory_.clear(Clock::now());
}

void X11ClipboardExchange::write(const std::string& text) {
    using Kind = X11SelectionMemory::Decision::Kind;
    paste_.reset();
    auto decision = memory_.write(text, Clock::now());
    if (decision.kind == Kind::restore)
        owner_.own(std::move(decision.content));
    else if (decision.kind == Kind::write)
        offer(text);
}

void X11ClipboardExchange::offer(const std::string& text) {
    owner_.own(std::make_shared<const SelectionContent>(
        SelectionContent{.text = text, .others = {}, .isComplete = true}));
}

SelectionContentRef X11ClipboardExchange::current(const SelectionContentRef& own,
                                                  Clock::time_point deadline) {
    if (own)
        return own;
    if (paste_)
        return paste_->former;
    if (owner_.content())
        return owner_.content();
    return std::make_shared<const SelectionContent>(reader_.content(selection_, deadline));
}

bool X11ClipboardExchange::lend(const std::string& text, const X11Application& application,
                                const SelectionContentRef& own, Clock::time_point deadline) {
    auto former = current(own, deadline);
    if (!former->isComplete)
        return false;
    SelectionContent content{.text = text, .others = {}, .isComplete = true};
    // Programs that keep a history of the clipboard leave out what says so.
    content.others.push_back({.target = connection_.atom("x-kde-passwordManagerHint"),
                              .type = connection_.atom("x-kde-passwordManagerHint"),
                              .itemBits = 8,
                              .bytes = "secret"});
    const auto offered = std::make_shared<const SelectionContent>(std::move(content));
    if (!owner_.own(offered))
        return false;
    paste_ = Paste{.application = application,
                   .offered = offered,
                   .former = std::move(former),
                   .restoreAt = Clock::now() + kUnfetchedLimit};
    return true;
}

void X11ClipboardExchange::expectCut() {
    if (paste_)
        paste_->awaitsCut = true;
}

void X11ClipboardExchange::expectFetch() {
    if (!paste_)
        return;
    paste_->isFetched = false;
    paste_->restoreAt = Clock::now() + kUnfetchedLimit;
}

/// Some programs put what they have pasted on the clipboard themselves. Anything else is the user's.
void X11ClipboardExchange::judgeTaking() {
    const auto text = reader_.text(selection_, Clock::now() + kCopyReadLimit);
    if (!paste_)
        return;
    paste_->isTaken = false;
    if (text == paste_->offered->text) {
        takeBack();
        return;
    }
    paste_.reset();
    wantsCopy_ = memory_.hasBeenReplaced() || wantsCopy_;
}

void X11ClipboardExchange::offerAgainAfterCut() {
    auto text = reader_.text(selection_, Clock::now() + kCopyReadLimit);
    // The reading handles other events, which may have ended the paste.
    if (!paste_)
        return;
    paste_->isCut = false;
    // A history of cuts may have fetched the text already.
    paste_->restoreAt = Clock::now() + kUnfetchedLimit;
    owner_.own(paste_->offered);
    if (onCut)
        onCut(std::move(text));
}

void X11ClipboardExchange::takeBack() {
    if (auto paste = std::exchange(paste_, std::nullopt))
        owner_.own(std::move(paste->former));
}

void X11ClipboardExchange::delivered(xcb_window_t requestor) {
    if (!paste_ || !isClientOf(connection_.get(), paste_->application, requestor))
        return;
    paste_->restoreAt = Clock::now() + kFetchGrace;
    paste_->isFetched = true;
    if (onFetched)
        onFetched();
}

bool X11ClipboardExchange::hasOwner(const std::string& selection) {
    return selectionOwner(connection_.get(), connection_.atom(selection)) != XCB_WINDOW_NONE;
}

bool X11ClipboardExchange::handOver(Clock::time_point deadline) {
    takeBack();
    return owner_.handOver(deadline);
}

} // namespace quillmoth::platform
