#include "alidade/vellumlib/notes.h"

#include <iterator>

namespace {

// clang-format off
constexpr TIENoteRow kRows[] = {
    {EIENote::BlockBehindEnd, "block.behind-end", "There are blocks behind the end of the data."},
    {EIENote::BlockNoFrame, "block.no-frame", "The file has no frame of blocks."},
    {EIENote::BlockNoRecord, "block.no-record", "A block holds no record."},
    {EIENote::BlockTooLong, "block.too-long", "A record is longer than any can be."},
    {EIENote::BlockUnfinished, "block.unfinished", "The file ends within a record."},
    {EIENote::CodeAttributes, "code.attributes", "A code has other attributes here than where it came first."},
    {EIENote::DatasetJobHistory, "dataset.job-history", "The form doesn't hold the job history of a dataset."},
    {EIENote::DatasetLeftOut, "dataset.left-out", "A dataset wasn't written."},
    {EIENote::DatasetUnreached, "dataset.unreached", "The run didn't come to this dataset."},
    {EIENote::DrawingArcScale, "drawing.arc-scale", "Arcs of blocks became parts of ellipses, and have the form of circles in the job."},
    {EIENote::DrawingAttributes, "drawing.attributes", "A block reference has more attributes than any can have."},
    {EIENote::DrawingBadCharacters, "drawing.bad-characters", "Text isn't of the code page and was mended."},
    {EIENote::DrawingBlockFace, "drawing.block-face", "A face belongs to a block, and references don't copy it."},
    {EIENote::DrawingBroken, "drawing.broken", "The file is broken from a place on."},
    {EIENote::DrawingBulge, "drawing.bulge", "A segment of a polyline is an arc in the drawing and straight in the job."},
    {EIENote::DrawingByBlock, "drawing.by-block", "A reference gives its block a colour, line type or weight."},
    {EIENote::DrawingCodeName, "drawing.code-name", "An attribute has no name, or is of a code without one."},
    {EIENote::DrawingCodePage, "drawing.code-page", "The name of a code page isn't known."},
    {EIENote::DrawingCoordinates, "drawing.coordinates", "An entity has numbers that can't be coordinates."},
    {EIENote::DrawingCut, "drawing.cut", "The file ends within a section, or ahead of its entities."},
    {EIENote::DrawingElevation, "drawing.elevation", "A lightweight polyline has an elevation, and height 0 in the job."},
    {EIENote::DrawingEntity, "drawing.entity", "Entities of this kind have no place in the job."},
    {EIENote::DrawingExtrusion, "drawing.extrusion", "An entity has its coordinates in a plane of its own, taken as if it were level."},
    {EIENote::DrawingFaceDrawing, "drawing.face-drawing", "A face has a layer or a colour."},
    {EIENote::DrawingFaceRecord, "drawing.face-record", "A vertex of a mesh is a list of corners."},
    {EIENote::DrawingFourthCorner, "drawing.fourth-corner", "A face has four corners, and the job a triangle of three of them."},
    {EIENote::DrawingInsertAngle, "drawing.insert-angle", "A block reference has an angle, and its copies aren't turned."},
    {EIENote::DrawingInsertArray, "drawing.insert-array", "A block reference has rows or columns, and one copy was made."},
    {EIENote::DrawingInsertEmpty, "drawing.insert-empty", "A reference is to a block of which nothing came in ahead of it."},
    {EIENote::DrawingInvisible, "drawing.invisible", "A thing of the drawing is invisible."},
    {EIENote::DrawingLayerState, "drawing.layer-state", "A layer has a state that doesn't come in."},
    {EIENote::DrawingLineType, "drawing.line-type", "A line type isn't one of the ordinary ones."},
    {EIENote::DrawingLongName, "drawing.long-name", "The name of a block is longer than any can be; its start was read."},
    {EIENote::DrawingLongValue, "drawing.long-value", "A value is longer than any can be; its start was read."},
    {EIENote::DrawingMesh, "drawing.mesh", "A polyline is a mesh or a curve, and the job has a line through its vertices."},
    {EIENote::DrawingNestedBase, "drawing.nested-base", "A reference within a block isn't told relative to that block's base point."},
    {EIENote::DrawingNoLayer, "drawing.no-layer", "An object is on a layer that the drawing doesn't describe."},
    {EIENote::DrawingNoSection, "drawing.no-section", "The file has no section of a drawing."},
    {EIENote::DrawingNoVertex, "drawing.no-vertex", "A polyline has no vertex."},
    {EIENote::DrawingNotFinite, "drawing.not-finite", "A value isn't finite and was read as 0."},
    {EIENote::DrawingNumber, "drawing.number", "A value isn't a number and was read as 0."},
    {EIENote::DrawingNumberPart, "drawing.number-part", "A value is a number only at its start, which was taken."},
    {EIENote::DrawingOtherBinary, "drawing.other-binary", "The binary form of the drawing is another one."},
    {EIENote::DrawingPaperSpace, "drawing.paper-space", "A thing of the drawing is in paper space."},
    {EIENote::DrawingSameAttribute, "drawing.same-attribute", "Two attributes of a reference have one name, and the later one counts."},
    {EIENote::DrawingSection, "drawing.section", "Sections of this kind have no place in the job."},
    {EIENote::DrawingThickness, "drawing.thickness", "A thing of the drawing has a thickness."},
    {EIENote::DrawingTooManyCopies, "drawing.too-many-copies", "References would make more copies than are allowed."},
    {EIENote::DrawingTrueColor, "drawing.true-color", "A thing of the drawing has a colour beyond the 256."},
    {EIENote::DrawingUnits, "drawing.units", "The drawing's units aren't those in which it was read."},
    {EIENote::DrawingWidths, "drawing.widths", "A polyline has several widths."},
    {EIENote::DrawingWord, "drawing.word", "A value that is a word of the form began an entity or ended a part of the drawing."},
    {EIENote::FileCannotOpen, "file.cannot-open", "A file can't be opened."},
    {EIENote::FileEncoding, "file.encoding", "The encoding can't hold some of the text."},
    {EIENote::FileHeader, "file.header", "The header of the file isn't whole."},
    {EIENote::FileNoEnd, "file.no-end", "The file has no end of its data."},
    {EIENote::FileNoFrame, "file.no-frame", "The file has no frame."},
    {EIENote::FileNoRecord, "file.no-record", "The file holds no record."},
    {EIENote::FileReadFailed, "file.read-failed", "The rest of the file can't be read."},
    {EIENote::FileWriteFailed, "file.write-failed", "The file couldn't be written to its end."},
    {EIENote::HeaderUnknownField, "header.unknown-field", "The header line names a field that isn't known."},
    {EIENote::HistoryComma, "history.comma", "A text has a comma, which divides fields."},
    {EIENote::HistoryLineEnd, "history.line-end", "A text has a line end, which ends a row."},
    {EIENote::HistoryTag, "history.tag", "The tag of a table isn't one word."},
    {EIENote::JobAttributeCodes, "job.attribute-codes", "The file names attributes without their codes."},
    {EIENote::JobAttributeTypes, "job.attribute-types", "The file doesn't tell the types of attributes."},
    {EIENote::JobAttributes, "job.attributes", "The file doesn't hold attributes."},
    {EIENote::JobBinaryForm, "job.binary-form", "The binary form can't be read back."},
    {EIENote::JobBlockPatterns, "job.block-patterns", "The patterns of blocks come back as objects of their own."},
    {EIENote::JobBlocks, "job.blocks", "Objects of blocks aren't written."},
    {EIENote::JobCode, "job.code", "A code of the dictionary isn't written."},
    {EIENote::JobCodeDrawing, "job.code-drawing", "How a code is drawn isn't written."},
    {EIENote::JobCodes, "job.codes", "The file doesn't hold codes."},
    {EIENote::JobColor, "job.color", "A colour isn't one of the form's."},
    {EIENote::JobDatasetExtras, "job.dataset-extras", "What a dataset holds beside its points isn't written."},
    {EIENote::JobDatasets, "job.datasets", "The datasets come back as one."},
    {EIENote::JobDefaultLayer, "job.default-layer", "Objects without a layer come back on one."},
    {EIENote::JobFlatLines, "job.flat-lines", "Lines come back without heights."},
    {EIENote::JobGeographic, "job.geographic", "Latitude and longitude don't pass as they are."},
    {EIENote::JobGeographicArcs, "job.geographic-arcs", "Arcs of a geographic job can't be written as such."},
    {EIENote::JobGeographicSurfaces, "job.geographic-surfaces", "Surfaces of a geographic job can't be written as such."},
    {EIENote::JobLayer, "job.layer", "A layer isn't written."},
    {EIENote::JobMended, "job.mended", "A job document can't hold a value, another one stands for it."},
    {EIENote::JobMiles, "job.miles", "The form has no miles."},
    {EIENote::JobName, "job.name", "The names of objects don't pass as they are."},
    {EIENote::JobNoHistory, "job.no-history", "The job has no history."},
    {EIENote::JobObjectKind, "job.object-kind", "Objects of this kind aren't written."},
    {EIENote::JobPointNumbers, "job.point-numbers", "Points are numbered anew."},
    {EIENote::JobStartPoint, "job.start-point", "The start point of an alignment isn't in its dataset."},
    {EIENote::JobSurfaces, "job.surfaces", "Surfaces come back as one."},
    {EIENote::JobTemplates, "job.templates", "Road templates aren't written."},
    {EIENote::JobUnits, "job.units", "The file's lengths aren't in the job's units."},
    {EIENote::JobUpperCase, "job.upper-case", "Text goes out in capitals."},
    {EIENote::LayoutEmpty, "layout.empty", "The layout has no field."},
    {EIENote::LayoutField, "layout.field", "The layout has a field that this form can't hold."},
    {EIENote::LineBadCharacters, "line.bad-characters", "A line has bytes that aren't of the encoding and were mended."},
    {EIENote::LineBehindEnd, "line.behind-end", "There are lines behind the end of the data."},
    {EIENote::LineBehindLast, "line.behind-last", "A line belongs to no point any more."},
    {EIENote::LineBlank, "line.blank", "A blank line isn't read."},
    {EIENote::LineCodeString, "line.code-string", "A code string isn't taken."},
    {EIENote::LineCodes, "line.codes", "What a line says of its codes isn't taken as it stands."},
    {EIENote::LineCut, "line.cut", "The file ends within the lines of a point."},
    {EIENote::LineEmpty, "line.empty", "A line is empty where a record is needed."},
    {EIENote::LineFieldCount, "line.field-count", "A line has too few or too many fields."},
    {EIENote::LineFields, "line.fields", "Some fields of a line aren't read."},
    {EIENote::LineFileStart, "line.file-start", "A line at the start of the file would be taken for something else."},
    {EIENote::LineHeight, "line.height", "A height can't be read."},
    {EIENote::LineName, "line.name", "A name can't name a point."},
    {EIENote::LineNote, "line.note", "A note isn't taken as it stands."},
    {EIENote::LineNumber, "line.number", "A number can't be read."},
    {EIENote::LineNumberCut, "line.number-cut", "A number is cut by its columns."},
    {EIENote::LineReferences, "line.references", "The references of a line aren't taken as they stand."},
    {EIENote::LineSecondLevel, "line.second-level", "A point has a second level."},
    {EIENote::LineTag, "line.tag", "A line doesn't begin with a known tag."},
    {EIENote::LineTooLong, "line.too-long", "A line is longer than any record can be."},
    {EIENote::LineUnreadable, "line.unreadable", "A reader of the file doesn't take the line."},
    {EIENote::LineZeroByte, "line.zero-byte", "A line has a zero byte."},
    {EIENote::ObjectAttributes, "object.attributes", "Values of attributes don't pass as they are."},
    {EIENote::ObjectBlockName, "object.block-name", "The name can't name a block."},
    {EIENote::ObjectCodes, "object.codes", "Codes don't pass as they are."},
    {EIENote::ObjectCoordinates, "object.coordinates", "Coordinates don't pass as they are."},
    {EIENote::ObjectDrawing, "object.drawing", "How an object is drawn isn't written."},
    {EIENote::ObjectGeoidHeight, "object.geoid-height", "The geoid height isn't written."},
    {EIENote::ObjectGpsData, "object.gps-data", "What a receiver said of a position isn't written whole."},
    {EIENote::ObjectHeight, "object.height", "A height doesn't pass as it is."},
    {EIENote::ObjectJoined, "object.joined", "Objects in a row of one name come back as one."},
    {EIENote::ObjectKind, "object.kind", "The form doesn't hold objects of this kind."},
    {EIENote::ObjectLayer, "object.layer", "The layer isn't written."},
    {EIENote::ObjectLineAsPoints, "object.line-as-points", "A line comes back as points."},
    {EIENote::ObjectLineSplit, "object.line-split", "A line comes back in parts."},
    {EIENote::ObjectName, "object.name", "A name doesn't pass as it is."},
    {EIENote::ObjectNoAccuracy, "object.no-accuracy", "A position has no accuracy."},
    {EIENote::ObjectNoHeight, "object.no-height", "A station without a height gets one."},
    {EIENote::ObjectNoMeasurement, "object.no-measurement", "A point has no measurement."},
    {EIENote::ObjectNoStation, "object.no-station", "An object has no station."},
    {EIENote::ObjectNoTime, "object.no-time", "A position has no time."},
    {EIENote::ObjectNotes, "object.notes", "Notes of stations aren't written."},
    {EIENote::ObjectOffsets, "object.offsets", "Offsets of a sheet point aren't written whole."},
    {EIENote::ObjectPointKind, "object.point-kind", "A point comes back as one of another kind."},
    {EIENote::ObjectRing, "object.ring", "A polygon doesn't come back as one."},
    {EIENote::ObjectTimeStamps, "object.time-stamps", "Time stamps aren't written."},
    {EIENote::ObjectWord, "object.word", "A text is a word of the form."},
    {EIENote::RecordBadCharacters, "record.bad-characters", "A record has bytes that aren't of the encoding and were mended."},
    {EIENote::RecordCode, "record.code", "A code isn't taken as it stands."},
    {EIENote::RecordCodes, "record.codes", "Codes aren't taken as they stand."},
    {EIENote::RecordCoordinates, "record.coordinates", "Coordinates can't be read."},
    {EIENote::RecordDeleted, "record.deleted", "A record is marked as deleted."},
    {EIENote::RecordField, "record.field", "A field can't be read."},
    {EIENote::RecordFields, "record.fields", "A record has too few or too many fields."},
    {EIENote::RecordHeight, "record.height", "A height can't be read."},
    {EIENote::RecordIncomplete, "record.incomplete", "A record lacks something that it must have."},
    {EIENote::RecordName, "record.name", "A name can't name a point."},
    {EIENote::RecordNameCut, "record.name-cut", "A name is cut."},
    {EIENote::RecordNoLevel, "record.no-level", "A point has no level."},
    {EIENote::RecordNumber, "record.number", "A number can't be read."},
    {EIENote::RecordShort, "record.short", "The file ends within a record."},
    {EIENote::RecordTooLong, "record.too-long", "A record is longer than any can be."},
    {EIENote::SimaNoDataStart, "sima.no-data-start", "The second line doesn't start the data."},
    {EIENote::SimaNoJobLine, "sima.no-job-line", "The first line doesn't name the job."},
    {EIENote::SurfaceCoordinates, "surface.coordinates", "Coordinates of a surface don't pass as they are."},
    {EIENote::SurfaceStanding, "surface.standing", "Standing triangles don't come back."},
    {EIENote::SurfaceTriangles, "surface.triangles", "Triangles of a surface aren't written."},
};
// clang-format on

constexpr bool IsInOrder()
{
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        if (kRows[i].m_eCode != static_cast<EIENote>(i) ||
            (i > 0 && std::string_view(kRows[i - 1].m_pWord) >= kRows[i].m_pWord))
            return false;
    }
    return true;
}
static_assert(IsInOrder(), "rows stand in the order of the enumeration, and that is the order of the words");

} // namespace

std::span<const TIENoteRow> GetNoteRows()
{
    return kRows;
}

const char* GetNoteWord(EIENote eCode)
{
    return kRows[static_cast<std::size_t>(eCode)].m_pWord;
}

CString GetNotesAsMarkdown()
{
    CString page =
        "# Notes\n\nWhatever doesn't pass whole is told by a note. Its code is one of these words, which stay from "
        "version to "
        "version; the sentence\nbehind it says what it means wherever it comes. A note itself tells the file, the "
        "place, the record and the reason, and how many\nthings it counts for.\n\n| Code | What it means |\n"
        "| ---- | ------------- |\n";
    for (const TIENoteRow& row : kRows)
        page.append("| `").append(row.m_pWord).append("` | ").append(row.m_pSentence).append(" |\n");
    return page;
}
