#include "Quillmoth/Assistant/WriteTexts.h"

#include "Quillmoth/Capture/SelectionWriter.h"

namespace quillmoth {

namespace {

constexpr const char* kPaste = " It is on the clipboard: paste it with Ctrl+V.";

std::string textForNothing(WriteResult result, const std::string& subject) {
    if (result == WriteResult::unanswered)
        return subject + " does not answer. Its selection may still be erased.";
    return "There is no answer yet, and " + subject + " did not let its selection be erased.";
}

} // namespace

std::string textFor(WriteResult result, const std::string& application, bool hasAnswer) {
    if (result == WriteResult::written)
        return {};
    const bool isNamed = !application.empty();
    if (!hasAnswer)
        return textForNothing(result, isNamed ? application : "the program in front");
    const std::string subject = isNamed ? application : "The program in front";
    switch (result) {
    case WriteResult::written:
        break;
    case WriteResult::noApplication:
        return "No program is in front that could take the answer. It is on the clipboard: click into a text "
               "and "
               "paste it with Ctrl+V.";
    case WriteResult::notEditable:
        return "What is selected in " + (isNamed ? application : "the program in front") +
               " cannot be edited. The answer is on the clipboard: paste it elsewhere with Ctrl+V.";
    case WriteResult::secret:
        return "The answer is not written into a password field." + std::string(kPaste);
    case WriteResult::terminal:
        return subject +
               " is a terminal, which would run the lines of the answer. It is on the clipboard, for "
               "you to paste.";
    case WriteResult::unanswered:
        return subject + " does not answer, and may still take the answer. Look there first: it is on the "
                         "clipboard too.";
    case WriteResult::refused:
        break;
    }
    return subject + " did not take the answer." + kPaste;
}

} // namespace quillmoth
