// Job documents that aren't taken: where the message points, and that hostile text does no harm.
#include "alidade/jobfile/job_file.h"

#include "jobfile/job_samples.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace {

using nlohmann::json;

/// A document with this text behind the mark.
CString Marked(const CString& members)
{
    return R"({"alidade":"job",)" + members + "}";
}

CString Objects(const CString& objects)
{
    return Marked(R"("codes":[{"name":"TREE","attributes":[{"name":"species"}]}],"datasets":[{"objects":[)" + objects +
                  "]}]");
}

CString Surface(const CString& members)
{
    return Marked(R"("datasets":[{"surfaces":[{)" + members + "}]}]");
}

CString Alignment(const CString& members)
{
    return Marked(R"("datasets":[{"objects":[{"polyline":"l"},{"point":"1"}],"alignments":[{)" + members + "}]}]");
}

CString Repeat(const CString& text, int n)
{
    CString all;
    for (int i = 0; i < n; ++i)
        all += text;
    return all;
}

/// Reads into a job that has something to lose.
TIEJobFileError Refusal(const CString& text)
{
    CIEData job;
    AddPoint(*job.GetCurDataset(true), "kept");
    const CString before = CIEJobFile::ToText(job);
    TIEJobFileError error;
    EXPECT_EQ(CIEJobFile::FromText(job, text, &error), IE_BAD_CONTENT) << text.substr(0, 500);
    EXPECT_EQ(CIEJobFile::ToText(job), before);
    EXPECT_FALSE(error.m_strReason.empty());
    return error;
}

/// Pointers to every value of a document, the document itself left out.
void CollectPlaces(const json& value, const json::json_pointer& place, std::vector<json::json_pointer>& places)
{
    if (!place.empty())
        places.push_back(place);
    if (value.is_object()) {
        for (const auto& [key, member] : value.items())
            CollectPlaces(member, place / key, places);
    } else if (value.is_array()) {
        for (std::size_t i = 0; i < value.size(); ++i)
            CollectPlaces(value[i], place / i, places);
    }
}

struct TCase {
    CString m_strText;
    CString m_strPlace;
};

} // namespace

TEST(JobRefusals, EveryValueOfTheWrongKindIsFound)
{
    CIEData rich;
    JobSamples::FillRichJob(rich);
    const json document = json::parse(CIEJobFile::ToText(rich));
    std::vector<json::json_pointer> places;
    CollectPlaces(document, json::json_pointer(), places);
    ASSERT_GT(places.size(), 300U);
    for (const auto& place : places) {
        // an object is the wrong kind for most; where one is wanted, its key is wrong
        json broken = document;
        broken[place] = {{"no~such/key", 1}};
        const CString strFound = Refusal(broken.dump()).m_strPlace;
        EXPECT_TRUE(strFound == place.to_string() || strFound == place.to_string() + "/no~0such~1key")
            << place.to_string() << " was taken for " << strFound;
        // null is a height that isn't known and nothing else
        if (place.back() == "height" || (place.back() == "2" && document[place.parent_pointer()].size() == 3))
            continue;
        broken[place] = nullptr;
        EXPECT_EQ(Refusal(broken.dump()).m_strPlace, place.to_string());
    }
}

TEST(JobRefusals, EveryUnknownKeyIsFound)
{
    CIEData rich;
    JobSamples::FillRichJob(rich);
    const json document = json::parse(CIEJobFile::ToText(rich));
    std::vector<json::json_pointer> places{json::json_pointer()};
    CollectPlaces(document, json::json_pointer(), places);
    for (const auto& place : places) {
        if (!document[place].is_object())
            continue;
        for (const char* key : {"hight", ""}) {
            json broken = document;
            broken[place][key] = "1";
            EXPECT_EQ(Refusal(broken.dump()).m_strPlace, place.to_string() + "/" + key);
        }
    }
}

