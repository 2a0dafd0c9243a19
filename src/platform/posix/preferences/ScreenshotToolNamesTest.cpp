#include "platform/posix/preferences/ScreenshotToolNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace tallowbay::posix {
namespace {

std::vector<std::regex> compiled(const std::vector<std::string>& patterns)
{
    return {patterns.begin(), patterns.end()};
}

bool isToolsName(const std::string& stem)
{
    static const auto names = compiled(screenshotToolNames());
    return std::ranges::any_of(
        names, [&](const std::regex& name) { return std::regex_match(stem, name); });
}

// "20260105 1031", as far as the name tells.
std::string timeIn(const std::string& name)
{
    static const auto dates = compiled(screenshotToolDates());
    std::smatch found;
    for (const std::regex& date : dates)
        if (std::regex_search(name, found, date))
            return found.str(1) + found.str(2) + found.str(3) + ' ' + found.str(4) + found.str(5);
    return {};
}

TEST(ScreenshotToolNamesTest, KnowTheNameAndTheTimeOfEachTool)
{
    for (const char* name : {
             "Screenshot from 2026-01-05 10-31-12", // gnome-screenshot, GNOME up to 45
             "Screenshot From 2026-01-05 10-31-12", // GNOME from 46
             "Screenshot from 2026-01-05 10-31-12-1", // the second in this second
             "Screenshot from 2026-01-05 10-31-12 - 1",
             "Screenshot from 2026-01-05 10.31.12", // elementary
             "Screenshot at 2026-01-05 10-31-12", // MATE
             "Screenshot at 2026-01-05 10-31-12 - 2",
             "Screenshot_2026-01-05_10-31-12", // Xfce, COSMIC
             "Screenshot_2026-01-05_10-31-12-1",
             "Screenshot_20260105_103112", // Spectacle
             "Screenshot_20260105_103112-1",
             "Captura de pantalla_20260105_103112",
             "Снимок экрана_20260105_103112",
             "Snímek obrazovky_20260105_103112",
             "Screenshot_select-area_20260105103112", // Deepin
             "2026-01-05_10-31", // Flameshot
             "2026-01-05_10-31_1",
             "ksnip_20260105-103112",
             "ksnip_20260105-103112(1)",
             "2026-01-05-103112_1280x800_scrot",
             "2026-01-05-103112_1280x800_scrot_000",
             "2026-01-05-103112_hyprshot",
             "20260105_10h31m12s_grim",
             "swappy-20260105-103112",
             "2026-01-05T10:31:12,123456789+01:00", // grimshot
             "2026-01-05 10-31-12 创建的截图", // MATE in Chinese
         }) {
        EXPECT_TRUE(isToolsName(name)) << name;
        EXPECT_EQ(timeIn(name), "20260105 1031") << name;
    }
}

TEST(ScreenshotToolNamesTest, KnowTheNamesInEveryLanguageOfGnome)
{
    for (const char* before : {
             "Здымак экрана ад ",
             "Снимка на екрана на ",
             "Captura de pantalla de ",
             "Snímek obrazovky z ",
             "Skærmbillede fra ",
             "Bildschirmfoto vom ",
             "Στιγμιότυπο οθόνης από ",
             "Captura desde ",
             "نماگرفت از ",
             "Kuvakaappaus - ",
             "Capture d’écran du ",
             "Videade di ",
             "צילום מסך מ־",
             "Slika zaslona ",
             "Képernyőkép ekkor: ",
             "Cuplikan layar dari ",
             "Captura de ",
             "Skjámynd frá ",
             "Schermata del ",
             "ეკრანის ანაბეჭდი ",
             "Скриншот, уақыты ",
             "스크린샷 ",
             "Ekrano nuotrauka iš ",
             "Ekrānattēls no ",
             "Skjermbilde fra ",
             "Schermafdruk van ",
             "Captura d'ecran de ",
             "Zrzut ekranu z ",
             "Captura de ecrã de ",
             "Captura de tela de ",
             "Снимок экрана от ",
             "Snímka obrazovky zo dňa ",
             "Zaslonska slika ",
             "Снимак екрана направљен дана ",
             "Skärmbild från ",
             "Ekran Görüntüsü - ",
             "Знімок екрана з ",
             "Chụp màn hình từ ",
             "截图 ",
             "螢幕快照 ",
         })
        EXPECT_TRUE(isToolsName(before + std::string("2026-01-05 10-31-12"))) << before;
}

TEST(ScreenshotToolNamesTest, KnowTheNamesInEveryLanguageOfMate)
{
    for (const char* before : {
             "መመልከቻውን ፎቶ ማንሻ-",
             "لقطة شاشة في ",
             "Captura de pantalla -",
             "Здымак экрану ",
             "Снимка на ",
             "Skrammad e ",
             "Captura de pantalla a ",
             "Snímek obrazovky pořízený ",
             "Skærmbillede på ",
             "Bildschirmfoto zu ",
             "Στιγμιότυπο στο ",
             "Kuvatõmmis ",
             "Kuvakaappaus",
             "Capture du ",
             "Captura de pantalla en ",
             "Képernyőkép ",
             "Էկրանի նկար ",
             "Cuplikan layar pada ",
             "Captura de ",
             "Schermata a ",
             "Скриншот, ",
             "스크린샷 ",
             "Ekrano kopija ",
             "Cekupan skrin di ",
             "Skjermbilde på ",
             "Schermafdruk op ",
             "Captura del ",
             "Zrzut ekranu z ",
             "Captura de ecrã no ",
             "Captura de tela em ",
             "Captură de ecran la ",
             "Снимок экрана в ",
             "Snímka obrazovky ",
             "zaslonska_slika-",
             "снимак-екрана-",
             "Skärmavbild vid ",
             "ภาพหน้าจอที่จับได้เมื่อเวลา ",
             "Ekran Görüntüsü ",
             "Зняток екрана як ",
             "螢幕截圖",
             "ئېكران كۆرۈنۈشىنىڭ ئورنى ",
             "Ekran koruntisi ",
         })
        EXPECT_TRUE(isToolsName(before + std::string("2026-01-05 10-31-12"))) << before;
}

TEST(ScreenshotToolNamesTest, KnowTheNamesInEveryLanguageOfXfce)
{
    for (const char* word : {
             "لقطة الشاشة",
             "Captura de pantalla",
             "Здымак экрана",
             "Снимка на екрана",
             "Snímek obrazovky",
             "Skærmbillede",
             "Bildschirmfoto",
             "Στιγμιότυπο οθόνης",
             "Kuvatõmmis",
             "Pantaila-argazkia",
             "اسکرین\u200cشات",
             "Kuvakaappaus",
             "Capture d’écran",
             "צילום מסך",
             "Képernyőkép",
             "Էկրանահան",
             "Cuplikan Layar",
             "Capter li ecran",
             "Skjámynd",
             "Istantanea",
             "スクリーンショット",
             "სკრინშოტი",
             "Скриншот",
             "스크린샷",
             "Ekrano kopija",
             "Ekrānkopija",
             "Cekupan Skrin",
             "Skjermbilde",
             "Schermafdruk",
             "Skjermbilete",
             "Captura d'ecran",
             "ਸਕਰੀਨਸ਼ਾਟ",
             "Przechwycenie obrazu ekranu",
             "Captura de ecrã",
             "Captura de tela",
             "Captură de ecran",
             "Снимок экрана",
             "තිරපිටපත",
             "Snímka obrazovky",
             "Zaslonska slika",
             "Foto ekrani",
             "Слика радне површи",
             "Skärmbild",
             "తెరపట్టు",
             "ภาพหน้าจอ",
             "Ekran görüntüsü",
             "ئېكران كۆرۈنۈشى",
             "Знімок екрану",
             "سکرین شوٹ",
             "Ảnh chụp màn hình",
             "截图",
             "螢幕快照",
         })
        EXPECT_TRUE(isToolsName(word + std::string("_2026-01-05_10-31-12"))) << word;
}

TEST(ScreenshotToolNamesTest, LeaveAloneWhatOnlyLooksLikeThem)
{
    for (const char* name : {
             // Cameras, phones and messengers.
             "IMG_20260105_103112",
             "PXL_20260105_103112123",
             "20260105_103112",
             "DSC_0001",
             "2026-01-05 10.31.12",
             "2026-01-05 10-31-12",
             "signal-2026-01-05-103112",
             "WhatsApp Image 2026-01-05 at 10.31.12",
             "photo_2026-01-05_10-31-12",
             "Screenshot_20260105-103112",
             "Screenshot_20260105_103112_Chrome",
             "Screenshot_2026-01-05-10-31-12-123_com.android.chrome",
             // Scanners, exports and what people write.
             "Scan_20260105",
             "2026-01-05",
             "2026-01-05_report",
             "2026-01-05_10-31-12",
             "export_2026-01-05_10-31",
             "2026-01-05_10-31_final",
             "backup-20260105-103112",
             "Screenshots",
             "Screenshot",
             "Screenshot_login",
             "screenshot_2026-01-05_10-31-12",
             "Schermata nuova",
             "Capture",
             "Captura",
             "Снимка",
             "ksnip",
             "ksnip_logo",
             "grim",
             "scrot",
             "20260105_10h31m12s",
             "my_20260105_10h31m12s_grim",
             "2026-01-05-103112_1280x800",
             "2026-01-05-103112",
             "swappy",
             "hyprshot",
             // What comes of a screenshot by hand.
             "Screenshot_2026-01-05_10-31-12_cropped",
             "ksnip_20260105-103112 (copy)",
             "Copy of Screenshot_20260105_103112",
             "2026-01-05_10-31 (1)",
             // Days and hours that do not exist.
             "2026-13-05_10-31",
             "2026-01-32_10-31",
             "2026-01-05_24-31",
             "2026-01-05_10-60",
             "1926-01-05_10-31",
             "",
         })
        EXPECT_FALSE(isToolsName(name)) << name;
}

} // namespace
} // namespace tallowbay::posix
