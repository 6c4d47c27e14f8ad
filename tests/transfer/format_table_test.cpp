#include "alidade/transfer/format_table.h"

#include "alidade/vellumlib/data.h"
#include "support/places.h"
#include "transfer/factory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using namespace std::string_literals;
using testing::ElementsAre;

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

std::vector<int> CodesOf(EIEDirection eDirection)
{
    std::vector<int> codes;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows())
        if (row.m_eDirection == eDirection)
            codes.push_back(row.m_nCode);
    return codes;
}

std::vector<int> AllBut(int nLast, const std::set<int>& gaps)
{
    std::vector<int> codes;
    for (int i = 0; i <= nLast; ++i)
        if (!gaps.contains(i))
            codes.push_back(i);
    return codes;
}

std::string Place(const TIEFormatRow& row)
{
    return (row.m_eDirection == kIn ? "import " : "export ") + std::to_string(row.m_nCode) + " " + row.m_pKey;
}

TEST(FormatTable, EveryCodeWithAFormatHasOneRowInOrder)
{
    EXPECT_EQ(CodesOf(kIn), AllBut(50, {6, 8, 9, 39, 40}));
    EXPECT_EQ(CodesOf(kOut), AllBut(66, {6, 65}));
    EXPECT_TRUE(
        std::is_sorted(CIEFormatTable::GetRows().begin(), CIEFormatTable::GetRows().end(),
                       [](const TIEFormatRow& a, const TIEFormatRow& b) { return a.m_eDirection < b.m_eDirection; }));
}

TEST(FormatTable, FindsRowsByCode)
{
    for (const TIEFormatRow& row : CIEFormatTable::GetRows())
        EXPECT_EQ(CIEFormatTable::Find(row.m_eDirection, row.m_nCode), &row) << Place(row);
    for (const int code : {-2147483647 - 1, -1, 6, 8, 9, 39, 40, 51, 66, 67, 2147483647})
        EXPECT_EQ(CIEFormatTable::Find(kIn, code), nullptr) << code;
    for (const int code : {-2147483647 - 1, -1, 6, 65, 67, 2147483647})
        EXPECT_EQ(CIEFormatTable::Find(kOut, code), nullptr) << code;
}

TEST(FormatTable, KeysAreWellFormedAndUniqueInADirection)
{
    std::set<std::pair<EIEDirection, std::string>> seen;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        EXPECT_THAT(row.m_pKey, testing::MatchesRegex("[a-z][a-z0-9]*(-[a-z0-9]+)*")) << Place(row);
        EXPECT_TRUE(seen.insert({row.m_eDirection, row.m_pKey}).second) << Place(row);
    }
}

TEST(FormatTable, ASharedKeyIsOneForm)
{
    int shared = 0;
    std::map<std::string, std::set<std::string>> keysOfTitle;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        keysOfTitle[row.m_pTitle].insert(row.m_pKey);
        const TIEFormatRow* pOther = row.m_eDirection == kIn ? CIEFormatTable::FindByKey(kOut, row.m_pKey) : nullptr;
        if (!pOther)
            continue;
        ++shared;
        EXPECT_STREQ(row.m_pTitle, pOther->m_pTitle) << Place(row);
        // what is written can be picked up by its extension; one form has none, and its exporter adds them
        const std::string written = CIEData::GetExtForExportType(pOther->m_nCode);
        if (!written.empty())
            EXPECT_THAT(CIEFormatTable::FindByExtension(kIn, written), testing::Contains(&row)) << Place(row);
        else
            EXPECT_STREQ(row.m_pKey, "cor-lev");
    }
    EXPECT_GE(shared, 40); // all imports but the second code of the delimited text and the log's localization
    EXPECT_EQ(shared, static_cast<int>(CodesOf(kIn).size()) - 2);
    for (const auto& [title, keys] : keysOfTitle)
        EXPECT_EQ(keys.size(), 1U) << title;
}

TEST(FormatTable, TextsOfARowFitTheDocument)
{
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        EXPECT_THAT(row.m_pExtensions, testing::MatchesRegex("([a-z0-9]+( [a-z0-9]+)*)?")) << Place(row);
        EXPECT_STRNE(row.m_pTitle, "") << Place(row);
        EXPECT_EQ(std::string(row.m_pTitle).find('\n'), std::string::npos) << Place(row);
        EXPECT_THAT(row.m_pRemark, testing::EndsWith(".")) << Place(row);
        EXPECT_EQ(std::string(row.m_pRemark).find('\n'), std::string::npos) << Place(row);
        // each bit has its word
        EXPECT_EQ(CIEFormatTable::GetCarriedWords(row.m_nCarries).size(),
                  static_cast<std::size_t>(__builtin_popcount(row.m_nCarries)))
            << Place(row);
        // makers and recognition stand on their own side
        EXPECT_TRUE(row.m_eDirection == kIn ? !row.m_pMakeExporter : !row.m_pMakeImporter && !row.m_pRecognize)
            << Place(row);
    }
}

