// What comes of the entities, blocks and layers of drawings.
#include "drawing.h"

namespace {

using Drawing::Make;
using Drawing::ToBinary;
using Drawing::ToText;

class DxfImporterTest : public Drawing::CDrawingTest {};

const CString kLayers = "0 TABLE|2 LAYER|70 1|0 LAYER|2 WALLS|70 0|62 3|6 CONTINUOUS|0 ENDTAB";

TEST_F(DxfImporterTest, Entities)
{
    const struct {
        const char* m_pWhat;
        const char* m_pEntities;
        const char* m_pObjects;
        const char* m_pNotes;
    } rows[] = {
        {"X is east", "0 POINT|8 walls|10 1.5|20 2|30 3", "point  2 1.5 3 on WALLS\n", ""},
        {"a point has a colour and no more", "0 POINT|62 1|6 DASHED|370 50|40 2|10 1", "point  0 1 0 color 1\n", ""},
        {"a layer that isn't there", "0 POINT|8 ROADS|0 POINT|8 0|0 POINT|8 ROADS",
         "point  0 0 0\npoint  0 0 0\npoint  0 0 0\n", "19:drawing.no-layer"},
        {"a line", "0 LINE|10 1|20 2|30 3|11 4|21 5|31 6", "line  2 1 3 | 5 4 6\n", ""},
        {"how a line is drawn", "0 3DLINE|8 WALLS|62 5|6 dashed|40 0.55|11 1",
         "line  0 0 0 | 0 1 0 on WALLS color 5 DASHED width 5\n", ""},
        {"the last width counts", "0 LINE|43 7|370 50|0 LINE|370 50|41 1|0 LINE|370 0",
         "line  0 0 0 | 0 0 0 width 2\n"
         "line  0 0 0 | 0 0 0 width 10\nline  0 0 0 | 0 0 0\n",
         ""},
        {"colours that are none", "0 LINE|62 0|0 LINE|62 256|0 LINE|62 -3",
         "line  0 0 0 | 0 0 0\nline  0 0 0 | 0 0 0\nline  0 0 0 | 0 0 0\n", ""},
        {"a width beyond all", "0 LINE|40 1e300|0 LINE|40 -3",
         "line  0 0 0 | 0 0 0 width 1000000000\nline  0 0 0 | 0 0 0 width 0\n", ""},
        {"an arc", "0 ARC|10 1|20 2|30 3|40 12.5|50 30|51 120.25|41 3", "arc  2 1 3 r 12.5 30 120.25 width 30\n", ""},
        {"invisible, in paper space",
         "0 POINT|60 1|0 LINE|67 1|8 LINE|10 7|0 ARC|67 0|40 1|0 POLYLINE|67 1|0 VERTEX|10 1|0 SEQEND|0 3DFACE|60 1",
         "arc  0 0 0 r 1 0 0\n", "21:drawing.invisible 25:drawing.paper-space"},
        {"an open polyline",
         "0 POLYLINE|8 WALLS|10 9|20 9|70 8|0 VERTEX|8 X|10 1|20 2|30 3|0 VERTEX|10 4|20 5|60 1|0 VERTEX|10 7|20 8|30 "
         "9|0 SEQEND|8 WALLS|0 POINT",
         "line  2 1 3 | 8 7 9 on WALLS\npoint  0 0 0\n", "45:drawing.invisible"},
        {"a closed polyline", "0 POLYLINE|62 1|70 1|0 VERTEX|10 1|0 VERTEX|10 2|0 SEQEND",
         "polygon  0 1 0 | 0 2 0 color 1\n", ""},
        {"one that ends where it began", "0 POLYLINE|62 1|0 VERTEX|10 1|30 5|0 VERTEX|10 2|0 VERTEX|10 1|30 5|0 SEQEND",
         "polygon  0 1 5 | 0 2 0 | 0 1 5 color 1\n", ""},
        {"one that ends above its beginning", "0 POLYLINE|0 VERTEX|10 1|0 VERTEX|10 2|0 VERTEX|10 1|30 5|0 SEQEND",
         "line  0 1 0 | 0 2 0 | 0 1 5\n", ""},
        {"one of a single vertex", "0 POLYLINE|0 VERTEX|10 1|0 SEQEND", "polygon  0 1 0\n", ""},
        {"a polyline without its end", "0 POLYLINE|0 VERTEX|10 1|0 VERTEX|10 2|0 LINE|11 3|0 POLYLINE|0 POINT",
         "line  0 1 0 | 0 2 0\nline  0 0 0 | 0 3 0\nline \npoint  0 0 0\n", "33:drawing.no-vertex"},
        {"vertices with bulges, a mesh", "0 POLYLINE|70 16|0 VERTEX|42 0.5|0 VERTEX|42 0|0 SEQEND",
         "polygon  0 0 0 | 0 0 0\n", "25:drawing.bulge 19:drawing.mesh"},
        {"a lightweight polyline", "0 LWPOLYLINE|90 2|70 0|43 0.2|38 7|10 1|20 2|30 9|42 1|10 3|20 4",
         "line  2 1 0 | 4 3 0 width 2\n", "35:drawing.bulge 19:drawing.elevation"},
        {"its count lies", "0 LWPOLYLINE|90 2147483647|10 1|20 2|0 LWPOLYLINE|90 -5|10 1|20 2",
         "line  2 1 0\nline  2 1 0\n", ""},
        {"a closed one", "0 LWPOLYLINE|70 1|10 1|20 2|10 3|20 4", "polygon  2 1 0 | 4 3 0\n", ""},
        {"closed too late", "0 LWPOLYLINE|10 1|20 2|70 1|10 3|20 4", "line  2 1 0 | 4 3 0\n", ""},
        {"without a vertex", "0 LWPOLYLINE|10 1|10 3|0 LWPOLYLINE|70 1|67 1", "",
         "29:drawing.paper-space 19:drawing.no-vertex"},
        {"faces",
         "0 3DFACE|10 1|20 2|30 3|11 4|21 5|31 6|12 7|22 8|32 9|13 7|23 8|33 9|"
         "0 3DFACE|10 1|20 2|11 1|21 2|12 7|22 8|13 9|23 9|0 3DFACE|10 0|20 0|11 1|21 0|12 1|22 1|13 0|23 1",
         "face 2 1 3 | 5 4 6 | 8 7 9\nface 2 1 0 | 8 7 0 | 9 9 0\nface 0 0 0 | 0 1 0 | 1 1 0\n",
         "63:drawing.fourth-corner"},
        {"a face that stands", "0 3DFACE|10 0|11 10|12 10|32 5|33 5", "face 0 0 0 | 0 10 0 | 0 10 5\n",
         "19:drawing.fourth-corner"},
        {"a word in a value ends the section", "0 TEXT|1 EndSec|0 POINT|10 1", "",
         "21:drawing.word 19:drawing.entity 23:drawing.entity"},
        {"what the job has nothing for", "0 TEXT|1 x|0 CIRCLE|40 1|0 TEXT|1 y|0 SPLINE|10 3|0 POINT", "point  0 0 0\n",
         "19:drawing.entity 23:drawing.entity 31:drawing.entity"},
        {"a plane of its own",
         "0 LINE|230 -1|0 POLYLINE|70 8|230 -1|0 VERTEX|0 CIRCLE|230 -1|0 ARC|210 0|220 0|230 -1|0 ARC|230 1",
         "line  0 0 0 | 0 0 0\npolygon  0 0 0\narc  0 0 0 r 0 0 0\narc  0 0 0 r 0 0 0\n",
         "31:drawing.entity 35:drawing.extrusion"},
        {"what an entity has beyond the job", "0 POINT|39 0|0 POINT|39 2.5|420 255|62 5",
         "point  0 0 0\npoint  0 0 0 color 5\n", "23:drawing.thickness 23:drawing.true-color"},
        {"the same of what is left out", "0 POINT|39 2|420 1|67 1", "", "25:drawing.paper-space"},
        {"a mesh that lists its faces",
         "0 POLYLINE|70 64|0 VERTEX|10 5|70 192|0 VERTEX|10 6|70 192|0 VERTEX|70 128|71 1|0 SEQEND",
         "line  0 5 0 | 0 6 0 | 0 0 0\n", "35:drawing.face-record 19:drawing.mesh"},
        {"a face of three corners", "0 3DFACE|10 1|20 1|11 2|21 1|12 2|22 2|283 1|1003 X",
         "face 1 1 0 | 1 2 0 | 2 2 0\n", ""},
        {"a word in a value begins an entity", "0 TEXT|8 Line|10 1|20 2|1 ENDSEC", "line  2 1 0 | 0 0 0\n",
         "21:drawing.word 19:drawing.entity"},
        {"line types beyond the ordinary ones", "0 LINE|6 Hidden|0 LINE|6 bylayer|0 ARC|6 Fence|0 POINT|6 FENCE",
         "line  0 0 0 | 0 0 0 DASHED\nline  0 0 0 | 0 0 0\narc  0 0 0 r 0 0 0 Continuous\npoint  0 0 0\n",
         "19:drawing.line-type"},
        {"widths that vary",
         "0 POLYLINE|40 1|41 1|0 VERTEX|40 1|0 VERTEX|10 1|41 1|0 SEQEND|0 POLYLINE|0 VERTEX|0 VERTEX|10 1|40 2|0 "
         "SEQEND|0 LWPOLYLINE|10 1|20 1|40 1|41 2",
         "line  0 0 0 | 0 1 0 width 10\nline  0 0 0 | 0 1 0\nline  1 1 0 width 20\n", "37:drawing.widths"},
        {"how faces are drawn", "0 3DFACE|8 0|11 1|22 1|0 3DFACE|8 WALLS|11 1|22 1|0 3DFACE|62 1|11 1|22 1",
         "face 0 0 0 | 0 1 0 | 1 0 0\nface 0 0 0 | 0 1 0 | 1 0 0\nface 0 0 0 | 0 1 0 | 1 0 0\n",
         "27:drawing.face-drawing"},
        {"a word as a value of an entity doesn't", "0 POINT|8 LINE|6 ENDSEC|10 1", "point  0 1 0\n",
         "19:drawing.no-layer"},
        {"numbers that aren't", "0 POINT|10 abc|20 1.5m|30 |62 1.9|0 POINT|62 3 ",
         "point  1.5 0 0 color 1\npoint  0 0 0 color 3\n", "21:drawing.number 23:drawing.number-part"},
        {"numbers that aren't finite",
         "0 POINT|10 nan|0 LINE|11 1e999|0 LINE|40 inf|0 ARC|40 inf|0 ARC|51 nan|0 LWPOLYLINE|10 inf|20 1|"
         "0 POLYLINE|0 VERTEX|10 1|0 VERTEX|20 -nan|0 SEQEND|0 3DFACE|12 inf|0 POINT",
         "line  0 0 0 | 0 0 0 width 0\npoint  0 0 0\n",
         "19:drawing.coordinates 23:drawing.coordinates 31:drawing.coordinates 35:drawing.coordinates "
         "39:drawing.coordinates 45:drawing.coordinates 57:drawing.coordinates 21:drawing.not-finite"},
    };
    for (const auto& row : rows) {
        // the first entity stands in line 19
        CIEData job;
        job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("WALLS"));
        EXPECT_EQ(Read(job, ToText("999 a|999 b|999 c|999 d|999 e|999 f|999 g|" + Make(row.m_pEntities))),
                  row.m_pObjects)
            << row.m_pWhat;
        EXPECT_EQ(Notes(), row.m_pNotes) << row.m_pWhat;
    }
}

