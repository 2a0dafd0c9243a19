#include "platform/tesseract/LanguageData.h"

#include "platform/posix/Environment.h"

#include <map>

namespace tallowbay::tesseract {

namespace fs = std::filesystem;

std::string languageOfLocale(const std::string& locale)
{
    static const std::map<std::string, std::string> names{
        {"af", "afr"}, {"ar", "ara"},     {"bg", "bul"},       {"ca", "cat"}, {"cs", "ces"},
        {"cy", "cym"}, {"da", "dan"},     {"de", "deu"},       {"el", "ell"}, {"en", "eng"},
        {"es", "spa"}, {"et", "est"},     {"eu", "eus"},       {"fa", "fas"}, {"fi", "fin"},
        {"fr", "fra"}, {"ga", "gle"},     {"gl", "glg"},       {"he", "heb"}, {"hi", "hin"},
        {"hr", "hrv"}, {"hu", "hun"},     {"id", "ind"},       {"is", "isl"}, {"it", "ita"},
        {"ja", "jpn"}, {"ko", "kor"},     {"lt", "lit"},       {"lv", "lav"}, {"nb", "nor"},
        {"nl", "nld"}, {"nn", "nor"},     {"no", "nor"},       {"pl", "pol"}, {"pt", "por"},
        {"ro", "ron"}, {"ru", "rus"},     {"sk", "slk"},       {"sl", "slv"}, {"sq", "sqi"},
        {"sr", "srp"}, {"sv", "swe"},     {"th", "tha"},       {"tr", "tur"}, {"uk", "ukr"},
        {"vi", "vie"}, {"zh", "chi_sim"}, {"zh_TW", "chi_tra"}};
    const std::string country = locale.substr(0, locale.find_first_of(".@"));
    const auto exact = names.find(country);
    if (exact != names.end())
        return exact->second;
    const auto found = names.find(country.substr(0, country.find('_')));
    return found == names.end() ? "" : found->second;
}

std::optional<LanguageData> findLanguageData(
    const std::vector<fs::path>& folders, const std::string& locale)
{
    const std::string own = languageOfLocale(locale);
    for (const fs::path& folder : folders) {
        std::string languages;
        for (const std::string& language : {std::string("eng"), own == "eng" ? "" : own}) {
            std::error_code ignored;
            if (!language.empty() && fs::exists(folder / (language + ".traineddata"), ignored))
                languages += (languages.empty() ? "" : "+") + language;
        }
        if (!languages.empty())
            return LanguageData{folder, languages};
    }
    return std::nullopt;
}

std::vector<fs::path> languageDataFolders()
{
    std::vector<fs::path> folders;
    if (const auto named = posix::environmentFolder("TESSDATA_PREFIX"))
        folders = {*named, *named / "tessdata"};
    for (const char* usual :
         {"/usr/local/share/tessdata", "/usr/share/tesseract-ocr/5/tessdata", "/usr/share/tessdata",
          "/usr/share/tesseract-ocr/4.00/tessdata"})
        folders.emplace_back(usual);
    return folders;
}

std::string localeOfMessages()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const auto locale = posix::environmentText(variable))
            return *locale;
    }
    return "C";
}

} // namespace tallowbay::tesseract
