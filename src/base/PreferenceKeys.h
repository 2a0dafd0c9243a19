#pragma once

namespace tallowbay {

// Every preference that the program reads or writes; nobody else spells a key. What is stored on
// people's machines goes by these keys, so none is ever renamed.
//
// Nothing is registered in advance: an absent key means what is said here.
namespace preference {

// Yes or no, in the program's own domain.
struct Flag {
    const char* key;
    bool whenAbsent;
};

// The user has been through the first-run window, which writes it at its end.
inline constexpr Flag onboardingCompleted{"onboardingCompleted", false};

// The settings write these: no toasts; the master switch of the cleanup, and what it deletes.
inline constexpr Flag toastsDisabled{"toastsDisabled", false};
inline constexpr Flag autoCleanupEnabled{"autoCleanupEnabled", false};
inline constexpr Flag autoCleanupCompressedEnabled{"autoCleanupCompressedEnabled", true};
inline constexpr Flag autoCleanupOriginalsEnabled{"autoCleanupOriginalsEnabled", false};

// Written by the user: of a paste into a program that takes only its first file, the rest is not
// pasted after it.
inline constexpr Flag pasteRestDisabled{"pasteRestDisabled", false};

// A dictionary each, in the form of HotkeyConfig. Written when the user records a combination,
// removed when all are reset. Absent: the target's default combination.
inline constexpr const char* hotkeyOpenClose = "hotkeyOpenClose";
inline constexpr const char* hotkeyOCR = "hotkeyOCR";
inline constexpr const char* hotkeyUndoLast = "hotkeyUndoLast";
inline constexpr const char* hotkeyClearAll = "hotkeyClearAll";

// A text: further names of screenshots, as patterns of a shell (see NamePattern), divided by
// commas. Written by the user. Absent: none.
inline constexpr const char* screenshotNamePatterns = "screenshotNamePatterns";

// A text: the address of the feed that tells of new versions. Written by nobody but an
// administrator. Absent: the address that the program was built with.
inline constexpr const char* updateFeedURL = "updateFeedURL";

// The system's domain of screenshot preferences, which belongs to the user: the program writes it
// on an explicit request only, by the `defaults` tool.
inline constexpr const char* screenshotDomain = "com.apple.screencapture";

// Texts of that domain: the folder, and where screenshots go ("clipboard", in any case, or a file).
// Absent: the desktop's own folder; a file.
inline constexpr const char* screenshotLocation = "location";
inline constexpr const char* screenshotTarget = "target";

} // namespace preference

} // namespace tallowbay