TEST_F(DxfImporterTest, UnitsAreTheJobs)
{
    const CString text = ToText(
        Make("0 POINT|10 1250|20 2500|30 1250|0 ARC|10 1250|40 2500|0 3DFACE|10 1250|20 2500|30 1250|11 0|21 1250|"
             "0 INSERT|2 B|10 1250|30 1250",
             "0 BLOCK|2 B|10 1250|20 0|30 0|0 LINE|10 2500|11 1250|31 1250|0 ENDBLK"));
    CIEData job;
    job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
    EXPECT_EQ(Read(job, text), "*line B 0 381 0 | 0 0 381\npoint  762 381 381\narc  0 381 0 r 762 0 0\n"
                               "line B 0 762 381 | 0 381 762\nface 762 381 381 | 381 0 0 | 0 0 0\n");
    CIEData degrees;
    degrees.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
    degrees.GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
    EXPECT_EQ(Read(degrees, text), "*line B 0 1250 0 | 0 0 381\npoint  2500 1250 381\narc  0 1250 0 r 762 0 0\n"
                                   "line B 0 2500 381 | 0 1250 762\nface 762 381 381 | 381 0 0 | 0 0 0\n");
    for (const auto& [nUnits, pNotes] :
         {std::pair(0, ""), {2, ""}, {21, "drawing.units"}, {6, "drawing.units"}, {99, ""}}) {
        Read(job, ToText(Make("0 POINT", {}, {}, "9 $INSUNITS|70 " + std::to_string(nUnits) + "|9 $X|70 4")));
        EXPECT_EQ(NoteCodes(), pNotes) << nUnits;
    }
    Read(degrees, ToText(Make("0 POINT", {}, {}, "9 $INSUNITS|70 2")));
    EXPECT_EQ(NoteCodes(), "drawing.units") << "X and Y are degrees";
    CIEData miles;
    miles.GetJobInfo()->SetDistUnits(EDIST_UNITS::USMiles);
    EXPECT_EQ(Read(miles, ToText(Make("0 POINT|10 1e308|0 ARC|40 1e308|0 LINE|21 1e307"))), "") << "beyond all numbers";
    EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingCoordinates), 3);
}

