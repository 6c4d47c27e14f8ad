// Walks through a document's text and builds the job piece by piece.
#pragma once

#include "jobfile/job_context.h"

#include <nlohmann/json.hpp>

#include <map>

/// Takes the events of the JSON parser. The frame of the document (the whole, the datasets, their lists) is followed
/// level by level; each thing within it (a section, an object, an alignment, a position of a surface) gathers in a
/// tree, goes into the job and is dropped, so that the memory needed beyond the job is that of its largest thing.
/// Objects name codes, layers and road templates, which may stand behind them. So the text is gone through twice: first
/// for the document's sections, then for its datasets.
class CIEJobReader {
public:
    enum EPass { Sections, Datasets };

    /// `in` outlives the reader.
    CIEJobReader(CIEJobReading& in, std::string_view text) : m_In(in), m_Text(text) {}

    /// Both passes. False with the error in `in`.
    bool Read();

    // events of the parser; false ends it
    bool null();
    bool boolean(bool bValue);
    bool number_integer(std::int64_t nValue);
    bool number_unsigned(std::uint64_t nValue);
    bool number_float(double dValue, const std::string& digits);
    bool string(std::string& text);
    bool binary(std::vector<std::uint8_t>& bytes);
    bool start_object(std::size_t nElements);
    bool key(std::string& text);
    bool end_object();
    bool start_array(std::size_t nElements);
    bool end_array();
    bool parse_error(std::size_t nPosition, const std::string& token, const nlohmann::json::exception& error);

private:
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

    bool BeginValue(CIEJsonTree::EType eType, bool& bTaken);
    bool EndContainer();
    template <class TAdd>
    bool Scalar(CIEJsonTree::EType eType, TAdd add);
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
    EPass m_ePass = Sections;
    std::vector<TLevel> m_Levels;
    CIEJsonTree m_Tree;
    std::size_t m_nDepth = 0;
    std::size_t m_nSkipped = 0; // arrays and objects that are open in a part which this pass leaves out
    bool m_bGathering = false;
    std::map<CString, CIEJsonTree, std::less<>> m_Sections;
    CIEDataset* m_pDataset = nullptr; // in the job, while its members come
    CIESurface* m_pSurface = nullptr;
    std::vector<TStartPoint> m_StartPoints; // of m_pDataset
};
