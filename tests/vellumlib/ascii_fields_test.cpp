#include "alidade/vellumlib/ascii_fields.h"

#include "alidade/vellumlib/settings.h"
#include "support/files.h"
#include "support/places.h"

#include <gtest/gtest.h>

namespace {

using enum IEAsciiFields::EType;
using TFields = IEAsciiFields::TFields;

TEST(AsciiFields, WordsOfPeople)
{
    const std::pair<std::string_view, TFields> kRows[] = {
        {"name,north,east,height,codes", {Name, North, East, Height, CodesWithAll}},
        {" Name ; NORTHING\tEasting, elev  desc", {Name, North, East, Height, CodesWithAll}},
        {"id,lat,lon,geoid,note", {Name, North, East, GeoidHeight, Notes}},
        {"code code+strings code+attributes codes", {Codes, CodesWithStrings, CodesWithAttributes, CodesWithAll}},
        {"PNEZD", {Name, North, East, Height, Codes}},
        {"penha", {Name, East, North, Height, CodesWithAll}},
        {"PNEUGTC", {Name, North, East, Height, GeoidHeight, Notes, Codes}},
        {"P,N,E,Z,D", {Name, North, East, Height, Codes}},
        {"n", {North}},
        {"name,hrms,Solution,14", {Name, HorizontalRMS, Solution, PositionDOP}},
        {"sheet-name measurement CUT to-grade", {SheetName, MeasurementNumber, Cut, ToGrade}},
        {"cut", {Cut}}, // a word goes ahead of letters
        {"tuc", {Notes, Height, Codes}},
        {"0,1,2,41", {Name, North, East, LastField}},
        // refused
        {"", {}},
        {" \t ", {}},
        {",", {}},
        {"name,,north", {}},
        {"name,north,", {}},
        {"name,nord", {}},
        {"name,PNEZD", {}},
        {"PNEZX", {}},
        {"42", {}},
        {"-1", {}},
        {"1.5", {}},
        {"\"name\"", {}},
    };
    for (const auto& [text, expected] : kRows) {
        TFields fields = {Notes};
        EXPECT_EQ(IEAsciiFields::StringToFields(text, fields), !expected.empty()) << text;
        EXPECT_EQ(fields, expected) << text;
    }
}

TEST(AsciiFields, EveryListComesBackFromItsText)
{
    TFields all;
    for (int nType = Name; nType <= LastField; ++nType) {
        all.push_back(static_cast<IEAsciiFields::EType>(nType));
        TFields one;
        EXPECT_TRUE(IEAsciiFields::StringToFields(IEAsciiFields::FieldsToString({all.back()}), one));
        EXPECT_EQ(one, TFields{all.back()});
    }
    const CString text = IEAsciiFields::FieldsToString(all);
    EXPECT_EQ(text.find_first_of("0123456789() "), CString::npos)
        << "a field without a word, or one for no header line";
    TFields read;
    EXPECT_TRUE(IEAsciiFields::StringToFields(text, read));
    EXPECT_EQ(read, all);
    EXPECT_EQ(IEAsciiFields::FieldsToString({}), "");
}

TEST(AsciiFields, TheDocumentOfTheProgramTellsEveryField)
{
    const CString page = ReadFile(SourcePath("docs/program.md"));
    for (int nType = Name; nType <= LastField; ++nType) {
        const CString word = IEAsciiFields::FieldsToString({static_cast<IEAsciiFields::EType>(nType)});
        EXPECT_NE(page.find("`" + word + "`"), CString::npos) << word;
    }
}

TEST(AsciiFields, TheLastCodesAreTheCodeField)
{
    const TFields fields = {Codes, Name, CodesWithAll, Name, North};
    EXPECT_EQ(IEAsciiFields::FindTypeInArray(Name, fields), 1);
    EXPECT_EQ(IEAsciiFields::FindTypeInArray(East, fields), -1);
    EXPECT_EQ(IEAsciiFields::FindCodesInArray(fields), 2);
    EXPECT_EQ(IEAsciiFields::FindCodesInArray({Codes}), 0);
    EXPECT_EQ(IEAsciiFields::FindCodesInArray({Name, North}), -1);
}

TEST(Settings, ACopyHasEverythingAndALayoutOfItsOwn)
{
    TIESettings settings;
    EXPECT_TRUE(settings.HasAllDataTypes());
    settings.m_bSingleFile = settings.m_bAttrTypes = settings.m_bAttrQuotes = true;
    settings.m_eCoordsStyle = ECOORDS_STYLE::Digits;
    settings.m_nNorthDecimals = 4;
    settings.m_nEastDecimals = 5;
    settings.m_nHeightDecimals = 6;
    settings.m_cHistoryOptions = 7;
    settings.m_nMostBlockCopies = 8;
    settings.m_hWnd = Platform::BroadcastWindow();
    settings.m_pMessageBox = reinterpret_cast<IIEMessageBox*>(&settings);
    settings.m_strCodePage = "CP1251";
    settings.m_strWriteEncoding = "UTF-16";
    settings.SetDataType(EIEDataType::Codes, false);
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>();
    settings.m_pAsciiFormat->m_cDelimiter = u';';

    TIESettings copy;
    copy = settings;
    settings.m_pAsciiFormat->m_cDelimiter = u' ';
    EXPECT_TRUE(copy.m_bSingleFile && copy.m_bAttrTypes && copy.m_bAttrQuotes);
    EXPECT_EQ(copy.m_eCoordsStyle, ECOORDS_STYLE::Digits);
    EXPECT_EQ(copy.m_nNorthDecimals * 100 + copy.m_nEastDecimals * 10 + copy.m_nHeightDecimals, 456);
    EXPECT_EQ(copy.m_cHistoryOptions, 7);
    EXPECT_EQ(copy.m_nMostBlockCopies, 8);
    EXPECT_EQ(copy.m_hWnd, settings.m_hWnd);
    EXPECT_EQ(copy.m_pMessageBox, settings.m_pMessageBox);
    EXPECT_EQ(copy.m_strCodePage + copy.m_strWriteEncoding, "CP1251UTF-16");
    EXPECT_FALSE(copy.HasDataType(EIEDataType::Codes));
    EXPECT_TRUE(copy.HasDataType(EIEDataType::Layers));
    EXPECT_EQ(copy.GetAsciiFormat().m_cDelimiter, u';');

    settings.m_pAsciiFormat.reset();
    EXPECT_EQ(settings.GetAsciiFormat(), TIEAsciiFormat());
    const TIESettings& same = settings;
    settings = same;
    EXPECT_EQ(settings.m_strCodePage, "CP1251");
}

} // namespace