TEST_F(DxfImporterTest, Layers)
{
    CIEData job;
    const CString tables =
        "0 TABLE|2 LTYPE|0 LTYPE|2 LAYER|70 0|3 x|0 ENDTAB|0 TABLE|2 LAYER|70 9|"
        "0 LAYER|2 Roads|70 0|62 5|6 Dashed|370 50|1000 Kerb lines|"
        "0 LAYER|2 OFF|70 4|62 -5|0 LAYER|2 FROZEN|70 1|62 300|370 0|0 LAYER|2 PLAIN|0 LAYER|70 0|62 1|"
        "0 LAYER|2 ROADS|62 1|70 2|0 LAYER|2 LINE|70 2|0 LAYER|2 ENDSEC|70 0|0 ENDTAB|"
        "0 TABLE|2 VIEW|0 VIEW|2 LAYER|62 3|2 x|0 ENDTAB|"
        "0 TABLE|2 STYLE|0 TABLE|2 LAYER|0 LAYER|2 LATER|70 0|0 ENDTAB";
    EXPECT_EQ(Read(job, ToText(Make("0 LINE|8 roads|0 POINT|8 Line|0 POINT|8 ENDSEC", {}, tables))),
              "line  0 0 0 | 0 0 0 on ROADS\npoint  0 0 0 on LINE\npoint  0 0 0 on ENDSEC\n");
    const CString black = " color 7"; // that of a layer without a colour
    EXPECT_EQ(Drawing::DescribeLayers(job), "ROADS color 5 DASHED width 2 'KERB LINES'\nOFF off Continuous width 1\n"
                                            "FROZEN no-plot color 7 Continuous\nPLAIN no-plot" +
                                                black + " Continuous width 1\nLINE no-plot" + black +
                                                " Continuous width 1\nENDSEC" + black + " Continuous width 1\nLATER" +
                                                black + " Continuous width 1\n");
}

