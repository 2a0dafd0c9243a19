#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay::tesseract {

// Which languages text is read in, and where tesseract's data about them lies.
struct LanguageData {
    std::filesystem::path folder;
    std::string languages; // as tesseract names them, the main one first: "eng+deu"
};

// Tesseract's name for the language of a locale ("de_DE.UTF-8" is "deu"); empty for one it is not
// known for, as "C".
std::string languageOfLocale(const std::string& locale);

// English, and the language of the locale besides; whichever of them the first of the folders that
// has any holds. Empty if none does.
std::optional<LanguageData> findLanguageData(
    const std::vector<std::filesystem::path>& folders, const std::string& locale);

// Where distributions put the data, the one that the user names first; and the user's locale.
std::vector<std::filesystem::path> languageDataFolders();
std::string localeOfMessages();

} // namespace tallowbay::tesseract
