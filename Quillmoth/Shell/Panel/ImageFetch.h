#pragma once

#include "MarkdownUI/Qt/ImageDownload.h"

namespace quillmoth::platform {
class OperationQueues;
class URLSessions;
} // namespace quillmoth::platform

namespace quillmoth {

/// Downloads images of answers: nothing of the user's goes with the request, a file beyond
/// kMostImageBytes ends it at once, and it stays within the reach of the request. Both outlive it.
[[nodiscard]] markdown::ImageDownload makeImageDownload(platform::URLSessions& sessions,
                                                        platform::OperationQueues& queues);

} // namespace quillmoth
