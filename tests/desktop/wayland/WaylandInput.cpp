#include "tests/desktop/wayland/WaylandInput.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

int keyFor(char character) {
    constexpr std::string_view kRows[] = {"1234567890", "qwertyuiop", "asdfghjkl", "zxcvbnm"};
    constexpr int kFirst[] = {KEY_1, KEY_Q, KEY_A, KEY_Z};
    for (int row = 0; row < 4; ++row) {
        if (const auto place = kRows[row].find(character); place != std::string_view::npos)
            return kFirst[row] + static_cast<int>(place);
    }
    return character == '.' ? KEY_DOT : KEY_SPACE;
}

} // namespace

void WaylandInput::tapKey(int key) {
    pressKey(key);
    releaseKey(key);
}

void WaylandInput::chord(const std::vector<int>& keys) {
    for (const int key : keys)
        pressKey(key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        releaseKey(*key);
}

void WaylandInput::type(std::string_view text) {
    for (const char character : text)
        tapKey(keyFor(character));
}

void WaylandInput::click(int x, int y, int clicks) {
    letTimePass();
    movePointer(x, y);
    for (int count = 0; count < clicks; ++count) {
        sendButton(true);
        sendButton(false);
    }
}

void WaylandInput::drag(int fromX, int fromY, int byX, int byY) {
    constexpr int kSteps = 10;
    movePointer(fromX, fromY);
    sendButton(true);
    for (int step = 1; step <= kSteps; ++step)
        movePointer(fromX + byX * step / kSteps, fromY + byY * step / kSteps);
    sendButton(false);
}

} // namespace quillmoth::test