TEST(JobRefusals, PlacesAreExact)
{
    const TCase cases[] = {
        {"[]", ""},
        {"7", ""},
        {"{}", ""},
        {R"({"datasets":[]})", ""},
        {R"({"alidade":"road"})", "/alidade"},
        {R"({"alidade":1})", "/alidade"},
        {Marked(R"("version":2)"), "/version"},
        {Marked(R"("version":1.5)"), "/version"},
        {Marked(R"("dataset":[])"), "/dataset"},
        {Marked(R"("datasets":{})"), "/datasets"},
        {Marked(R"("datasets":[{},[]])"), "/datasets/1"},
        {Marked(R"("datasets":[{},1])"), "/datasets/1"},
        {Marked(R"("datasets":[{"name":1}])"), "/datasets/0/name"},
        {Marked(R"("datasets":[{"objects":"x"}])"), "/datasets/0/objects"},
        {Marked(R"("currentDataset":0)"), "/currentDataset"},
        {Marked(R"("currentDataset":1,"datasets":[{}])"), "/currentDataset"},
        {Marked(R"("currentDataset":-1,"datasets":[{}])"), "/currentDataset"},
        {Marked(R"("info":{"distanceUnits":"feet"})"), "/info/distanceUnits"},
        {Marked(R"("info":{"prismConstant":3000000000})"), "/info/prismConstant"},
        {Marked(R"("info":{"prismConstant":1.0})"), "/info/prismConstant"},
        {Marked(R"("settings":{"historyOptions":256})"), "/settings/historyOptions"},
        {Marked(R"("settings":{"eastDecimals":99})"), "/settings/eastDecimals"},
        {Marked(R"("settings":{"mostBlockCopies":-1})"), "/settings/mostBlockCopies"},
        {Marked(R"("settings":{"writeEncoding":"no such"})"), "/settings/writeEncoding"},
        {Marked(R"("settings":{"codePage":"no such"})"), "/settings/codePage"},
        {Marked(R"("settings":{"asciiFormat":{"delimiter":"\n"}})"), "/settings/asciiFormat/delimiter"},
        {Marked(R"("settings":{"asciiFormat":{"delimiter":"."}})"), "/settings/asciiFormat/delimiter"},
        {Marked(R"("settings":{"dataTypes":["points",32]})"), "/settings/dataTypes/1"},
        {Marked(R"("settings":{"dataTypes":[-1]})"), "/settings/dataTypes/0"},
        {Marked(R"("settings":{"asciiFormat":{"fields":"name,nort"}})"), "/settings/asciiFormat/fields"},
        {Marked(R"("settings":{"asciiFormat":{"delimiter":""}})"), "/settings/asciiFormat/delimiter"},
        {Marked(R"("settings":{"asciiFormat":{"delimiter":",,"}})"), "/settings/asciiFormat/delimiter"},
        {Marked(R"("codes":[{"name":"A"},{"description":"x"}])"), "/codes/1"},
        {Marked(R"("codes":[{"name":"A"},{"name":"A"}])"), "/codes/1/name"},
        {Marked(R"("layers":[{"name":"A"},{"name":"A"}])"), "/layers/1/name"},
        {Marked(R"("roadTemplates":[{"name":"A"},{"name":"A"}])"), "/roadTemplates/1/name"},
        {Objects(R"({"point":"1"},{"north":1})"), "/datasets/0/objects/1"},
        {Objects(R"({"point":"1","polyline":"2"})"), "/datasets/0/objects/0/polyline"},
        {Objects(R"({"point":"1"},{"point":"2","north":"5"})"), "/datasets/0/objects/1/north"},
        {Objects(R"({"point":"1","radius":2})"), "/datasets/0/objects/0/radius"},
        {Objects(R"({"polyline":"1","stations":[[1,2],[1]]})"), "/datasets/0/objects/0/stations/1"},
        {Objects(R"({"polyline":"1","stations":[[1,2,3,4]]})"), "/datasets/0/objects/0/stations/0"},
        {Objects(R"({"polyline":"1","stations":[[1,2,true]]})"), "/datasets/0/objects/0/stations/0/2"},
        {Objects(R"({"point":"1","codes":[{"name":"TREE","attributes":{"girth":"1"}}]})"),
         "/datasets/0/objects/0/codes/0/attributes/girth"},
        {Objects(R"({"point":"1","codes":[{"strings":[]}]})"), "/datasets/0/objects/0/codes/0"},
        {Objects(R"({"point":"1","codes":[{"name":"A","control":["a","b","c"]}]})"),
         "/datasets/0/objects/0/codes/0/control"},
        {Objects(R"({"point":"1","time":"2026-11-22 09:31:07"})"), "/datasets/0/objects/0/time"},
        {Objects(R"({"gpsPosition":"1","satellites":{"solution":"fixd"}})"),
         "/datasets/0/objects/0/satellites/solution"},
        {Objects(R"({"sheetPoint":"1","north":1})"), "/datasets/0/objects/0/north"},
        {Objects(R"({"sheetPoint":"1","measurements":[[1,2]]})"), "/datasets/0/objects/0/measurements"},
        {Objects(R"({"sheetPoint":"1","measurements":[{"radius":1}],"design":[1,2]})"),
         "/datasets/0/objects/0/measurements/0/radius"},
        {Objects(R"({"sheetPoint":"1","design":{"deltaNorth":1}})"), "/datasets/0/objects/0/design/deltaNorth"},
        {Marked(R"("datasets":[{"jobHistory":{"tables":[{"tags":[{"value":1}]}]}}])"),
         "/datasets/0/jobHistory/tables/0/tags/0/value"},
        {Surface(R"("triangles":[[0,1]])"), "/datasets/0/surfaces/0/triangles/0"},
        {Surface(R"("triangles":[[0,0,0],[0,0,1]],"positions":[[1,2]])"), "/datasets/0/surfaces/0/triangles/1/2"},
        {Surface(R"("positions":[[1,2]],"triangles":[[0,-2,0]])"), "/datasets/0/surfaces/0/triangles/0/1"},
        {Surface(R"("positions":[[1,2],[1,"2"]])"), "/datasets/0/surfaces/0/positions/1/1"},
        {Alignment(R"("startPoint":0)"), "/datasets/0/alignments/0/startPoint"},
        {Alignment(R"("startPoint":2)"), "/datasets/0/alignments/0/startPoint"},
        {Alignment(R"("startPoint":-2)"), "/datasets/0/alignments/0/startPoint"},
        {Alignment(R"("objects":[{"length":1}])"), "/datasets/0/alignments/0/objects/0"},
        {Alignment(R"("objects":[{"type":4}])"), "/datasets/0/alignments/0/objects/0"},
        {Alignment(R"("objects":[{"type":"bend"}])"), "/datasets/0/alignments/0/objects/0/type"},
        {Alignment(R"("objects":[{"type":"line","start":[1]}])"), "/datasets/0/alignments/0/objects/0/start"},
        {Alignment(R"("crossSections":[{"templates":["x"]}])"), "/datasets/0/alignments/0/crossSections/0/templates/0"},
    };
    for (const TCase& row : cases)
        EXPECT_EQ(Refusal(row.m_strText).m_strPlace, row.m_strPlace) << row.m_strText;
}

