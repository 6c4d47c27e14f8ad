// What writing points as a drawing costs, through the library and at the least: the same bytes by the standard library
// from a plain array.
//
//   dxf_write floor FILE COUNT     writes them from an array
//   dxf_write library FILE COUNT   exports a job of points without codes
//   dxf_write coded FILE COUNT     exports the same points with a code each, as blocks

#include "point_jobs.h"
#include "usage.h"

#include "alidade/transfer/entries.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using PointList::TPoint;

constexpr int kDrawing = 4; ///< export code
constexpr std::size_t kBuffer = std::size_t{64} << 10;

constexpr std::string_view kLineTypes =
    "0\r\nSECTION\r\n2\r\nTABLES\r\n0\r\nTABLE\r\n2\r\nLTYPE\r\n70\r\n5\r\n"
    "0\r\nLTYPE\r\n2\r\nDASHED\r\n70\r\n0\r\n3\r\nDashed __ __ __ __ __ __ __ __ __ __ __ __ __ "
    "_\r\n72\r\n65\r\n73\r\n2\r\n"
    "40\r\n0.750000\r\n49\r\n0.500000\r\n49\r\n-0.250000\r\n"
    "0\r\nLTYPE\r\n2\r\nDOTTED\r\n70\r\n0\r\n3\r\nDotted . . . . . . . . . . . . . . . . . . . "
    ".\r\n72\r\n65\r\n73\r\n2\r\n"
    "40\r\n0.100000\r\n49\r\n0\r\n49\r\n-0.100000\r\n"
    "0\r\nLTYPE\r\n2\r\nDASHDOTTED\r\n70\r\n0\r\n3\r\nDashDotted _ . _ . _ . _ . _ . _ . _ . _ . "
    "_\r\n72\r\n65\r\n73\r\n4\r\n"
    "40\r\n0.200000\r\n49\r\n0.100000\r\n49\r\n-0.050000\r\n49\r\n0\r\n49\r\n-0.050000\r\n"
    "0\r\nLTYPE\r\n2\r\nDASHDOTDOTTED\r\n70\r\n0\r\n3\r\nDashDotDotted _ .. _ .. _ .. _ .. _ .. _ .. "
    "_\r\n72\r\n65\r\n73\r\n6\r\n"
    "40\r\n0.250000\r\n49\r\n0.100000\r\n49\r\n-0.050000\r\n49\r\n0\r\n49\r\n-0.050000\r\n49\r\n0\r\n49\r\n-0."
    "050000\r\n"
    "0\r\nLTYPE\r\n2\r\nDASHED_CUSTOM\r\n70\r\n0\r\n3\r\nDashed_Custom (It depends on MINMAX values) _ "
    "_\r\n72\r\n65\r\n73\r\n2\r\n";
constexpr std::string_view kLayers =
    "0\r\nENDTAB\r\n0\r\nTABLE\r\n2\r\nLAYER\r\n70\r\n1\r\n0\r\nLAYER\r\n2\r\n0\r\n70\r\n0\r\n62\r\n7\r\n6\r\nContinuou"
    "s\r\n0\r\nENDTAB\r\n"
    "0\r\nTABLE\r\n2\r\nLAYER\r\n0\r\nENDTAB\r\n0\r\nENDSEC\r\n0\r\nSECTION\r\n2\r\nENTITIES\r\n";

void AppendGroup(std::string& out, std::string_view code, double dValue)
{
    char text[64];
    const auto written = std::to_chars(text, text + sizeof text, dValue, std::chars_format::fixed, 6);
    out += code;
    out += "\r\n";
    out.append(text, written.ptr);
    out += "\r\n";
}

void AppendPlace(std::string& out, double dNorth, double dEast, double dHeight)
{
    AppendGroup(out, "10", dEast);
    AppendGroup(out, "20", dNorth);
    AppendGroup(out, "30", dHeight);
}

