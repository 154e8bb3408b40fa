#pragma once

#include "Platform/Fake/FakeAccessibility.h"
#include "Platform/Fake/FakeClock.h"
#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakeDocuments.h"
#include "Platform/Fake/FakeHotKeyCenter.h"
#include "Platform/Fake/FakeKeyboardEvents.h"
#include "Platform/Fake/FakeMainQueue.h"
#include "Platform/Fake/FakeOperationQueues.h"
#include "Platform/Fake/FakePanelFocus.h"
#include "Platform/Fake/FakePanelWindows.h"
#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Fake/FakeURLSessions.h"
#include "Platform/Fake/FakeUUIDSource.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Platform/Platform.h"

namespace quillmoth::platform {

/// One fake of every service, for one test. The program under test gets platform(); the test works on the
/// members. Must outlive all that it serves.
class FakePlatform {
public:
    FakePlatform() = default;
    /// Drops queued work and delegates first, while every service is still there for their destructors.
    ~FakePlatform();
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    [[nodiscard]] Platform platform();

    /// Runs the operation queues and the main queue in turn until neither has anything due.
    void runUntilIdle();

    FakeMainQueue mainQueue;
    FakeOperationQueues operationQueues;
    FakeURLSessions urlSessions;
    FakePasteboard pasteboard;
    FakeAccessibility accessibility;
    FakeKeyboardEvents keyboardEvents;
    FakeHotKeyCenter hotKeyCenter;
    FakeKeyboardLayout keyboardLayout;
    FakeWorkspace workspace;
    FakeUserDefaults userDefaults;
    FakeDocuments documents;
    FakeBundle bundle;
    FakeClock clock;
    FakeUUIDSource uuidSource;
    FakePanelWindows panelWindows;
    FakePanelFocus panelFocus;
    FakeStatusItems statusItems;
    FakeApplication application;
};

} // namespace quillmoth::platform
