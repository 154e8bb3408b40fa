#pragma once

#include "Platform/Linux/X11/Selection/X11SelectionMemory.h"
#include "Platform/Linux/X11/Selection/X11SelectionOwner.h"
#include "Platform/Linux/X11/Selection/X11SelectionReader.h"
#include "Platform/Linux/X11/Server/X11Application.h"

namespace quillmoth::platform {

/// What passes between this program and others over the CLIPBOARD selection: reading what they offer,
/// offering in turn, lending and taking back. Lives on the thread of an X11Pasteboard, so that other programs
/// get their answers while the main thread is busy, and it never waits for them.
class X11ClipboardExchange {
public:
    using Clock = X11SelectionConnection::Clock;

    explicit X11ClipboardExchange(X11SelectionConnection& connection);

    /// Either the text is known, or the owner's content was read.
    struct Reading {
        std::optional<std::optional<std::string>> known;
        SelectionContentRef content;
    };

    /// `own` is the content where this process's toolkit offers it, which cannot be asked while the main
    /// thread waits.
    [[nodiscard]] Reading read(const SelectionContentRef& own, Clock::time_point deadline);

    /// The program has seen that content; null for none.
    void hasSeen(SelectionContentRef content) { memory_.hasRead(std::move(content)); }

    void clear();
    void write(const std::string& text);

    /// Offers `text` for one paste into the application, which `onFetched` then tells of; what stood there
    /// before comes back a little later. False, with nothing changed, where that could not be kept.
    bool lend(const std::string& text, const X11Application& application, const SelectionContentRef& own,
              Clock::time_point deadline);
    /// The application is about to cut something, in between: that is read, `onCut` tells of it, and the text
    /// is offered again.
    void expectCut();
    /// The keys of the paste are on their way: what was fetched before was for something else.
    void expectFetch();
    /// Where nobody has been asked to paste after all.
    void takeBack();

    bool handOver(Clock::time_point deadline);

    /// Does what is due; to be called again at the next time, or when something has happened.
    void work();
    [[nodiscard]] Clock::time_point nextWork() const;

    [[nodiscard]] bool hasOwner(const std::string& selection);

    /// Called when the application that is pasted into has fetched the text.
    std::function<void()> onFetched;
    /// Called with what it has cut, none where that is no text.
    std::function<void(std::optional<std::string> text)> onCut;

private:
    struct Paste {
        X11Application application;
        SelectionContentRef offered;
        SelectionContentRef former;
        Clock::time_point restoreAt;
        bool awaitsCut = false;
        bool isCut = false;
        bool isFetched = false;
        bool isTaken = false;
    };

    void handle(const xcb_generic_event_t& event);
    void delivered(xcb_window_t requestor);
    [[nodiscard]] SelectionContentRef current(const SelectionContentRef& own, Clock::time_point deadline);
    void offer(const std::string& text);
    void offerAgainAfterCut();
    void judgeTaking();

    X11SelectionConnection& connection_;
    xcb_atom_t selection_;
    X11SelectionReader reader_;
    X11SelectionOwner owner_;
    X11SelectionMemory memory_;
    std::uint8_t ownerEvent_ = 0;
    bool wantsCopy_ = false;
    std::optional<Paste> paste_;
};

} // namespace quillmoth::platform