TEST_F(DxfImporterTest, WhatLayersLose)
{
    CIEData job;
    Import(job,
           ToText(Make("0 POINT", {},
                       "0 LAYER|2 A|70 5|62 1|0 LAYER|2 B|70 0|290 0|0 LAYER|2 C|70 1|290 0|0 LAYER|2 D|70 0|290 1|"
                       "0 LAYER|2 E|62 red|420 255|0 LAYER|2 F|62 1.5")));
    EXPECT_EQ(Notes(), "37:drawing.true-color 5:drawing.layer-state 41:drawing.number 49:drawing.number-part");
}

TEST_F(DxfImporterTest, BlocksAndReferences)
{
    const CString tree = "0 BLOCK|8 0|2 Tree|70 0|10 10|20 20|30 30|3 Tree|0 POINT|8 WALLS|10 11|20 22|30 33|"
                         "0 ARC|10 10|20 20|30 30|40 2|50 0|51 90|0 ENDBLK";
    const CString patterns = "*point TREE 2 1 3 on WALLS\n*arc TREE 0 0 0 r 2 0 90\n";
    const struct {
        const char* m_pWhat;
        CString m_strBlocks;
        const char* m_pEntities;
        CString m_strObjects;
        const char* m_pCodes;
    } rows[] = {
        {"a copy is on the ground", tree, "0 INSERT|2 TREE|10 100|20 200|30 300",
         patterns + "point TREE 202 101 303 on WALLS\narc TREE 200 100 300 r 2 0 90\n", ""},
        {"scaled, on the reference's layer", tree, "0 INSERT|8 PLAN|2 tree|10 100|41 2|42 3|43 0.5",
         patterns + "point TREE 6 102 1.5 on PLAN\narc TREE 0 100 0 r 4 0 90 on PLAN\n", "drawing.arc-scale"},
        {"twice", tree, "0 INSERT|2 TREE|0 INSERT|2 TREE|10 1|60 0",
         patterns +
             "point TREE 2 1 3 on WALLS\narc TREE 0 0 0 r 2 0 90\npoint TREE 2 2 3 on WALLS\narc TREE 0 1 0 r 2 0 90\n",
         ""},
        {"dropped", tree, "0 INSERT|2 TREE|67 1|0 ATTRIB|1 x|2 CODENAME|0 SEQEND", patterns, "drawing.paper-space"},
        {"turned, in rows, and ones of nothing", tree, "0 INSERT|2 X|50 1|70 2|0 INSERT|2 TREE|50 90|70 2",
         patterns + "point TREE 2 1 3 on WALLS\narc TREE 0 0 0 r 2 0 90\n",
         "drawing.insert-angle drawing.insert-array drawing.insert-empty"},
        {"of nothing", {}, "0 INSERT|2 TREE|0 ATTRIB|1 OAK|2 CODENAME|0 SEQEND|0 INSERT", "", "drawing.insert-empty"},
        {"of a number that isn't finite", tree,
         "0 INSERT|2 TREE|41 nan|0 INSERT|2 TREE|10 inf|0 INSERT|2 TREE|41 1e308|42 1e308", patterns,
         "drawing.coordinates drawing.not-finite"},
        {"in a block",
         tree + "|0 BLOCK|2 PARK|10 1|20 1|30 1|0 INSERT|2 TREE|10 5|0 INSERT|2 LATER|0 ENDBLK|0 BLOCK|2 LATER|10 0|20 "
                "0|30 0|0 POINT|0 ENDBLK",
         "0 INSERT|2 PARK|10 100",
         patterns + "*point PARK 2 6 3 on WALLS\n*arc PARK 0 5 0 r 2 0 90\n*point LATER 0 0 0\npoint PARK 2 106 3 on "
                    "WALLS\narc PARK 0 105 0 r 2 0 90\n",
         "drawing.insert-empty drawing.nested-base"},
        {"a block without a height, one without a base, one of nothing",
         "0 BLOCK|2 A|10 1|20 1|0 POINT|10 3|20 4|0 ENDBLK|0 BLOCK|2 B|0 LINE|11 1|0 ENDBLK|0 BLOCK|2 C|10 0|20 0|0 "
         "ENDBLK",
         "0 INSERT|2 C|0 INSERT|2 A", "*point A 3 2 0\n*line B 0 0 0 | 0 1 0\npoint A 3 2 0\n", "drawing.insert-empty"},
        {"a closed ring",
         "0 BLOCK|2 R|10 0|20 0|30 0|0 POLYLINE|0 VERTEX|0 VERTEX|10 1|0 VERTEX|0 SEQEND|0 POLYLINE|0 VERTEX|10 nan|0 "
         "SEQEND|0 POINT|0 ENDBLK",
         "0 INSERT|2 R",
         "*polygon R 0 0 0 | 0 1 0 | 0 0 0\n*point R 0 0 0\npolygon R 0 0 0 | 0 1 0 | 0 0 0\npoint R 0 0 0\n",
         "drawing.coordinates drawing.not-finite"},
        {"a block's end on a layer named BLOCK", "0 BLOCK|2 A|10 0|20 0|30 0|0 POINT|10 1|0 ENDBLK|8 BLOCK",
         "0 INSERT|2 A|10 5|20 6", "*point A 0 1 0\npoint A 6 6 0\n", ""},
        {"a block named like an entity begins one", "0 BLOCK|2 POINT|10 3|20 4|30 5|0 LINE|11 1|0 ENDBLK",
         "0 INSERT|2 POINT",
         "*point POINT 4 3 5\n*line POINT 0 0 0 | 0 1 0\npoint POINT 4 3 5\nline POINT 0 0 0 | 0 1 0\n",
         "drawing.word"},
        {"what parts leave to the reference",
         "0 BLOCK|2 A|10 0|20 0|30 0|0 LINE|62 0|11 1|0 ENDBLK|0 BLOCK|2 B|10 0|20 0|30 0|0 INSERT|2 A|62 0|0 ENDBLK|"
         "0 BLOCK|2 C|10 0|20 0|30 0|0 LINE|11 2|0 ENDBLK",
         "0 INSERT|2 B|62 3|0 INSERT|2 A|6 DASHED|0 INSERT|2 C|62 3",
         "*line A 0 0 0 | 0 1 0\n*line B 0 0 0 | 0 1 0\n*line C 0 0 0 | 0 2 0\nline B 0 0 0 | 0 1 0\n"
         "line A 0 0 0 | 0 1 0\nline C 0 0 0 | 0 2 0\n",
         "drawing.by-block"},
        {"faces of a block", "0 BLOCK|2 F|10 5|20 5|30 5|0 3DFACE|11 1|22 1|0 ENDBLK", "0 INSERT|2 F",
         "face 0 0 0 | 0 1 0 | 1 0 0\n", "drawing.block-face drawing.insert-empty"},
    };
    for (const auto& row : rows) {
        CIEData job;
        for (const char* const pLayer : {"WALLS", "PLAN"})
            job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>(pLayer));
        EXPECT_EQ(Read(job, ToText(Make(row.m_pEntities, row.m_strBlocks))), row.m_strObjects) << row.m_pWhat;
        EXPECT_EQ(NoteCodes(), row.m_pCodes) << row.m_pWhat;
    }
}

