// Notes: what a run tells of each thing that didn't pass whole, and the one table of their codes.
// The table is fixed: any thread may ask it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <span>

/// Why something didn't pass whole. In the order of their words; a number may change from version to version, a word
/// doesn't.
enum class EIENote : int {
    BlockBehindEnd,
    BlockNoFrame,
    BlockNoRecord,
    BlockTooLong,
    BlockUnfinished,
    CodeAttributes,
    DatasetJobHistory,
    DatasetLeftOut,
    DatasetUnreached,
    DrawingArcScale,
    DrawingAttributes,
    DrawingBadCharacters,
    DrawingBlockFace,
    DrawingBroken,
    DrawingBulge,
    DrawingByBlock,
    DrawingCodeName,
    DrawingCodePage,
    DrawingCoordinates,
    DrawingCut,
    DrawingElevation,
    DrawingEntity,
    DrawingExtrusion,
    DrawingFaceDrawing,
    DrawingFaceRecord,
    DrawingFourthCorner,
    DrawingInsertAngle,
    DrawingInsertArray,
    DrawingInsertEmpty,
    DrawingInvisible,
    DrawingLayerState,
    DrawingLineType,
    DrawingLongName,
    DrawingLongValue,
    DrawingMesh,
    DrawingNestedBase,
    DrawingNoLayer,
    DrawingNoSection,
    DrawingNoVertex,
    DrawingNotFinite,
    DrawingNumber,
    DrawingNumberPart,
    DrawingOtherBinary,
    DrawingPaperSpace,
    DrawingSameAttribute,
    DrawingSection,
    DrawingThickness,
    DrawingTooManyCopies,
    DrawingTrueColor,
    DrawingUnits,
    DrawingWidths,
    DrawingWord,
    FileCannotOpen,
    FileEncoding,
    FileHeader,
    FileNoEnd,
    FileNoFrame,
    FileNoRecord,
    FileReadFailed,
    FileWriteFailed,
    HeaderUnknownField,
    HistoryComma,
    HistoryLineEnd,
    HistoryTag,
    JobAttributeCodes,
    JobAttributeTypes,
    JobAttributes,
    JobBinaryForm,
    JobBlockPatterns,
    JobBlocks,
    JobCode,
    JobCodeDrawing,
    JobCodes,
    JobColor,
    JobDatasetExtras,
    JobDatasets,
    JobDefaultLayer,
    JobFlatLines,
    JobGeographic,
    JobGeographicArcs,
    JobGeographicSurfaces,
    JobLayer,
    JobMended,
    JobMiles,
    JobName,
    JobNoHistory,
    JobObjectKind,
    JobPointNumbers,
    JobStartPoint,
    JobSurfaces,
    JobTemplates,
    JobUnits,
    JobUpperCase,
    LayoutEmpty,
    LayoutField,
    LineBadCharacters,
    LineBehindEnd,
    LineBehindLast,
    LineBlank,
    LineCodeString,
    LineCodes,
    LineCut,
    LineEmpty,
    LineFieldCount,
    LineFields,
    LineFileStart,
    LineHeight,
    LineName,
    LineNote,
    LineNumber,
    LineNumberCut,
    LineReferences,
    LineSecondLevel,
    LineTag,
    LineTooLong,
    LineUnreadable,
    LineZeroByte,
    ObjectAttributes,
    ObjectBlockName,
    ObjectCodes,
    ObjectCoordinates,
    ObjectDrawing,
    ObjectGeoidHeight,
    ObjectGpsData,
    ObjectHeight,
    ObjectJoined,
    ObjectKind,
    ObjectLayer,
    ObjectLineAsPoints,
    ObjectLineSplit,
    ObjectName,
    ObjectNoAccuracy,
    ObjectNoHeight,
    ObjectNoMeasurement,
    ObjectNoStation,
    ObjectNoTime,
    ObjectNotes,
    ObjectOffsets,
    ObjectPointKind,
    ObjectRing,
    ObjectTimeStamps,
    ObjectWord,
    RecordBadCharacters,
    RecordCode,
    RecordCodes,
    RecordCoordinates,
    RecordDeleted,
    RecordField,
    RecordFields,
    RecordHeight,
    RecordIncomplete,
    RecordName,
    RecordNameCut,
    RecordNoLevel,
    RecordNumber,
    RecordShort,
    RecordTooLong,
    SimaNoDataStart,
    SimaNoJobLine,
    SurfaceCoordinates,
    SurfaceStanding,
    SurfaceTriangles,
};

/// What is known of a code before anything happened.
struct TIENoteRow {
    EIENote m_eCode;
    const char* m_pWord;     ///< stable word for people and programs, as "line.field-count"
    const char* m_pSentence; ///< what it means, whatever the record
};

/// All codes, in the order of the enumeration.
ALIDADE_API std::span<const TIENoteRow> GetNoteRows();
/// The table as a page of Markdown: docs/notes.md.
ALIDADE_API CString GetNotesAsMarkdown();
/// The stable word of a code; lives for ever.
ALIDADE_API const char* GetNoteWord(EIENote eCode);

/// Where in a file something stands.
struct TIENotePlace {
    std::int64_t m_nLine;   ///< line from 1; 0 where lines don't apply
    std::int64_t m_nOffset; ///< offset in bytes; -1 where it isn't known

    /// A line number alone is a place too.
    constexpr TIENotePlace(std::int64_t nLine = 0, std::int64_t nOffset = -1) : m_nLine(nLine), m_nOffset(nOffset) {}
};

/// One thing, or several alike, that was refused, changed or left out.
struct TIENote {
    enum EKind : int {
        Refused = 0, ///< import: the record gave no object
        Changed = 1, ///< the record passed, but not as it was
        LeftOut = 2  ///< the job held it and the file can't, or the file held it and the job can't
    };
    EKind m_eKind = Refused;
    EIENote m_eCode{};
    CString m_strFile;         ///< the file that was read or written
    TIENotePlace m_Place;      ///< of the first one, if there are several
    CString m_strRecord;       ///< name of the point, line, layer...; empty if it has none
    CString m_strReason;       ///< one sentence
    std::int64_t m_nCount = 1; ///< how many records or objects it tells of

    [[nodiscard]] const char* GetWord() const { return GetNoteWord(m_eCode); }
};
