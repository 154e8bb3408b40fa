#pragma once

#include <QRectF>
#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>

namespace quillmoth::markdown {

/// What a MarkdownItem needs of the widget that shows it. Main thread.
class MarkdownHost {
public:
    virtual ~MarkdownHost() = default;

    /// `area`, in the item's coordinates, looks different now; all of it where null.
    virtual void itemChanged(const QRectF& area) = 0;

    /// The item's height or used width is, or may be, another one now.
    virtual void itemResized() = 0;

    virtual void openLink(const QString& url) = 0;

    /// Replaces what is on the clipboard.
    virtual void copyText(const QString& text) = 0;

    /// The copy button of a code block says another thing now: told to assistive technology.
    virtual void copyButtonRenamed(std::size_t codeBlock) = 0;

    /// Calls `work` once after `delay`, on the main thread; `work` checks whether there is still something to
    /// do.
    virtual void callAfter(std::chrono::milliseconds delay, std::function<void()> work) = 0;
};

} // namespace quillmoth::markdown
