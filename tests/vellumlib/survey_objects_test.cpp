// GPS positions, sheet points and job histories: what they keep, and that copies are independent.
#include "support/jobs.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(GPSPosition, WhatWasNeverSetTakesNoRoom)
{
    static_assert(sizeof(CIEDesignPoint) <= 256);
    static_assert(sizeof(CIEGPSPosition) <= sizeof(CIEDesignPoint) + sizeof(void*));
    CIEGPSPosition position(MakeStation("P", 1, 2, 3));
    EXPECT_FALSE(position.HasGPSData() || position.HasCV() || position.HasTime());
    EXPECT_NE(position.GetRawDataType(), CIEGPSPosition::SatelliteData);
    EXPECT_EQ(position.GetCV().GetRMS() + position.GetDOP().m_dPDOP, 0.0);
    EXPECT_EQ(position.GetTime(), TIEDateTime());
    position.SetRawDataType(CIEGPSPosition::NoRawData);
    EXPECT_FALSE(position.HasGPSData());
}

TEST(GPSPosition, ErrorsComeFromTheDiagonal)
{
    const TGPSCoordCovMatrix cv{4, 5, 16, 100, 100, 100}; // XX, YY, ZZ, XY, XZ, YZ
    EXPECT_EQ(cv.GetRMS(), 5);
    EXPECT_EQ(cv.GetHRMS(), 3);
    EXPECT_EQ(cv.GetVRMS(), 4);
    EXPECT_EQ((TGPSCoordCovMatrix{-4, 3, -1}.GetHRMS() + TGPSCoordCovMatrix{0, 0, -1}.GetVRMS()), 0);
}

TEST(GPSPosition, EachSatelliteValueMakesItsRecordKnown)
{
    void (*const set[])(CIEGPSPosition&) = {
        [](CIEGPSPosition& position) {
            position.SetDOP({0, 0, 0, 0});
        },
        [](CIEGPSPosition& position) { position.SetSolutionType(CIEGPSPosition::NoSolution); },
        [](CIEGPSPosition& position) { position.SetNumberOfGpsSats(0); },
        [](CIEGPSPosition& position) { position.SetNumberOfGlonassSats(0); },
        [](CIEGPSPosition& position) { position.SetRawDataType(CIEGPSPosition::SatelliteData); },
    };
    for (const auto& change : set) {
        CIEGPSPosition position;
        change(position);
        EXPECT_EQ(position.GetRawDataType(), 1);
        position.SetRawDataType(CIEGPSPosition::NoRawData);
        EXPECT_FALSE(position.HasGPSData());
    }
    CIEGPSPosition position;
    position.SetCV({1, 0, 0, 0, 0, 0});
    EXPECT_TRUE(position.SetTime({2026, 11, 22, 9, 31, 7, 0}));
    EXPECT_NE(position.GetRawDataType(), 1) << "accuracy and time say nothing of satellites";
    position.SetNumberOfGpsSats(9);
    position.SetRawDataType(CIEGPSPosition::NoRawData);
    EXPECT_EQ(position.GetNumberOfGpsSats(), 0);
    EXPECT_TRUE(position.HasCV() && position.HasTime());
}

TEST(GPSPosition, OnlyDatesAndTimesThatExist)
{
    const std::pair<TIEDateTime, bool> rows[] = {
        {{2026, 11, 22, 9, 31, 7, 250}, true}, {{2024, 2, 29, 23, 59, 60, 999}, true},
        {{1, 1, 1, 0, 0, 0, 0}, true},         {{9999, 12, 31, 0, 0, 0, 0}, true},
        {{2026, 2, 29, 0, 0, 0, 0}, false},    {{2026, 13, 1, 0, 0, 0, 0}, false},
        {{2026, 0, 1, 0, 0, 0, 0}, false},     {{2026, 4, 31, 0, 0, 0, 0}, false},
        {{0, 1, 1, 0, 0, 0, 0}, false},        {{10000, 1, 1, 0, 0, 0, 0}, false},
        {{2026, 1, 1, 24, 0, 0, 0}, false},    {{2026, 1, 1, 0, 60, 0, 0}, false},
        {{2026, 1, 1, 0, 0, 61, 0}, false},    {{2026, 1, 1, 0, 0, 0, 1000}, false},
        {{2026, 1, 1, -1, 0, 0, 0}, false},    {{2026, 1, 0, 0, 0, 0, 0}, false},
        {{2026, -11, 1, 0, 0, 0, 0}, false},   {{2026, 1, 257, 0, 0, 0, 0}, false},
    };
    for (const auto& [time, bGood] : rows) {
        CIEGPSPosition position;
        EXPECT_EQ(position.SetTime(time), bGood) << time.m_nYear << "-" << time.m_nMonth << "-" << time.m_nDay;
        EXPECT_EQ(position.HasTime(), bGood);
        EXPECT_EQ(position.GetTime(), bGood ? time : TIEDateTime());
    }
}