TEST_F(DxfImporterTest, AttributesBecomeCodes)
{
    const CString tree = "0 BLOCK|2 TREE|10 0|20 0|30 0|0 POINT|0 ATTDEF|2 CODENAME|0 ENDBLK";
    const auto attributes = [](std::initializer_list<std::pair<const char*, const char*>> values) {
        CString text = "0 INSERT|2 TREE";
        for (const auto& [pTag, pValue] : values)
            text += CString("|0 ATTRIB|8 X|40 2.5|1 ") + pValue + "|2 " + pTag;
        return text + "|0 SEQEND";
    };
    const struct {
        const char* m_pWhat;
        CString m_strEntities;
        const char* m_pCodes;
        const char* m_pNotes = "";
    } rows[] = {
        {"the name of the code", attributes({{"CODENAME", "Road"}}), " ROAD()\n"},
        {"two codes", attributes({{"CODENAME", "ROAD"}, {"CODENAME1", "KERB"}}), " ROAD() KERB()\n"},
        {"values and types",
         attributes(
             {{"width:road:N3", "3.5"}, {"LANES:ROAD:N000", "2"}, {"KIND:ROAD:C", "gravel"}, {"SIDE:ROAD:X", "L"}}),
         " ROAD(WIDTH:REAL=3.5 LANES:INT=2 KIND:TEXT=GRAVEL SIDE:TEXT=L)\n"},
        {"no code named: that of the file", attributes({{"HEIGHT", "12"}, {"KIND:", "OAK"}}),
         " Site(HEIGHT:TEXT=12 KIND:TEXT=OAK)\n"},
        {"only a code behind the last colon is a type", attributes({{"A:B:C:N1", "1"}, {"D:B", "2"}}),
         " B:C(A:REAL=1) Site(D:TEXT=2)\n"},
        {"code strings", attributes({{"CODENAME", "ROAD"}, {"CODESTRING:ROAD", "left"}, {"CODESTRING2:ROAD", "edge"}}),
         " ROAD(CODESTRING2:TEXT)&LEFT&EDGE\n"},
        {"in another order, and one that lacks",
         attributes({{"A:T:C", "1"}, {"B:T:C", "2"}}) + "|" + attributes({{"B:T:C", "4"}, {"A:T:C", "3"}}) + "|" +
             attributes({{"C:T:C", "9"}}) + "|" + attributes({{"B:T:N1", "5"}}),
         " T(A:TEXT=1 B:TEXT=2 C:TEXT)\n T(A:TEXT=3 B:TEXT=4 C:TEXT)\n T(A:TEXT= B:TEXT= C:TEXT=9)\n T(A:TEXT= "
         "B:TEXT=5 C:TEXT)\n"},
        {"without a name", attributes({{"CODENAME", ""}, {":ROAD", "1"}, {"", "2"}, {"A::N1", "3"}}), "\n",
         "drawing.code-name"},
        {"twice",
         attributes(
             {{"A:T:C", "1"}, {"B:T:C", "2"}, {"a:t:n1", "3"}, {"B:T:C", "2"}, {"CODENAME", "T"}, {"CODENAME", "T"}}),
         " T(A:TEXT=3 B:TEXT=2)\n", "drawing.same-attribute"},
        {"invisible", "0 INSERT|2 TREE|0 ATTRIB|60 1|1 X|2 CODENAME|0 ATTRIB|2 CODENAME|1 Y|0 SEQEND", " Y()\n",
         "drawing.invisible"},
        {"of a reference that is left out", "0 INSERT|2 TREE|67 1|0 ATTRIB|2 CODENAME|1 X|0 SEQEND|0 INSERT|2 TREE",
         "\n", "drawing.paper-space"},
        {"a text of several lines beside its value",
         "0 INSERT|2 TREE|0 ATTRIB|1 OAK|2 KIND|101 Embedded Object|1 {OAK}|2 X|0 SEQEND", " Site(KIND:TEXT=OAK)\n"},
        {"an attribute on its own", "0 ATTRIB|2 CODENAME|1 ROAD|0 INSERT|2 TREE", "\n", "drawing.entity"},
        {"a pattern of one", "0 ATTDEF|2 CODENAME|0 INSERT|2 TREE", "\n", "drawing.entity"},
    };
    for (const auto& row : rows) {
        CIEData job;
        EXPECT_EQ(Import(job, ToText(Make(row.m_strEntities, tree))), IE_OK);
        CString codes;
        for (int i = 1; const CIEObject* const pObject = job.GetDatasetAt(0)->GetObjectAt(i); ++i)
            codes += DescribeCodes(*pObject) + "\n";
        EXPECT_EQ(codes, row.m_pCodes) << row.m_pWhat;
        EXPECT_EQ(NoteCodes(), row.m_pNotes) << row.m_pWhat;
    }
    // a reference within a block hands its codes on
    CIEData job;
    EXPECT_EQ(
        Read(job, ToText(Make("0 INSERT|2 PARK|0 ATTRIB|2 A:ROAD:C|1 2|0 SEQEND",
                              tree + "|0 BLOCK|2 PARK|10 0|20 0|30 0|" +
                                  attributes({{"A:ROAD:C", "1"}, {"B:ROAD:C", "7"}}) + "|0 ENDBLK"))),
        "*point TREE 0 0 0\n*point PARK 0 0 0 ROAD(A:TEXT=1 B:TEXT=7)\npoint PARK 0 0 0 ROAD(A:TEXT=2 B:TEXT=7)\n");
}