TEST(FormatTable, FindsKeysAndNumbers)
{
    const TIEFormatRow* pSima = CIEFormatTable::Find(kIn, 49);
    EXPECT_EQ(CIEFormatTable::FindByKey(kIn, "sima"), pSima);
    EXPECT_EQ(CIEFormatTable::FindByKey(kIn, "49"), pSima);
    EXPECT_EQ(CIEFormatTable::FindByKey(kIn, "049"), pSima);
    EXPECT_EQ(CIEFormatTable::FindByKey(kOut, "sima"), CIEFormatTable::Find(kOut, 63));
    EXPECT_EQ(CIEFormatTable::FindByKey(kOut, "0"), CIEFormatTable::FindByKey(kOut, "delimited"));
    for (const char* bad :
         {"", "SIMA", "sim", "sima ", " 49", "49 ", "+49", "-1", "4.9", "0x31", "51", "6", "4294967345"})
        EXPECT_EQ(CIEFormatTable::FindByKey(kIn, bad), nullptr) << '"' << bad << '"';
    EXPECT_EQ(CIEFormatTable::FindByKey(kIn, "rw5"), nullptr) << "only written";
}

TEST(FormatTable, FindsExtensionsInAnyCase)
{
    const std::vector<const TIEFormatRow*> sima{CIEFormatTable::Find(kIn, 49), CIEFormatTable::Find(kIn, 50)};
    EXPECT_EQ(CIEFormatTable::FindByExtension(kIn, "sim"), sima);
    EXPECT_EQ(CIEFormatTable::FindByExtension(kIn, ".SIM"), sima);
    EXPECT_THAT(CIEFormatTable::FindByExtension(kIn, "val"), ElementsAre(CIEFormatTable::Find(kIn, 19)));
    for (const char* none : {"", ".", "si", "sima", "txt csv", "sim "})
        EXPECT_TRUE(CIEFormatTable::FindByExtension(kIn, none).empty()) << '"' << none << '"';
}

TEST(FormatTable, GivesTheJobModelItsExtensions)
{
    EXPECT_EQ(CIEData::GetExtForExportType(63), ".sim");
    EXPECT_EQ(CIEData::GetExtForExportType(0), ".txt");
    EXPECT_EQ(CIEData::GetExtForExportType(1), ".shp");
    EXPECT_EQ(CIEData::GetExtForExportType(3), ".mif"); // the form of a map file follows from its extension
    EXPECT_EQ(CIEData::GetExtForExportType(41), "");    // the exporter itself adds the two
    EXPECT_EQ(CIEData::GetExtForExportType(65), "");
    EXPECT_EQ(CIEData::GetExtForExportType(-1), "");
}

TEST(Factory, MakesWhatIsBuiltAndNothingElse)
{
    CIEData job;
    for (int code = -1; code <= 68; ++code) {
        const TIEFormatRow* pIn = CIEFormatTable::Find(kIn, code);
        EXPECT_EQ(CreateImporter(&job, "a.txt", code) != nullptr, pIn && pIn->IsBuilt()) << "import " << code;
        const TIEFormatRow* pOut = CIEFormatTable::Find(kOut, code);
        EXPECT_EQ(CreateExporter(&job, "a.txt", code) != nullptr, pOut && pOut->IsBuilt()) << "export " << code;
    }
    for (const int code : {0, 35, 49, 50})
        EXPECT_NE(CreateImporter(&job, "a.txt", code), nullptr) << code;
    for (const int code : {0, 63, 66})
        EXPECT_NE(CreateExporter(&job, "a.txt", code), nullptr) << code;
}

