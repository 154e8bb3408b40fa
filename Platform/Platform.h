#pragma once

namespace quillmoth::platform {

class Accessibility;
class Application;
class Bundle;
class Clock;
class Documents;
class HotKeyCenter;
class KeyboardEvents;
class KeyboardLayout;
class MainQueue;
class OperationQueues;
class PanelWindows;
class Pasteboard;
class StatusItems;
class URLSessions;
class UUIDSource;
class UserDefaults;
class Workspace;

/// Every service of the system that the program uses, as references handed down from where the program
/// starts. The services outlive all that holds a copy of this.
struct Platform {
    MainQueue& mainQueue;
    OperationQueues& operationQueues;
    URLSessions& urlSessions;
    Pasteboard& pasteboard;
    Accessibility& accessibility;
    KeyboardEvents& keyboardEvents;
    HotKeyCenter& hotKeyCenter;
    KeyboardLayout& keyboardLayout;
    Workspace& workspace;
    UserDefaults& userDefaults;
    Documents& documents;
    Bundle& bundle;
    Clock& clock;
    UUIDSource& uuidSource;
    PanelWindows& panelWindows;
    StatusItems& statusItems;
    Application& application;
};

} // namespace quillmoth::platform