TEST_F(DxfImporterTest, CodesWithManyAttributesAreFoundAgain)
{
    CString entities;
    for (int i = 0; i < 60; ++i)
        entities +=
            "0 INSERT|2 TREE|0 ATTRIB|2 A" + std::to_string(i % 40) + ":T:C|1 " + std::to_string(i) + "|0 SEQEND|";
    CIEData job;
    Import(job, ToText(Make(entities + "0 POINT", "0 BLOCK|2 TREE|10 0|20 0|30 0|0 POINT|0 ENDBLK")));
    EXPECT_EQ(job.GetIEDataDictionary()->FindCodeDiscription("T")->GetSize(), 40);
    EXPECT_EQ(job.GetDatasetAt(0)->GetObjectAt(60)->GetCode(0)->GetAttrAt(19), "59");
}

TEST_F(DxfImporterTest, NamesAreTextInTheDrawingsEncoding)
{
    const struct {
        const char* m_pHeader;
        const char* m_pName;
        const char* m_pText;
        const char* m_pNotes;
    } rows[] = {
        {"", "stra\xDF\x65", "STRA\u00DFE", ""},
        {"", "\u00E4", "\u00E4", ""},
        {"9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ansi_1251", "\xC4\xE0", "\u0414\u0430", ""},
        {"9 $DWGCODEPAGE|3 ANSI_1252|9 $ACADVER|1 AC1021", "\u00E4\u0414", "\u00E4\u0414", ""},
        {"9 $DWGCODEPAGE|3 ANSI_1252", "\u00E4", "\u00C3\u00A4", ""},
        // second bytes that look like small letters
        {"9 $DWGCODEPAGE|3 ANSI_932",
         "\x83\x82\x83\x66\x83\x8b"
         "z",
         "\u30E2\u30C7\u30EBZ", ""},
        {"9 $DWGCODEPAGE|3 ANSI_936",
         "\xd5\x61\xd5\x62"
         "z",
         "\u8AA5\u8AA6Z", ""},
        {"9 $DWGCODEPAGE|3 ANSI_932", "\x8F\x5A\x93\x5F", "\u4F4F\u70B9", ""},
        {"9 $DWGCODEPAGE|3 DOS850", "\x84", "\u00E4", ""},
        {"9 $DWGCODEPAGE|3 MARTIAN", "\xE4", "\u00E4", "7:drawing.code-page"},
        {"", "A\\U+00c4\\U+D83D\\u+DE00\\U+D83D", "A\u00C4\U0001F600\uFFFD", "7:drawing.bad-characters"},
        {"", "\\U+0009\\U+12\\U+XYZW\\P", "\\U+0009\\U+12\\U+XYZW\\P", ""},
        {"", "\\M+1935f\\M+9936F", "\u70B9\\M+9936F", ""},
        {"9 $DWGCODEPAGE|3 ANSI_1252", "\x81", "\uFFFD", "17:drawing.bad-characters"},
    };
    for (const auto& row : rows) {
        CIEData job;
        Import(job, ToText(Make({}, {}, CString("0 LAYER|2 ") + row.m_pName, row.m_pHeader)));
        ASSERT_NE(job.GetIEDrawDictionary()->GetLayerAt(0), nullptr) << row.m_pName;
        EXPECT_EQ(job.GetIEDrawDictionary()->GetLayerAt(0)->GetName(), row.m_pText) << row.m_pHeader;
        EXPECT_EQ(Notes(), row.m_pNotes) << row.m_pName;
    }
}