class Guess : public testing::Test {
protected:
    Guess()
    {
        std::string name = (std::filesystem::temp_directory_path() / "alidade_guess_XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder");
        m_Folder = name;
    }
    ~Guess() override
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }

    std::string Put(const std::string& name, const std::string& content)
    {
        const std::string path = (m_Folder / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    /// Keys of the guesses, with "!" behind those that the content bears out.
    static std::vector<std::string> KeysOf(const std::string& path)
    {
        std::vector<std::string> keys;
        for (const TIEFormatGuess& guess : CIEFormatTable::Guess(path))
            keys.push_back(guess.m_pRow->m_pKey + (guess.m_eByContent == EIERecognition::Surely ? "!"s : ""s));
        return keys;
    }
    std::vector<std::string> Keys(const std::string& name, const std::string& content)
    {
        return KeysOf(Put(name, content));
    }

    std::filesystem::path m_Folder;
};

std::string Utf16(const std::string& ascii, bool bBigEndian, bool bMark)
{
    std::string text = !bMark ? ""s : bBigEndian ? "\xfe\xff"s : "\xff\xfe"s;
    for (const char c : ascii)
        text += bBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return text;
}

const std::string kSima = "G00,03,Site,\r\nA00,\r\nA01,1,P1,10.000,20.000,3.000,\r\nA99,\r\n";
const std::string kSimaNumbers =
    "G00,03,Site,\r\nA00,\r\nA01,1,,10.000,20.000,3.000,\r\nA01,2,P2,1.0,2.0,3.0,\r\nA99,\r\n";
const std::string kDxf = "  999\r\nmade by hand\r\n  0\r\nSECTION\r\n  2\r\nENTITIES\r\n";

TEST_F(Guess, TellsAFormByItsMarkWhateverItsName)
{
    struct TCase {
        const char* m_pWhat;
        std::string m_strContent;
        std::vector<std::string> m_Keys;
    };
    const TCase cases[] = {
        {"records with names", kSima, {"sima!"}},
        {"no record", "G00,03,Site,\r\nA00,\r\nA99,\r\n", {"sima!"}},
        {"records with numbers", kSimaNumbers, {"sima-numbers!"}},
        {"a record cut short", "G00,03,,\nA00,\nA01,1", {"sima-numbers!"}},
        {"a mark", "\xef\xbb\xbf" + kSima, {"sima!"}},
        {"16 bits", Utf16(kSima, false, true), {"sima!"}},
        {"16 bits, other order", Utf16(kSima, true, true), {"sima!"}},
        {"16 bits without a mark", Utf16(kSimaNumbers, true, false), {"sima-numbers!"}},
        {"layout header", "Header>> Delimiter(;) FileFormat(name,north,east) <<\r\n", {"delimited!", "delimited-35!"}},
        {"drawing", "AC1015\0\0\0\0"s, {"dwg!"}},
        {"drawing exchange", kDxf, {"dxf!"}},
        {"binary drawing exchange", "AutoCAD Binary DXF\r\n\x1a\0\x00\x00SECTION"s, {"dxf!"}},
        {"binary drawing exchange, own mark", "AutoCAD Binary DXF\r\n\x16\0\x00\x00SECTION"s, {"dxf!"}},
        {"layers", "  0\r\nLAYERSTATEDICTIONARY\r\n  0\r\nLAYERSTATE\r\n", {"layer-state!"}},
        {"LandXML", "<?xml version=\"1.0\"?>\n<!-- <CodeDictionary> -->\n<LandXML version=\"1.0\">", {"landxml!"}},
        {"LandXML in 16 bits", Utf16("<?xml version=\"1.0\"?><LandXML>", false, true), {"landxml!"}},
        {"codes", "<CodeDictionary version=\"1.1\"/>", {"codes-xml!"}},
        {"shapes", "\0\0\x27\x0a\0\0\0\0"s, {"shapefile!"}},
        {"log", "JB,NMSite,DT01-02-2026\r\nMO,AD0,UN1\r\n", {"localization-text!"}},
        {"log with remarks", "--made by hand\r\n--again\r\nJB,NMSite\r\n", {"localization-text!"}},
        {"blocks f g h", "\x02_+P1        _ f+000001000m_ g+0", {"block-fgh!"}},
        {"lines f g h", "_+P1_f1000m_g2000m_\r\n", {"block-fgh!"}},
        {"blocks x y z",
         "\xef\xbb\xbf\x02  _+P1" + std::string(122, ' ') + "1123\x03\r\n\x02_ x+00000001000",
         {"block-xyz!"}},
        {"wide blocks", "\x02_0.P1              _ x+000001000", {"block-wide!"}},
        {"wide lines", Utf16("_0.P1_ x1", false, true), {"block-wide!"}},
        {"binary points", "Fieldra" + std::string(31, '\0'), {"binary-points!"}},
        {"strings", "GENIO  Site\r\n001,Format(3F14.4)\r\n", {"genio-points!"}},
    };
    for (const TCase& test : cases) {
        EXPECT_EQ(Keys("site.unknown", test.m_strContent), test.m_Keys) << test.m_pWhat;
        // a false extension doesn't hide it
        EXPECT_EQ(Keys("site.csv", test.m_strContent), test.m_Keys) << test.m_pWhat;
    }
}

/// Blocks without a record, with the mark behind which the wide form ends or without it.
TEST_F(Guess, BlocksWithoutPointsMayBeOfAnyForm)
{
    const std::string blanks(127, ' ');
    for (const std::string& content :
         {"\x02 "s + blanks + "0048\x03\r\n", "\x02_"s + blanks + "0079\x03\r\n\x04\r\n"}) {
        const auto keys = Keys("site.txt", content);
        for (const char* const pKey : {"block-fgh", "block-xyz", "block-wide"})
            EXPECT_EQ(std::count(keys.begin(), keys.end(), pKey), 1) << pKey;
    }
}

TEST_F(Guess, DoesntTakeAMarkForGrantedElsewhere)
{
    const std::string contents[] = {
        "G00,03,Site,\r\nB00,\r\n",  // second line
        "x\r\n" + kSima,             // not at the start
        "G000,\r\nA00,\r\n",         //
        "Header>> nothing <<\r\n",   // no delimiter told
        "  0\r\nSECTIONS\r\n",       //
        "  x\r\nSECTION\r\n",        //
        "<Other><LandXML/></Other>", //
        "<!-- <LandXML> -->",        //
        "AC9999",                    //
        "\x0a\x27\0\0"s,             // the other order of bytes
        "MO,AD0\r\nJB,NMSite\r\n",   //
        "\x02_!!Site_t\"06-12-31",   // other blocks
        "P_+Q_ x1",                  //
        "_+P1_ y1",                  //
        "",
    };
    for (const std::string& content : contents)
        EXPECT_TRUE(Keys("site.unknown", content).empty()) << content;
}

TEST_F(Guess, TakesABinaryListOfAnotherMarkByItsNumbers)
{
    const std::string header = "Other" + std::string(25, '\0') + "\x02\0\0\0\xff\xff\xff\xff"s;
    EXPECT_THAT(Keys("a.bin", header), ElementsAre("binary-points"));
    EXPECT_THAT(Keys("a.bin", header + "\x01\0\0\0"s + std::string(41, '\0')), ElementsAre("binary-points"));
    EXPECT_TRUE(Keys("a.bin", header + "\x01\0\0\x7f"s + std::string(41, '\0')).empty());
    EXPECT_TRUE(Keys("a.bin", header.substr(0, 37)).empty());
    EXPECT_TRUE(Keys("a.bin", std::string(40, 'x')).empty());
}

TEST_F(Guess, TellsDelimitedTextByItsColumns)
{
    const std::vector<std::string> both{"delimited", "delimited-35"};
    const std::string good[] = {
        "P1,100.5,200.5,3\nP2,101,201,-4.5\n",
        "P1;100.5;200.5;3",
        "P1\t100.5\t200.5\t3\tROAD\tTREE\nP2\t1e2\t+201\t4\n", // codes spread over fields
        "P1 100.5 200.5\r\n\r\nrest, that, isn't read",
        "Name,North,East\nP1,100.5,200.5\n",                           // a heading
        "\"P 1, old\",100.5,200.5\n",                                  // the delimiter in quotes
        "P1,45\xc2\xb0"s + "30'15.1\",009\xc2\xb0"s + "15'00.0\",3\n", // angles
    };
    for (const std::string& content : good) {
        EXPECT_EQ(Keys("site.unknown", content), both) << content;
        EXPECT_EQ(Keys("site.unknown", Utf16("P1,100.5,200.5,3\n", false, true)), both);
    }
    const std::string bad[] = {
        "100.5,200.5\n",           // two fields
        "P1,ROAD,200.5\n",         // one number
        "P1,100,A\nP2,B,200\n",    // numbers in other places
        "Name,North,East\n",       // nothing but a heading
        "P1,100.5,200.5\nA, word", // prose behind
        "P1,100.5,200.5\0\n"s,     //
        "\nP1,100.5,200.5\n",      // no data ahead of the empty line
    };
    for (const std::string& content : bad)
        EXPECT_TRUE(Keys("site.unknown", content).empty()) << content;
}

TEST_F(Guess, PutsWhatBothNameAndContentAllowFirst)
{
    const std::vector<std::string> keys = Keys("site.CSV", "P1,100.5,200.5,3\n");
    ASSERT_GE(keys.size(), 3U);
    EXPECT_EQ(keys[0], "delimited");
    EXPECT_EQ(keys[1], "delimited-35");
    EXPECT_THAT(keys, testing::IsSupersetOf({"comma-neh", "comma-enh", "scan-session"}));
    EXPECT_THAT(keys, testing::Not(testing::Contains("sima")));

    // by its name alone, and what the content allows behind
    EXPECT_THAT(Keys("road.RD5", "HL,100.5,200.5\n"), ElementsAre("rd5", "delimited", "delimited-35"));
    // the content says no to what the name promises
    EXPECT_TRUE(Keys("site.sim", "no such thing").empty());
    EXPECT_THAT(Keys("site.csv", "one word\n"), testing::Not(testing::Contains("delimited")));
}

TEST_F(Guess, LooksAtTheHeadAlone)
{
    // 64 KB of points, then a line that fits no more; a line cut at the head's end doesn't count
    std::string content;
    while (content.size() < (std::size_t{64} << 10))
        content += "P1,100.5,200.5,3\n";
    EXPECT_EQ(Keys("a.unknown", content + "prose\n").size(), 2U);
    const std::string longLine = "P1,100.5,200.5,\"" + std::string(std::size_t{64} << 10, 'x') + "\"\n";
    EXPECT_TRUE(Keys("a.unknown", longLine).empty());
    EXPECT_EQ(Keys("a.unknown", "P0,1.5,2.5,9\n" + longLine).size(), 2U);
}

TEST_F(Guess, FallsBackOnTheNameOfAFileThatCantBeRead)
{
    EXPECT_THAT(KeysOf((m_Folder / "missing.sim").string()), ElementsAre("sima", "sima-numbers"));
    EXPECT_TRUE(KeysOf((m_Folder / "missing").string()).empty());
    EXPECT_TRUE(KeysOf((m_Folder / "folder.sim" / "missing").string()).empty());
}

TEST(FormatDocument, StandsInTheDocsAsItIsMade)
{
    // ALIDADE_REWRITE=1 writes it anew
    const std::string path = SourcePath("docs/formats.md");
    const std::string made = CIEFormatTable::ToMarkdown();
    if (std::getenv("ALIDADE_REWRITE"))
        std::ofstream(path, std::ios::binary) << made;
    std::ifstream file(path, std::ios::binary);
    const std::string stands{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_TRUE(stands == made) << "docs/formats.md differs from the format table; ALIDADE_REWRITE=1 writes it anew";
}

TEST(FormatDocument, HasARowOfSevenCellsForEachCode)
{
    std::istringstream text(CIEFormatTable::ToMarkdown());
    std::size_t rows = 0;
    for (std::string line; std::getline(text, line);) {
        if (line.empty() || line[0] != '|')
            continue;
        int bars = 0;
        for (std::size_t i = 0; i < line.size(); ++i)
            bars += line[i] == '|' && (i == 0 || line[i - 1] != '\\');
        EXPECT_EQ(bars, 8) << line;
        ++rows;
    }
    EXPECT_EQ(rows, CIEFormatTable::GetRows().size() + 4); // two heads of two lines
}

TEST(FormatDocument, TellsTheSameAsJson)
{
    const auto rows = nlohmann::json::parse(CIEFormatTable::ToJson());
    ASSERT_EQ(rows.size(), CIEFormatTable::GetRows().size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const TIEFormatRow& row = CIEFormatTable::GetRows()[i];
        EXPECT_EQ(rows[i].at("code"), row.m_nCode);
        EXPECT_EQ(rows[i].at("direction"), row.m_eDirection == kIn ? "import" : "export");
        EXPECT_EQ(rows[i].at("key"), row.m_pKey);
    }
    const nlohmann::json sima =
        *std::find_if(rows.begin(), rows.end(), [](const auto& row) { return row["key"] == "sima-numbers"; });
    EXPECT_EQ(sima.at("code"), 50);
    EXPECT_EQ(sima.at("extensions"), nlohmann::json({"sim"}));
    EXPECT_EQ(sima.at("built"), true);
    EXPECT_EQ(sima.at("carries"), nlohmann::json({"points"}));
    EXPECT_EQ(sima.at("title"), "SIMA points with running numbers");
    EXPECT_NE(sima.at("remark"), "");
    const nlohmann::json pair = *std::find_if(rows.begin(), rows.end(), [](const auto& row) {
        return row["key"] == "cor-lev" && row["direction"] == "export";
    });
    EXPECT_EQ(pair.at("extensions"), nlohmann::json::array());
}

} // namespace
