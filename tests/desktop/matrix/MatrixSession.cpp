#include "tests/desktop/matrix/MatrixSession.h"

#include "tests/desktop/matrix/SwayMatrixSession.h"
#include "tests/desktop/matrix/X11MatrixSession.h"

#include <linux/input-event-codes.h>
#include <stdexcept>

namespace quillmoth::test {

namespace {

struct Stroke {
    int key = 0;
    bool isShifted = false;
};

Stroke strokeOf(char character) {
    struct Row {
        std::string_view plain;
        std::string_view shifted;
        int firstKey;
    };

    constexpr Row kRows[] = {{"1234567890-=", "!@#$%^&*()_+", KEY_1},
                             {"qwertyuiop[]\n", "QWERTYUIOP{}", KEY_Q},
                             {"asdfghjkl;'`", "ASDFGHJKL:\"~", KEY_A},
                             {"\\zxcvbnm,./", "|ZXCVBNM<>?", KEY_BACKSLASH},
                             {" ", "", KEY_SPACE}};
    for (const Row& row : kRows) {
        for (const bool isShifted : {false, true}) {
            const auto place = (isShifted ? row.shifted : row.plain).find(character);
            if (place != std::string_view::npos)
                return {.key = row.firstKey + static_cast<int>(place), .isShifted = isShifted};
        }
    }
    throw std::runtime_error(std::string("no key writes ") + character);
}

} // namespace

void UserHands::chord(std::initializer_list<int> keys) {
    for (const int key : keys)
        pressKey(key);
    for (const int* key = keys.end(); key != keys.begin();)
        releaseKey(*--key);
}

void UserHands::type(std::string_view asciiText) {
    for (const char character : asciiText) {
        const Stroke stroke = strokeOf(character);
        if (stroke.isShifted)
            chord({KEY_LEFTSHIFT, stroke.key});
        else
            tapKey(stroke.key);
    }
}

void UserHands::click(int x, int y) {
    movePointer(x, y);
    pressButton();
    releaseButton();
}

ChildOptions commonProgramOptions() {
    // Without stored settings no program asks whether to bring back what it showed the time before.
    return {.environment = {{"GSETTINGS_BACKEND", "memory"},
                            {"LC_ALL", "C.UTF-8"},
                            {"GSK_RENDERER", "cairo"},
                            {"LIBGL_ALWAYS_SOFTWARE", "1"}}};
}

std::unique_ptr<MatrixSession> MatrixSession::start(const std::string& kind,
                                                    const std::string& windowManager) {
    if (kind == "x11")
        return std::make_unique<X11MatrixSession>(windowManager);
    if (kind == "sway")
        return std::make_unique<SwayMatrixSession>();
    throw std::runtime_error("no kind of session is called " + kind);
}

} // namespace quillmoth::test