TEST_F(DxfImporterTest, FilesOfOtherShapes)
{
    const struct {
        const char* m_pWhat;
        CString m_strBytes;
        const char* m_pObjects;
        const char* m_pNotes;
    } rows[] = {
        {"nothing", "", "result -9\n", "1:drawing.no-section"},
        {"no drawing", "1,2,3\n4,5,6\n", "result -9\n", "3:drawing.no-section"},
        {"only its last word", ToText("0 EOF"), "result -9\n", "1:drawing.no-section"},
        {"a section of nothing behind the entities", ToText("0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC|0 SECTION"),
         "result -9\npoint  0 0 0\n", "11:drawing.cut"},
        {"words in a section that is left out",
         ToText("0 SECTION|2 OBJECTS|1 SECTION|2 OBJECTS|1 EOF|0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC"), "",
         "5:drawing.word 3:drawing.section"},
        {"tables that end in one of line types",
         ToText("0 SECTION|2 TABLES|0 TABLE|2 LTYPE|0 SECTION|2 BLOCKS|0 ENDSEC|0 SECTION|2 ENTITIES|0 POINT|0 "
                "ENDSEC|0 EOF"),
         "point  0 0 0\n", "11:drawing.section"},
        {"a section of nothing", ToText("0 SECTION"), "result -9\n", "3:drawing.no-section"},
        {"a comment in a section's head", ToText("0 SECTION|999 x|2 ENTITIES|0 POINT|0 ENDSEC|0 EOF"), "",
         "3:drawing.section"},
        {"a header and a block without their ends",
         ToText("0 SECTION|2 HEADER|9 X|0 SECTION|2 TABLES|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|2 A|10 0|0 POINT|0 "
                "ENDSEC|0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC|0 EOF"),
         "*point A 0 0 0\n", "31:drawing.entity 9:drawing.section 29:drawing.section"},
        {"another section", ToText("0 SECTION|2 THUMBNAIL|90 3|0 ENDSEC|0 EOF"), "", "3:drawing.section"},
        {"entities alone, the file cut", ToText("0 SECTION|2 ENTITIES|0 POINT|10 1|0 POINT|10 2"), "point  0 1 0\n",
         "13:drawing.cut"},
        {"cut ahead of the entities", ToText("0 SECTION|2 BLOCKS|0 BLOCK|2 A|0 POINT|0 ENDBLK|0 ENDSEC"),
         "*point A 0 0 0\n", "15:drawing.cut"},
        {"what stands between the sections and the blocks",
         ToText("0 SECTION|2 BLOCKS|0 LINE|0 BLOCK|2 A|0 ENDBLK|8 0|0 POINT|10 1|0 POINT|0 ENDSEC|2 ENTITIES|0 ARC|0 "
                "ENDSEC|0 "
                "SECTION|2 OBJECTS|0 DICTIONARY|0 ENDSEC|0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC|0 EOF"),
         "point  0 0 0\n", "5:drawing.entity 15:drawing.entity 25:drawing.entity 31:drawing.section"},
        {"no last word", ToText("999 made by hand|0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC"), "point  0 0 0\n", ""},
        {"what stands behind the end",
         ToText("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF|0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC"), "", ""},
        {"blocks behind the entities",
         ToText("0 SECTION|2 ENTITIES|0 INSERT|2 A|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|2 A|0 POINT|10 1|0 ENDBLK|0 "
                "ENDSEC"),
         "point  0 1 0\n", "5:drawing.insert-empty"},
        {"binary",
         ToBinary(Make("0 POINT|10 1|20 2|30 3|62 1|67 0|0 LINE|8 X|370 |11 4|60 0|0 TEXT|1 x",
                       "0 BLOCK|2 A|70 0|10 1|20 1|30 1|0 ARC|40 2|0 ENDBLK")),
         "*arc A 0 0 0 r 2 0 0\npoint  2 1 3 color 1\nline  0 0 0 | 0 4 0\n", "0:drawing.entity 0:drawing.no-layer"},
        {"binary, with names in double bytes",
         ToBinary(Make("0 POINT|8 \x83\x66z", {}, "0 LAYER|2 \x83\x66Z", "9 $DWGCODEPAGE|3 ANSI_932")),
         "point  0 0 0 on \u30C7Z\n", ""},
        {"binary, broken", ToBinary("0 SECTION|2 ENTITIES|0 POINT|10 1|0 LINE|-1 |0 POINT|0 EOF"), "point  0 1 0\n",
         "0:drawing.broken"},
        {"binary, broken between its sections", ToBinary("0 SECTION|2 ENTITIES|0 POINT|0 ENDSEC|-1 |0 EOF"),
         "result -9\npoint  0 0 0\n", "0:drawing.broken"},
        {"binary of an unknown kind", "AutoCAD Binary DXF\r\n\x17" + CString(1, '\0') + "\0\0SECTION", "result -9\n",
         "2:drawing.other-binary"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Read(row.m_strBytes), row.m_pObjects) << row.m_pWhat;
        EXPECT_EQ(Notes(), row.m_pNotes) << row.m_pWhat;
    }
    CIEData job;
    EXPECT_EQ(ImportInTheSameThread(&job, m_Folder / "none.dxf", Drawing::kImportCode), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(job.GetNumberOfDatasets(), 0);
    Read(job, ToText(Make("0 POINT")));
    EXPECT_EQ(job.GetDatasetAt(0)->GetName(), "Import dataset");
}

} // namespace
