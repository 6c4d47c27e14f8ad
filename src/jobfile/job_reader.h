// Walks through a document's text and builds the job piece by piece.
#pragma once

#include "jobfile/job_context.h"
#include "jobfile/json_scanner.h"

#include <map>

/// The frame of the document (the whole, the datasets, their lists) is followed level by level; each thing within it (a
/// section, an object, an alignment, a position of a surface) gathers in a tree, goes into the job and is dropped, so
/// that the memory needed beyond the job and the text is that of the largest thing. Objects name codes, layers and road
/// templates. Where the sections stand ahead of the datasets, as we write them, one walk through the text will do; else
/// the first walk takes the sections and the second the datasets.
class CIEJobReader {
public:
    enum EWalks { One, Two };

    /// `in` and the text outlive the reader.
    CIEJobReader(CIEJobReading& in, std::string_view text) : m_In(in), m_Text(text) {}

    /// False with the error in `in`. That of one walk counts only where IsFinal: two find the faults of the sections,
    /// and those of the text itself, ahead of all others.
    bool Read(EWalks eWalks);
    [[nodiscard]] bool IsFinal() const { return m_bFinal; }

private:
    enum EPass { Everything, Sections, Datasets };
    /// Levels of the frame.
    enum ELevel {
        Document,
        DatasetList,
        Dataset,
        ObjectList,
        AlignmentList,
        SurfaceList,
        Surface,
        PositionList,
        TriangleList
    };
    struct TLevel {
        ELevel m_eLevel;
        CString m_strStep;       ///< key or index within the level above
        std::size_t m_nNext = 0; ///< index of the next element of a list
        CString m_strKey;        ///< key of the next member
        CStringArray m_Seen;     ///< keys so far
    };
    struct TRow;
    /// A start point that an alignment names by its place among objects that may still come.
    struct TStartPoint {
        CIEAlignment* m_pAlignment;
        int m_nObject;
        CString m_strPlace;
    };

    bool RunPass(EPass ePass);
    bool CheckMark();
    bool ReadSections();
    bool ReadCurrentDataset();

    bool TakeValue(const CIEJsonScanner& scanner, CIEJsonTree::EType eType);
    bool TakeKey(const CIEJsonScanner& scanner);
    bool BeginValue(CIEJsonTree::EType eType, bool& bTaken);
    bool EndContainer();
    bool FailBroken(const CIEJsonScanner& scanner);
    bool EnterLevel(const TRow& row, CIEJsonTree::EType eType);
    bool LeaveLevel();
    bool Deliver();
    bool DeliverTriangle(const CIEJsonValue& value);
    bool DeliverAlignment(const CIEJsonValue& value);
    bool CheckTriangles();
    bool SetStartPoints();
    [[nodiscard]] const TRow* FindRow() const;
    [[nodiscard]] CString FramePlace() const;

    CIEJobReading& m_In;
    std::string_view m_Text;
    EPass m_ePass = Everything;
    bool m_bFinal = false;
    bool m_bDatasets = false; // they have begun
    std::vector<TLevel> m_Levels;
    CIEJsonTree m_Tree;
    std::size_t m_nSkipped = 0; // arrays and objects that are open in a part which this pass leaves out
    bool m_bGathering = false;
    std::map<CString, CIEJsonTree, std::less<>> m_Sections;
    CIEDataset* m_pDataset = nullptr; // in the job, while its members come
    CIESurface* m_pSurface = nullptr;
    std::vector<TStartPoint> m_StartPoints; // of m_pDataset
};
