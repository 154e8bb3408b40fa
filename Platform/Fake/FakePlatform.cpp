#include "Platform/Fake/FakePlatform.h"

namespace quillmoth::platform {

FakePlatform::~FakePlatform() {
    operationQueues.clear();
    mainQueue.clear();
    urlSessions.releaseDelegates();
    operationQueues.clear();
    mainQueue.clear();
}

Platform FakePlatform::platform() {
    return {.mainQueue = mainQueue,
            .operationQueues = operationQueues,
            .urlSessions = urlSessions,
            .pasteboard = pasteboard,
            .accessibility = accessibility,
            .keyboardEvents = keyboardEvents,
            .hotKeyCenter = hotKeyCenter,
            .keyboardLayout = keyboardLayout,
            .workspace = workspace,
            .userDefaults = userDefaults,
            .documents = documents,
            .bundle = bundle,
            .clock = clock,
            .uuidSource = uuidSource,
            .panelWindows = panelWindows,
            .statusItems = statusItems,
            .application = application};
}

void FakePlatform::runUntilIdle() {
    bool ran = true;
    while (ran) {
        ran = operationQueues.runOne();
        while (mainQueue.runOne())
            ran = true;
    }
}

} // namespace quillmoth::platform
