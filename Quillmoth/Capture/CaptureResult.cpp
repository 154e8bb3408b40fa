#include "Quillmoth/Capture/CaptureResult.h"

#include <utility>

namespace quillmoth {

CaptureResult captured(CaptureWay way, std::string text, CaptureObstacle obstacle) {
    CaptureResult result{.way = way, .text = std::move(text)};
    if (result.text.empty())
        result.obstacle = obstacle;
    return result;
}

} // namespace quillmoth
