#include "desktop/text/LegacyText.h"

#include "tests/desktop/support/LegacyBytes.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using testsupport::writtenIn;

std::string readAgain(const std::string& text, const char* charset)
{
    const std::string bytes = writtenIn(text, charset);
    return toUtf8(bytes, guessCharset(bytes));
}

struct Sample {
    const char* charset;
    const char* text;
};

constexpr Sample kLegacy[] = {
    {"windows-1251", "Группа крови\nКино\nГруппа крови\nРок"},
    {"windows-1251", "Калинка"},
    {"windows-1251", "01 Вступление\nАрия\nГерой асфальта\nMetal"},
    {"windows-1251", "Ой у лузі червона калина\nБумбокс"},
    {"koi8-r", "Звезда по имени Солнце\nКино"},
    {"koi8-r", "Катюша"},
    {"ibm-866", "Миллион алых роз\nАлла Пугачёва"},
    {"shift_jis", "上を向いて歩こう\n坂本九\nベスト\n歌謡曲"},
    {"shift_jis", "さくら\n森山直太朗"},
    {"shift_jis", "知らない窓"},
    {"windows-1251", "Ещё один день"},
    {"windows-1256", "ابتسامة"},
    {"euc-jp", "涙そうそう\n夏川りみ"},
    {"gb18030", "月亮代表我的心\n邓丽君\n邓丽君精选\n流行"},
    {"gb18030", "朋友\n周华健"},
    {"big5", "月亮代表我的心\n鄧麗君"},
    {"big5", "朋友\n周華健"},
    {"windows-949", "강남스타일\n싸이\n댄스"},
    {"windows-949", "벚꽃 엔딩\n버스커 버스커"},
    {"windows-1250", "Dziwny jest ten świat\nCzesław Niemen"},
    {"windows-1250", "Příběhy obyčejného šílenství\nLucie"},
    {"windows-1253", "Τα παιδιά του Πειραιά\nΜελίνα Μερκούρη"},
    {"windows-1254", "Gülpembe\nBarış Manço"},
    {"windows-1254", "Aşk"},
    {"windows-1250", "Příběh starého mlýna"},
    {"windows-1250", "Żółć"},
    {"windows-1250", "Mošanský šašek"}, // as western as Czech
    {"windows-1250", "Őszi eső"},
    {"iso-8859-2", "Žluťoučký kůň\nPříště"},
    {"windows-1255", "ירושלים של זהב\nשולי נתן"},
    {"windows-1256", "أنت عمري\nأم كلثوم"},
    {"windows-874", "ลอยกระทง\nสุนทราภรณ์"},
};

TEST(LegacyTextTest, TextOfAnotherCharset_IsReadInIt)
{
    for (const Sample& sample : kLegacy) {
        EXPECT_EQ(readAgain(sample.text, sample.charset), sample.text) << sample.charset;
    }
}

constexpr const char* kWestern[] = {
    "Café",
    "Für Elise\nBeethoven",
    "Noël",
    "L’été",
    "Señorita",
    "¿Qué será?\nJosé Feliciano",
    "Coração",
    "Così fan tutte",
    "Øde ø",
    "Smørrebrød",
    "Hoppípolla\nSigur Rós\nTakk…\nPost-Rock",
    "Það besta",
    "Hyvää yötä",
    "Mä jää tähän yöhön",
    "ÅÄÖ",
    "ÉTÉ",
    "È",
    "Motörhead",
    "Queensrÿche",
    "Ænima",
    "“Heroes”\nDavid Bowie",
    "„Lied“ (‚leise‘)",
    "« À »",
    "25°C – 100 €",
    "© 2001 ½",
    "ÄÖÜß",
    "Nutrición\nMandeår",  // Spanish and Danish
    "Adoperò\nPrentröðin", // Italian and Icelandic
    "",
};

TEST(LegacyTextTest, WesternText_IsNeverTakenForAnything)
{
    for (const char* const text : kWestern) {
        EXPECT_STREQ(guessCharset(writtenIn(text, "windows-1252")), "windows-1252") << text;
        EXPECT_EQ(readAgain(text, "windows-1252"), text);
    }
}

TEST(LegacyTextTest, WesternNamesInTitlesOfOtherLanguages_StayWestern)
{
    for (const char* const text :
         {"Håkan & Zoë\nLive in Kraków", "The Best of Señor Björn", "Årets Größte Hits", "Mañana, Łódź", "Ópera nº 3\nÁria",
          "Crème brûlée\nSmørbrød\nJalapeño", "Die Rückkehr von Šárka"}) {
        const std::string bytes = writtenIn(text, "windows-1252"); // what it has no letter for is a control character there
        EXPECT_STREQ(guessCharset(bytes), "windows-1252") << text;
    }
}

TEST(LegacyTextTest, TextsThatAreVeryLong_AreJudgedByTheirBeginning)
{
    std::string text;
    while (text.size() < 10UL << 20) {
        text += "Группа крови на рукаве ";
    }
    EXPECT_STREQ(guessCharset(writtenIn(text, "windows-1251")), "windows-1251");
    std::string album;
    while (album.size() < 1UL << 20) {
        album += "月亮代表我的心\n";
    }
    EXPECT_STREQ(guessCharset(writtenIn(album, "gb18030")), "gb18030"); // not cut within a character
}

TEST(LegacyTextTest, WeakEvidence_ChangesNothing)
{
    for (const Sample& sample :
         {Sample{"windows-1251", "ДДТ"}, Sample{"gb18030", "爱"}, Sample{"windows-1250", "č"}, Sample{"gb18030", "梦想"}}) {
        EXPECT_STREQ(guessCharset(writtenIn(sample.text, sample.charset)), "windows-1252") << sample.text;
    }
}

TEST(LegacyTextTest, BytesOfNoCharset_StayAsTheyAre)
{
    std::string all;
    for (int byte = 1; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_STREQ(guessCharset(all), "windows-1252");
}

TEST(LegacyTextTest, ToUtf8_TellsWhatStandsForNothing)
{
    EXPECT_EQ(toUtf8("\xCA\xE8\xED\xEE \x80", "windows-1251"), "Кино Ђ");
    EXPECT_EQ(toUtf8("\x81\x20", "gb18030"), "\uFFFD ");
    EXPECT_EQ(toUtf8("x", "no such charset"), "");
}

} // namespace
} // namespace desktop
