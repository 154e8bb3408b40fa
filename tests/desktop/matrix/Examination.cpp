#include "tests/desktop/matrix/Examination.h"

#include "Quillmoth/Capture/SelectionWriter.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <optional>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* kNothing = "-";
const std::string kAnswer = "an answer \u00FC \U0001F680\nof two lines";
const std::string kKeptText = "kept \u00E9";
const std::string kKeptHTML = "<b>kept</b>";

enum Column { focus, plain, emoji, severalParagraphs, rightToLeft, write, undo, clipboard, time };

/// Programs differ in how many line breaks they put between paragraphs, and in the last one.
std::string normalized(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (character == '\r' || (character == '\n' && (result.empty() || result.back() == '\n')))
            continue;
        result += character;
    }
    while (!result.empty() && (result.back() == '\n' || result.back() == ' '))
        result.pop_back();
    return result;
}

std::string shortened(std::string text) {
    std::replace(text.begin(), text.end(), '\n', '/');
    std::replace(text.begin(), text.end(), '|', '!');
    std::size_t length = std::min<std::size_t>(text.size(), 60);
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U)
        ++length;
    return length == text.size() ? text : text.substr(0, length) + "...";
}

long millisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

class Examiner {
public:
    Examiner(CapturingDesktop& desktop, const Field& field) : desktop_(desktop), field_(field) {
        row_ = rowWithout(field.name, kNothing);
    }

    Row run() {
        field_.select(0);
        platform::AXError error = platform::kAXErrorSuccess;
        const bool isFound =
            holdsWithin(10s, [&] { return (error = desktop_.focusError()) == platform::kAXErrorSuccess; });
        cell(focus) = isFound ? "ok" : "no: error " + std::to_string(error);
        for (std::size_t sample = 0; sample < field_.samples.size(); ++sample)
            trySample(sample);
        usualTime_ = usualCaptureTime();
        if (field_.kind == Field::Kind::editor || field_.kind == Field::Kind::singleLine)
            tryWriting();
        else if (field_.kind == Field::Kind::secret)
            trySecret();
        else if (field_.kind == Field::Kind::unwritable)
            tryUnwritable();
        cell(time) = times();
        return std::move(row_);
    }

private:
    std::string& cell(Column column) { return row_.cells[column]; }

    bool isCaptured(std::size_t sample) {
        const auto start = Clock::now();
        captured_ = desktop_.capture();
        captureTime_ = millisecondsSince(start);
        return normalized(captured_) == normalized(field_.samples[sample]);
    }

    bool isSecret() const { return field_.kind == Field::Kind::secret; }

    void trySample(std::size_t sample) {
        const std::string& expected = field_.samples[sample];
        if (expected.empty())
            return;
        const auto isRead = [&] { return isCaptured(sample); };
        bool isOk = false;
        if (isSecret())
            isOk = !holdsWithin(500ms, isRead);
        // A program that has only just started may miss the keys.
        const int attempts = sample > 0 && cell(plain).starts_with("no") ? 1 : 3;
        for (int attempt = 0; !isSecret() && !isOk && attempt < attempts; ++attempt) {
            if (sample > 0 || attempt > 0)
                field_.select(sample);
            isOk = holdsWithin(2s, isRead);
        }
        std::string& result = cell(static_cast<Column>(plain + sample));
        const std::string way = desktop_.captureWay.empty() ? "" : " (" + desktop_.captureWay + ")";
        if (isSecret())
            result = isOk && captured_.empty() ? "ok: not read" : "no: READ";
        else
            result =
                isOk ? "ok" + way : "no: " + (captured_.empty() ? "nothing" : shortened(captured_)) + way;
    }

    /// What 19 of 20 captures stay within, in a program that has started by now.
    long usualCaptureTime() {
        constexpr std::size_t kCaptures = 20;
        field_.select(0);
        if (!isSecret())
            waitFor([&] { return isCaptured(0); }, 2s);
        std::vector<long> times;
        for (std::size_t capture = 0; capture < kCaptures; ++capture) {
            isCaptured(0);
            times.push_back(captureTime_);
        }
        std::sort(times.begin(), times.end());
        return times[kCaptures * 95 / 100 - 1];
    }

    std::string documentText() {
        if (field_.contents)
            return normalized(field_.contents());
        desktop_.input().chord({KEY_LEFTCTRL, KEY_A});
        return normalized(copiedText(desktop_));
    }

