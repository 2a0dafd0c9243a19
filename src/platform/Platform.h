#pragma once

namespace tallowbay {

class Alerts;
class Application;
class Calendar;
class Clock;
class Console;
class Dispatch;
class FileEvents;
class FileSystem;
class FolderEvents;
class Hotkeys;
class ImageCodec;
class KeyPoster;
class KeyTap;
class OffscreenGraphics;
class Pasteboard;
class Permissions;
class Processes;
class Resources;
class Screens;
class StatusBar;
class TextMeasurer;
class TextRecognizer;
class Updater;
class UserDefaultsStore;
class WindowSystem;
struct DesktopSettings;
struct ToolPaths;

// One backend: every seam that the application object needs. The owner outlives its users.
struct Platform {
    Dispatch& dispatch;
    Clock& clock;
    const Calendar& calendar;
    Console& console;
    FileSystem& fileSystem;
    FileEvents& fileEvents;
    FolderEvents& folderEvents;
    Processes& processes;
    const Resources& resources;
    const ToolPaths& tools;
    const ImageCodec& imageCodec;
    const OffscreenGraphics& offscreenGraphics;
    TextRecognizer& textRecognizer;
    UserDefaultsStore& defaults;
    const DesktopSettings& desktop;
    Pasteboard& pasteboard;
    KeyTap& keyTap;
    KeyPoster& keyPoster;
    Hotkeys& hotkeys;
    Permissions& permissions;
    StatusBar& statusBar;
    Alerts& alerts;
    Updater& updater;
    Application& application;
    Screens& screens;
    TextMeasurer& textMeasurer;
    WindowSystem& windowSystem;
};

} // namespace tallowbay
