#include "platform/posix/preferences/ScreenshotToolNames.h"

#include <algorithm>
#include <array>
#include <map>

namespace tallowbay::posix {

namespace {

// A name is what stands before the time, the time (as for strftime), and what stands after it,
// where a tool counts on if the name is taken.
struct Spelling {
    const char* tool;
    const char* before;
    const char* time;
    const char* after;
};

// {words} are those below.
constexpr std::array spellings{
    Spelling{
        "GNOME, MATE, Xfce and most that follow them", "{words}", "%Y-%m-%d[ _]%H[-.:]%M[-.:]%S",
        "(-[0-9]+| - [0-9]+)?"},
    Spelling{"Spectacle", "{words}", "%Y%m%d_%H%M%S", "(-[0-9]+)?"},
    Spelling{"Deepin", "{words}", "%Y%m%d%H%M%S", ""},
    Spelling{"Flameshot", "", "%Y-%m-%d_%H-%M", "(_[0-9]+)?"},
    Spelling{"ksnip", "ksnip_", "%Y%m%d-%H%M%S", R"((\([0-9]+\))?)"},
    Spelling{"scrot", "", "%Y-%m-%d-%H%M%S", "_[0-9]+x[0-9]+_scrot(_[0-9]+)?"},
    Spelling{"hyprshot", "", "%Y-%m-%d-%H%M%S", "_hyprshot"},
    Spelling{"grim", "", "%Y%m%d_%Hh%Mm%Ss", "_grim"},
    Spelling{"swappy", "swappy-", "%Y%m%d[-_]%H%M%S", ""},
    Spelling{
        "grimshot and grimblast", "", "%Y-%m-%dT%H:%M:%S", "[,.][0-9]{9}[+-][0-9]{2}:[0-9]{2}"},
    Spelling{"MATE in Chinese", "", "%Y-%m-%d %H-%M-%S", "( - [0-9]+)? 创建的截图"},
};

// "Screenshot" in the languages of GNOME, MATE and Xfce; a preposition may follow. Where the word
// alone means any picture, the preposition belongs to it.
constexpr std::array words{
    "Screenshot",
    "Bildschirmfoto",
    "Capter li ecran",
    "Captura d'ecran",
    "Captura de",
    "Captura del",
    "Captura desde",
    "Captura de ecrã",
    "Captura de pantalla",
    "Captura de tela",
    "Capture du",
    "Capture d’écran",
    "Captură de ecran",
    "Cekupan Skrin",
    "Cekupan skrin",
    "Chụp màn hình",
    "Ảnh chụp màn hình",
    "Cuplikan Layar",
    "Cuplikan layar",
    "Ekran Görüntüsü",
    "Ekran görüntüsü",
    "Ekran koruntisi",
    "Ekrano kopija",
    "Ekrano nuotrauka",
    "Ekrānattēls",
    "Ekrānkopija",
    "Foto ekrani",
    "Istantanea",
    "Kuvakaappaus",
    "Kuvatõmmis",
    "Képernyőkép",
    "Pantaila-argazkia",
    "Przechwycenie obrazu ekranu",
    "Zrzut ekranu",
    "Schermafdruk",
    "Schermata",
    "Skjermbilde",
    "Skjermbilete",
    "Skjámynd",
    "Skrammad",
    "Skärmavbild",
    "Skärmbild",
    "Skærmbillede",
    "Slika zaslona",
    "Snímek obrazovky",
    "Snímka obrazovky",
    "Videade",
    "Zaslonska slika",
    "zaslonska_slika",
    "Στιγμιότυπο",
    "Здымак экрана",
    "Здымак экрану",
    "Зняток екрана",
    "Знімок екрана",
    "Знімок екрану",
    "Скриншот",
    "Слика радне површи",
    "Снимак екрана",
    "снимак-екрана",
    "Снимка на",
    "Снимок экрана",
    "Էկրանահան",
    "Էկրանի նկար",
    "צילום מסך",
    "ئېكران كۆرۈنۈشى",
    "ئېكران كۆرۈنۈشىنىڭ ئورنى",
    "اسکرین\u200cشات",
    "سکرین شوٹ",
    "لقطة الشاشة",
    "لقطة شاشة",
    "نماگرفت",
    "ਸਕਰੀਨਸ਼ਾਟ",
    "తెరపట్టు",
    "තිරපිටපත",
    "ภาพหน้าจอ",
    "სკრინშოტი",
    "ეკრანის ანაბეჭდი",
    "መመልከቻውን ፎቶ ማንሻ",
    "スクリーンショット",
    "截图",
    "屏幕截图",
    "螢幕快照",
    "螢幕截圖",
    "스크린샷",
};

// The signs that follow the word are few, and none is a digit.
std::string beforeTime(std::string before)
{
    constexpr std::string_view mark = "{words}";
    const auto at = before.find(mark);
    if (at == std::string::npos)
        return before;
    std::string anyWord;
    for (const char* word : words)
        anyWord += (anyWord.empty() ? "(?:" : "|") + std::string(word);
    return before.replace(at, mark.size(), anyWord + ")[^0-9]*");
}

std::string timePattern(std::string_view time)
{
    static const std::map<char, std::string> fields{
        {'Y', "(20[0-9]{2})"},       {'m', "(0[1-9]|1[0-2])"}, {'d', "(0[1-9]|[12][0-9]|3[01])"},
        {'H', "([01][0-9]|2[0-3])"}, {'M', "([0-5][0-9])"},    {'S', "[0-6][0-9]"}};
    std::string pattern;
    for (std::size_t at = 0; at < time.size(); ++at)
        pattern += time[at] == '%' ? fields.at(time[++at]) : std::string(1, time[at]);
    return pattern;
}

} // namespace

std::vector<std::string> screenshotToolNames()
{
    std::vector<std::string> patterns;
    for (const Spelling& spelling : spellings)
        patterns.push_back(
            beforeTime(spelling.before) + timePattern(spelling.time) + spelling.after);
    return patterns;
}

std::vector<std::string> screenshotToolDates()
{
    std::vector<std::string> patterns;
    for (const Spelling& spelling : spellings) {
        const std::string pattern = timePattern(spelling.time) + "(?![0-9])";
        if (std::ranges::find(patterns, pattern) == patterns.end())
            patterns.push_back(pattern);
    }
    return patterns;
}

} // namespace tallowbay::posix