TEST(JobRefusals, OnlyDatesAndTimesInFull)
{
    const auto document = [](const CString& text) { return Objects(R"({"gpsPosition":"1","time":")" + text + "\"}"); };
    for (const char* text : {"2026-11-22 09:31:07", "2026-11-22 09:31:07.000", "2024-02-29 23:59:60.999"}) {
        CIEData job;
        EXPECT_EQ(CIEJobFile::FromText(job, document(text)), IE_OK) << text;
        EXPECT_TRUE(static_cast<CIEGPSPosition*>(job.GetDatasetAt(0)->GetObjectAt(0))->HasTime());
    }
    for (const char* text :
         {"", "2026-11-22", "2026-11-22 09:31", "2026-11-22T09:31:07", "2026-11-22 09:31:07.1", "2026-11-22 09:31:07 ",
          "26-11-22 09:31:07", "2026-13-22 09:31:07", "2025-02-29 09:31:07", "2026-11-22 24:00:00",
          "0000-00-00 00:00:00", "2026-11-22 -9:31:07", "2026-11-22 09:31:07.0000", "2026-11-22 09:3a:07"})
        EXPECT_EQ(Refusal(document(text)).m_strPlace, "/datasets/0/objects/0/time") << text;
}

TEST(JobRefusals, DuplicateKeysAreFound)
{
    CString many;
    for (int i = 0; i < 100; ++i)
        many += "\"" + std::to_string(i) + "\":\"\",";
    const TCase cases[] = {
        {Marked(R"("version":1,"version":1)"), "/version"},
        {Marked(R"("alidade":"job")"), "/alidade"},
        {Marked(R"("datasets":[],"datasets":[])"), "/datasets"},
        {Marked(R"("datasets":[{"name":"a","objects":[],"name":"b"}])"), "/datasets/0/name"},
        {Marked(R"("info":{"datum":"a","geoid":"","datum":"b"})"), "/info/datum"},
        {Surface(R"("positions":[],"positions":[])"), "/datasets/0/surfaces/0/positions"},
        {Objects(R"({"point":"1","north":1,"east":1,"north":1})"), "/datasets/0/objects/0/north"},
        {Objects(R"({"point":"1","codes":[{"name":"B","attributes":{)" + many + R"("57":""}}]})"),
         "/datasets/0/objects/0/codes/0/attributes/57"},
    };
    for (const TCase& row : cases)
        EXPECT_EQ(Refusal(row.m_strText).m_strPlace, row.m_strPlace) << row.m_strText;
}