TEST(GPSPosition, EverySolutionHasAWordOfItsOwn)
{
    CIEGPSPosition position;
    std::vector<CString> words;
    for (int nType = -1; nType <= CIEGPSPosition::NetworkFixed + 1; ++nType) {
        position.SetSolutionType(nType);
        words.push_back(position.GetSolutionTypeAsString());
        EXPECT_EQ(position.GetSolutionType(), nType);
    }
    EXPECT_EQ(words.front() + words[CIEGPSPosition::Fixed + 1] + words.back(), "unknownfixedunknown");
    words.pop_back();
    std::sort(words.begin(), words.end());
    EXPECT_EQ(std::adjacent_find(words.begin(), words.end()), words.end());
}

TEST(GPSPosition, ACopyHasEverythingAndKeepsIt)
{
    CIEGPSPosition position(MakeStation("P", 1, 2, 3));
    position.SetCV({1, 2, 3, 4, 5, 6});
    EXPECT_TRUE(position.SetTime({2026, 11, 22, 9, 31, 7, 250}));
    position.SetDOP({7, 8, 9, 10});
    position.SetSolutionType(CIEGPSPosition::Float);
    position.SetNumberOfGpsSats(11);
    position.SetNumberOfGlonassSats(12);

    const std::unique_ptr<CIEObject> pClone = position.clone();
    const auto& clone = static_cast<const CIEGPSPosition&>(*pClone);
    CIEGPSPosition assigned;
    assigned = position;
    const CIEGPSPosition& same = assigned;
    assigned = same;
    CIEGPSPosition emptied = position;
    emptied = CIEGPSPosition();
    EXPECT_FALSE(emptied.HasGPSData());
    position.SetNumberOfGpsSats(99);
    for (const CIEGPSPosition* const pCopy : {&clone, &same}) {
        EXPECT_EQ(pCopy->GetName(), "P");
        EXPECT_EQ(pCopy->GetCV(), (TGPSCoordCovMatrix{1, 2, 3, 4, 5, 6}));
        EXPECT_EQ(pCopy->GetTime().m_nMillisecond, 250);
        EXPECT_EQ(pCopy->GetDOP(), (TGPSDOP{7, 8, 9, 10}));
        EXPECT_EQ(pCopy->GetSolutionTypeAsString(), "float");
        EXPECT_EQ(pCopy->GetNumberOfGpsSats() * 100 + pCopy->GetNumberOfGlonassSats(), 1112);
        EXPECT_FALSE(pCopy->HasSameGPSData(position));
    }
    EXPECT_TRUE(clone.HasSameGPSData(assigned));
}

TEST(SheetPoint, MeasurementsNeedADesignPoint)
{
    CIESheetPoint sheet;
    sheet.SetName("S");
    EXPECT_FALSE(sheet.AddOffsetStation(CIEOffsetStation(MakeStation("M", 1, 2, 3))));
    EXPECT_EQ(sheet.GetNumberOfStations(), 0);
    EXPECT_EQ(sheet.GetStation(0), nullptr);
    sheet.SetDesignStation(MakeStation("D", 4, 5, 6));
    EXPECT_EQ(sheet.GetNumberOfStations(), 1);
    EXPECT_EQ(sheet.GetName() + sheet.GetStation(0)->GetName(), "SD");
    EXPECT_EQ(sheet.GetStation(1), nullptr);
    EXPECT_EQ(sheet.GetOffsetStation(0), nullptr);
    EXPECT_EQ(sheet.GetOffsetStation(-1), nullptr);
    EXPECT_EQ(sheet.GetGroupType(), 1) << "hosts ask for the number";
}

TEST(SheetPoint, ACopyHasEverythingAndKeepsIt)
{
    CIESheetPoint sheet;
    sheet.SetDesignStation(MakeStation("D", 4, 5, 6));
    CIEOffsetStation measurement(MakeStation("M", 1, 2, 3));
    measurement.m_dDeltaHeight = 3;
    measurement.m_dDistance = 8;
    measurement.SetNotes("seen");
    EXPECT_TRUE(sheet.AddOffsetStation(measurement));
    const auto pClone = sheet.clone();
    sheet.SetDesignStation(MakeStation("other", 0, 0, 0));
    const auto& copy = static_cast<const CIESheetPoint&>(*pClone);
    ASSERT_EQ(copy.GetNumberOfStations(), 2);
    EXPECT_EQ(copy.GetStation(0)->GetName(), "D");
    const CIEOffsetStation& back = *copy.GetOffsetStation(1);
    EXPECT_EQ(copy.GetStation(1), &back);
    EXPECT_EQ(back.GetName() + back.GetNotes(), "Mseen");
    EXPECT_EQ(back.m_dDeltaHeight * 10 + back.m_dDistance, 38);
}

TEST(Dataset, ReadersFindObjectsAtTheSameTime)
{
    CIEDataset dataset("A");
    for (int i = 0; i < 2000; ++i)
        AddPoint(dataset, "P" + std::to_string(i));
    std::vector<std::thread> readers;
    std::atomic<int> nFound = 0;
    for (int nReader = 0; nReader < 4; ++nReader)
        readers.emplace_back([&] {
            for (int i = 0; i < 2000; ++i)
                nFound += dataset.FindObject("P" + std::to_string(i)) == dataset.GetObjectAt(i);
        });
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(nFound, 8000);
}

} // namespace