void AppendHead(std::string& out, const std::vector<TPoint>& points, double& dText)
{
    TPoint least = points[0], most = points[0];
    for (const TPoint& point : points) {
        for (double TPoint::*const pValue : {&TPoint::m_dNorth, &TPoint::m_dEast, &TPoint::m_dHeight}) {
            least.*pValue = std::min(least.*pValue, point.*pValue);
            most.*pValue = std::max(most.*pValue, point.*pValue);
        }
    }
    const double dSide = std::max(most.m_dNorth - least.m_dNorth, most.m_dEast - least.m_dEast);
    dText = dSide / 150;
    out += "0\r\nSECTION\r\n2\r\nHEADER\r\n9\r\n$EXTMIN\r\n";
    AppendPlace(out, least.m_dNorth, least.m_dEast, least.m_dHeight);
    out += "9\r\n$EXTMAX\r\n";
    AppendPlace(out, most.m_dNorth, most.m_dEast, most.m_dHeight);
    out += "9\r\n$AUNITS\r\n70\r\n1\r\n9\r\n$CLAYER\r\n8\r\n0\r\n9\r\n$PDMODE\r\n70\r\n3\r\n9\r\n$PDSIZE\r\n";
    AppendGroup(out, "40", dText / 2);
    out += "9\r\n$LWDISPLAY\r\n290\r\n1\r\n0\r\nENDSEC\r\n";
    out += kLineTypes;
    const double dDash = dSide / 100;
    AppendGroup(out, "40", dDash + dDash / 2);
    AppendGroup(out, "49", dDash);
    AppendGroup(out, "49", -dDash / 2);
    out += kLayers;
}

bool WriteFloor(const char* pPath, const std::vector<TPoint>& points)
{
    std::FILE* const pFile = std::fopen(pPath, "wb");
    if (!pFile)
        return false;
    std::string buffer;
    double dText = 0;
    AppendHead(buffer, points, dText);
    for (const TPoint& point : points) {
        buffer += "0\r\nTEXT\r\n8\r\n0\r\n62\r\n7\r\n";
        AppendGroup(buffer, "10", point.m_dEast);
        AppendGroup(buffer, "20", point.m_dNorth);
        AppendGroup(buffer, "40", dText);
        AppendGroup(buffer, "41", 1);
        buffer += "1\r\n";
        buffer += point.m_strName;
        buffer += "\r\n0\r\nPOINT\r\n8\r\n0\r\n";
        AppendPlace(buffer, point.m_dNorth, point.m_dEast, point.m_dHeight);
        if (buffer.size() >= kBuffer) {
            std::fwrite(buffer.data(), 1, buffer.size(), pFile);
            buffer.clear();
        }
    }
    buffer += "0\r\nENDSEC\r\n0\r\nEOF\r\n";
    std::fwrite(buffer.data(), 1, buffer.size(), pFile);
    const bool bFailed = std::ferror(pFile) != 0;
    return std::fclose(pFile) == 0 && !bFailed;
}

bool WriteLibrary(const char* pPath, std::unique_ptr<CIEData> pJob)
{
    return ExportInTheSameThread(pJob.release(), pPath, static_cast<EExportType>(kDrawing)) == IE_OK;
}

std::unique_ptr<CIEData> MakeJob(std::size_t nCount, bool bCodes)
{
    std::unique_ptr<CIEData> pJob = PointJobs::Make(nCount);
    const CIEDataset& dataset = *pJob->GetCurDataset(true);
    for (int i = 0; CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        if (!bCodes)
            pObject->RemoveCodes();
    }
    return pJob;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view mode = argc == 4 ? argv[1] : "";
    const std::size_t nCount = argc == 4 ? std::strtoull(argv[3], nullptr, 10) : 0;
    if (nCount == 0 || (mode != "floor" && mode != "library" && mode != "coded")) {
        std::fputs("usage: dxf_write floor|library|coded FILE COUNT\n", stderr);
        return 2;
    }
    std::vector<TPoint> points;
    std::unique_ptr<CIEData> pJob;
    if (mode == "floor") {
        for (std::size_t i = 0; i < nCount; ++i)
            points.push_back(PointList::MakePoint(i));
    } else {
        pJob = MakeJob(nCount, mode == "coded");
    }
    const double dStart = Usage::CpuSeconds();
    if (!(pJob ? WriteLibrary(argv[2], std::move(pJob)) : WriteFloor(argv[2], points))) {
        std::fprintf(stderr, "%s couldn't be written\n", argv[2]);
        return 1;
    }
    Usage::Print(nCount, Usage::CpuSeconds() - dStart);
    return 0;
}