TEST(JobRefusals, TextThatIsntJsonIsPlacedByLine)
{
    const TCase cases[] = {
        {"", "line 1, column 1"},
        {"{\n\"alidade\": job}", "line 2, column 12"},
        {"{\"alidade\":\"\xC3\xA4\"?}", "line 1, column 15"},
        {Marked("\n\"datasets\":[]") + "\n\nx", "line 4, column 1"},
        {Marked("\n\"info\":{\"jobName\":\"a\x01\"}"), "line 2, column 21"},
        {Objects(R"({"point":"1","north":1e999})"), "line 1, column 127"},
        {Objects(R"({"point":"1","north":-1e999})"), "line 1, column 128"},
        {Objects(R"({"point":"1","north":)" + CString(500, '9') + "}"), "line 1, column 622"},
        {Marked("\"info\":{\"datum\":\"\\ud83d\\u0041\"}"), "line 1, column 46"},
        {"{\"a\",1}", "line 1, column 5"},
        {"{\"a\" true}", "line 1, column 9"},
        {Marked("\"codes\":[1,]"), "line 1, column 29"},
        {Marked("\"codes\":[1 \"b\"]"), "line 1, column 31"},
        {Marked("\"codes\":[truth]"), "line 1, column 30"},
        {Marked(R"("version":1)") + CString(1, '\0'), "line 1, column 30"},
        {Marked("\"codes\":[\"a\x80\"]"), "line 1, column 29"},
    };
    for (const TCase& row : cases)
        EXPECT_EQ(Refusal(row.m_strText).m_strPlace, row.m_strPlace) << row.m_strText;
    for (const char* number : {"NaN", "Infinity", "-", "01", "1.", ".5", "+1", "0x10", "1e"})
        EXPECT_EQ(Refusal(Objects(CString(R"({"point":"1","north":)") + number + "}")).m_strPlace.substr(0, 5),
                  "line ");
    for (const char* text : {"\xFF", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xC3", "\\ud800", "\\udc00x"})
        EXPECT_EQ(Refusal(Objects(CString(R"({"point":")") + text + "\"}")).m_strPlace.substr(0, 5), "line ") << text;
    for (const char* comment : {"/* */", "// x\n"})
        (void)Refusal(comment + Marked(R"("version":1)"));
}

TEST(JobRefusals, EveryCutOfTheRichJobIsRefused)
{
    CIEData rich;
    JobSamples::FillRichJob(rich);
    const CString text = CIEJobFile::ToText(rich);
    ASSERT_EQ(text.substr(text.size() - 2), "}\n");
    for (std::size_t n = 0; n < text.size() - 1; ++n) {
        CIEData job;
        TIEJobFileError error;
        ASSERT_EQ(CIEJobFile::FromText(job, std::string_view(text).substr(0, n), &error), IE_BAD_CONTENT) << n;
        ASSERT_EQ(error.m_strPlace.substr(0, 5), "line ") << n;
        ASSERT_EQ(job.GetNumberOfDatasets(), 0);
    }
}

TEST(JobRefusals, EveryChangedByteEndsInAResult)
{
    CIEData rich;
    JobSamples::FillRichJob(rich);
    const CString text = CIEJobFile::ToText(rich);
    JobSamples::CRandom random(11);
    int nTaken = 0;
    for (std::size_t n = 0; n < text.size(); ++n) {
        CString changed = text;
        changed[n] = random.OneIn(2) ? "{}[],:\"\\0-e"[random.Below(11)] : static_cast<char>(random.Below(256));
        CIEData job;
        const EIEResult eResult = CIEJobFile::FromText(job, changed);
        ASSERT_TRUE(eResult == IE_OK || eResult == IE_BAD_CONTENT) << n;
        nTaken += eResult == IE_OK;
    }
    EXPECT_GT(nTaken, 100); // letters of names and digits may change
    EXPECT_LT(nTaken, static_cast<int>(text.size() / 2));
}

TEST(JobRefusals, NestingHasABottom)
{
    for (const int n : {40, 100000}) {
        for (const CString& text :
             {Repeat("[", n), Marked("\"datasets\":" + Repeat("[", n)), Marked("\"codes\":" + Repeat("[", n)),
              Objects(Repeat("{\"a\":", n)), Objects(R"({"point":)" + Repeat("[", n) + Repeat("]", n) + "}")})
            (void)Refusal(text);
    }
    const TIEJobFileError error = Refusal(Marked("\"codes\":" + Repeat("[", 40)));
    EXPECT_EQ(error.m_strPlace, "/codes" + Repeat("/0", 30));
}

TEST(JobRefusals, LongTextsAndLongListsPass)
{
    const CString strLong(10 << 20, 'x');
    CIEData job;
    ASSERT_EQ(CIEJobFile::FromText(job, Objects(R"({"point":")" + strLong + R"("})")), IE_OK);
    EXPECT_EQ(job.GetDatasetAt(0)->GetObjectAt(0)->GetName(), strLong);
    ASSERT_EQ(
        CIEJobFile::FromText(job, Objects(R"({"polyline":"","stations":[)" + Repeat("[1,2],", 100000) + "[3,4]]}")),
        IE_OK);
    EXPECT_EQ(job.GetDatasetAt(0)->GetObjectAt(0)->GetNumberOfStations(), 100001);
}

TEST(JobRefusals, WholeNumbersServeAsCoordinates)
{
    CIEData job;
    ASSERT_EQ(
        CIEJobFile::FromText(
            job, Objects(R"({"point":"1","north":18446744073709551615,"east":-9223372036854775809,"height":-0})")),
        IE_OK);
    EXPECT_TRUE(*job.GetDatasetAt(0)->GetObjectAt(0)->GetStation(0) ==
                CIEStation(18446744073709551616.0, -9223372036854775808.0, 0));
}

TEST(JobRefusals, AMarkOfUtf8AheadIsPassedOver)
{
    CIEData job;
    EXPECT_EQ(CIEJobFile::FromText(job, "\xEF\xBB\xBF" + Marked(R"("datasets":[{}])")), IE_OK);
    EXPECT_EQ(job.GetNumberOfDatasets(), 1);
}
