#include "alidade/vellumlib/data.h"
#include "alidade/vellumlib/observer.h"
#include "support/files.h"
#include "support/places.h"

#include <set>

namespace {

TEST(Notes, StandInTheDocsAsTheyAreMade)
{
    // ALIDADE_REWRITE=1 writes it anew
    const std::string path = SourcePath("docs/notes.md");
    const std::string made = GetNotesAsMarkdown();
    if (std::getenv("ALIDADE_REWRITE"))
        WriteFile(path, made);
    EXPECT_TRUE(ReadFile(path) == made) << "docs/notes.md differs from the table; ALIDADE_REWRITE=1 writes it anew";
}

/// A code that no source names is one that nobody will ever see.
TEST(Notes, EachIsToldBySomeSource)
{
    std::set<CString> named;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(SourcePath("src"))) {
        const std::string path = entry.path().string();
        if (entry.path().extension() != ".cpp" || path.ends_with("vellumlib/notes.cpp"))
            continue;
        const std::string text = ReadFile(path);
        constexpr std::string_view kMark = "EIENote::";
        for (std::size_t n = text.find(kMark); n != std::string::npos; n = text.find(kMark, n)) {
            n += kMark.size();
            std::size_t nEnd = n;
            while (nEnd < text.size() && std::isalnum(static_cast<unsigned char>(text[nEnd])))
                ++nEnd;
            named.insert(text.substr(n, nEnd - n));
        }
    }
    for (const TIENoteRow& row : GetNoteRows()) {
        // "line.field-count" is EIENote::LineFieldCount
        CString strName;
        bool bUpper = true;
        for (const char* p = row.m_pWord; *p; ++p) {
            const bool bMark = *p == '.' || *p == '-';
            if (!bMark)
                strName += bUpper ? static_cast<char>(std::toupper(static_cast<unsigned char>(*p))) : *p;
            bUpper = bMark;
        }
        EXPECT_TRUE(named.contains(strName)) << row.m_pWord;
    }
}

TEST(Notes, ALedgerAddsUpWhatTheyCount)
{
    CIELedger ledger;
    CIEData job;
    job.Note(TIENote::Refused, EIENote::LineNumber, "f", 1, "A", "unheard"); // nobody listens yet
    job.SetObserver(&ledger);
    job.Note(TIENote::Refused, EIENote::LineNumber, "f", 7, "P1", "why");
    job.Note(TIENote::LeftOut, EIENote::DrawingEntity, "f", {9, 120}, "TEXT", {}, 2991);
    job.Note(TIENote::LeftOut, EIENote::DrawingEntity, "f", {9, 120}, "HATCH", {}, 9);
    EXPECT_EQ(ledger.GetCount(TIENote::Refused), 1);
    EXPECT_EQ(ledger.GetCount(TIENote::LeftOut), 3000);
    EXPECT_EQ(ledger.GetCount(EIENote::DrawingEntity), 3000);
    EXPECT_EQ(ledger.GetNotes().size(), 3U);
    EXPECT_EQ(ledger.GetNotes()[1].m_strReason, GetNoteRows()[static_cast<int>(EIENote::DrawingEntity)].m_pSentence);
    for (std::size_t i = 0; i < 2 * CIELedger::kKeptOfEachCode; ++i)
        job.Note(TIENote::Changed, EIENote::LineCodes, "f", 0, {}, "r", 5);
    EXPECT_EQ(ledger.GetNotes().size(), 3 + CIELedger::kKeptOfEachCode);
    EXPECT_EQ(ledger.GetCount(TIENote::Changed), 10 * static_cast<std::int64_t>(CIELedger::kKeptOfEachCode));
}

} // namespace