    void tryWriting() {
        const bool isSingle = field_.kind == Field::Kind::singleLine;
        const std::string before = isSingle ? field_.samples[0] : normalized(sampleDocument());
        std::string answer = kAnswer;
        if (isSingle)
            std::replace(answer.begin(), answer.end(), '\n', ' ');
        const bool isTold = replaceSelected();
        cell(clipboard) = isClipboardKept() ? "ok" : "no: " + shortened(onClipboard());
        std::string expected = before;
        expected.replace(0, field_.samples[0].size(), answer);
        std::string seen;
        const bool isWritten =
            holdsWithin(6s, [&] { return (seen = documentText()) == normalized(expected); });
        const std::string way = desktop_.writeWay.empty() ? "" : " (" + desktop_.writeWay + ")";
        if (isWritten)
            cell(write) = (isTold ? "ok" : "no: written, but told otherwise") + way;
        else if (seen == before)
            cell(write) = (isTold ? "no: lost in silence" : "no: unchanged, and told") + way;
        else
            cell(write) = "no: " + shortened(seen) + way;
        if (seen != before)
            tryUndo(before);
    }

    /// Selects the first sample, from another one where there is one: what is captured is then what the keys
    /// have just selected. A program that is busy may miss them.
    void selectAnew() {
        for (int attempt = 0; attempt < 3; ++attempt) {
            for (const std::size_t sample : {std::size_t{3}, std::size_t{0}}) {
                if (sample == 0 || !field_.samples[sample].empty())
                    field_.select(sample);
                waitFor([&] { return field_.samples[sample].empty() || isCaptured(sample); }, 2s);
            }
            if (isCaptured(0))
                return;
        }
    }

    /// Has the first sample replaced, while another program has something on the clipboard; whether it is
    /// said to be.
    bool replaceSelected() {
        selectAnew();
        clipboardOwner_.emplace(desktop_.session().copyRich(kKeptText, kKeptHTML));
        const auto start = Clock::now();
        const WriteResult result = desktop_.replaceSelection(kAnswer, true);
        writeTime_ = millisecondsSince(start);
        return result == WriteResult::written;
    }

    std::string onClipboard(const std::string& mediaType = "text/plain") {
        return desktop_.session().onClipboard(mediaType);
    }

    bool isClipboardKept() {
        return holdsWithin(
            3s, [this] { return onClipboard() == kKeptText && onClipboard("text/html") == kKeptHTML; });
    }

    /// Nothing may change, and that has to be told.
    void tryUnwritable() {
        const bool isTold = replaceSelected();
        // What was lent to a program that did not ask for it may be asked for late.
        cell(clipboard) = isClipboardKept()          ? "ok"
                          : onClipboard() == kAnswer ? "ok: the answer"
                                                     : "no: " + shortened(onClipboard());
        const std::string seen = documentText();
        cell(write) = seen != normalized(sampleDocument()) ? "no: " + shortened(seen)
                      : isTold                             ? "no: lost in silence"
                                                           : "ok: not written";
    }

    void tryUndo(const std::string& before) {
        constexpr int kStepLimit = 6;
        std::string seen;
        for (int step = 1; step <= kStepLimit; ++step) {
            if (field_.undo)
                field_.undo();
            else
                desktop_.input().chord({KEY_LEFTCTRL, KEY_Z});
            letPass(100ms);
            if ((seen = documentText()) != before)
                continue;
            cell(undo) = step == 1 ? "ok" : "ok (" + std::to_string(step) + " steps)";
            return;
        }
        cell(undo) = "no: " + shortened(seen);
    }

    void trySecret() {
        const WriteResult result = desktop_.replaceSelection("written");
        letPass(300ms);
        // The program shows as many dots as before where nothing was written: told apart by undoing nothing.
        const bool isRefused = desktop_.writeWay.empty() && result != WriteResult::written;
        cell(write) = isRefused ? "ok: not written" : "no: WRITTEN";
    }

    std::string times() const {
        std::string text = std::to_string(usualTime_) + " ms";
        if (writeTime_ >= 0)
            text += " / " + std::to_string(writeTime_) + " ms";
        return text;
    }

    CapturingDesktop& desktop_;
    const Field& field_;
    Row row_;
    std::optional<ChildProcess> clipboardOwner_;
    std::string captured_;
    long captureTime_ = 0;
    long usualTime_ = 0;
    long writeTime_ = -1;
};

} // namespace

std::string copiedText(CapturingDesktop& desktop) {
    constexpr const char* kMarker = "nothing was copied";
    desktop.backEnd().pasteboard().clearContents();
    desktop.backEnd().pasteboard().setString(kMarker);
    desktop.input().chord({KEY_LEFTCTRL, KEY_C});
    std::string text = kMarker;
    waitFor([&] { return (text = desktop.session().onClipboard("text/plain")) != kMarker; }, 2s);
    // Some count the end of the string in.
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    return text;
}

std::vector<std::string> columnNames() {
    return {"field",         "focus",      "plain", "emoji, marks", "paragraphs",
            "right to left", "write-back", "undo",  "clipboard",    "read / write"};
}

Row rowWithout(const std::string& name, const std::string& why) {
    return {.name = name, .cells = std::vector<std::string>(time + 1, why)};
}

Row examine(CapturingDesktop& desktop, const Field& field) {
    return Examiner(desktop, field).run();
}

} // namespace quillmoth::test
