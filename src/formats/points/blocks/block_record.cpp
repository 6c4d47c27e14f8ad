#include "formats/points/blocks/block_record.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

using namespace Blocks;

constexpr auto npos = std::string_view::npos;
constexpr int kMostFields = 10;
constexpr int kNumberWidth = 12;
constexpr std::size_t kFullHeight = 10; ///< a sign and nine digits
constexpr int kWideName = 16;
constexpr int kNarrowName = 12;
constexpr double kThousand = 1000.0;
constexpr char kFieldMark = '_';
constexpr char kCodeMark = '*';
constexpr char kCodeDelimiter = ',';

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool EndsNumber(char c)
{
    return IsLetter(c) || c == ' ' || c == kFieldMark;
}

bool IsNumberPart(char c)
{
    return (c >= '0' && c <= '9') || c == '.';
}

bool IsFiller(char c)
{
    return static_cast<unsigned char>(c) <= ' ' || c == kFieldMark;
}

struct TNumber {
    std::string_view m_Text;
    double m_dValue = 0.0;
    bool m_bValid = false;
    bool m_bAtEnd = false; ///< nothing stands behind it
};

/// One walk over the fields of a record.
class CParser {
public:
    CParser(std::string_view text, EDialect eDialect, TRecord& record, bool bLosses)
        : m_Rest(text), m_bWide(eDialect == EDialect::Wide), m_bLosses(bLosses), m_Record(record)
    {
    }

    bool Run()
    {
        for (int i = 0; i < kMostFields; ++i) {
            const bool bField = GoToField();
            if (bField && !ReadField())
                return false;
            if (!bField || m_bEnded) {
                NoteRest();
                return true;
            }
        }
        return Lose(EIENote::RecordFields, "it has no end within ten fields");
    }

private:
    /// Takes the pieces of the reason, which is put together for those who listen.
    template <class... TPieces>
    bool Lose(EIENote eCode, const TPieces&... pieces)
    {
        if (m_bLosses)
            (m_Record.m_Losses.emplace_back(TLoss{eCode, {}}).m_strReason += ... += pieces);
        return false;
    }

    /// Goes behind the mark of the next field and a blank behind that.
    bool GoToField()
    {
        const std::size_t nMark = m_Rest.find(kFieldMark);
        if (nMark == npos)
            return false;
        m_Rest.remove_prefix(nMark + 1);
        if (m_Rest.starts_with(' '))
            m_Rest.remove_prefix(1);
        return true;
    }

    /// What is left of the field.
    [[nodiscard]] std::string_view GetField() const { return m_Rest.substr(0, m_Rest.find(kFieldMark)); }

    bool ReadField()
    {
        const std::string_view tag = IEUtils::Left(m_Rest, 1);
        char cTag = tag.empty() ? '\0' : tag.front();
        if (!m_Rest.empty() && cTag != kFieldMark)
            m_Rest.remove_prefix(1);
        switch (cTag) {
        case 'x':
        case 'f':
            return ReadNorth();
        case 'y':
        case 'g':
            m_bEastSeen = true;
            return ReadCoordinate("east", TakeNumber(), m_Record.m_dEast);
        case 'z':
        case 'h':
            return ReadHeight();
        case '0':
            if (m_bWide)
                return ReadName(kWideName);
            break;
        case '+':
            if (!m_bWide && !m_bEastSeen)
                return ReadName(kNarrowName);
            m_bEnded = !m_bWide;
            cTag = GetField().empty() ? '\0' : cTag; // alone, it is a mark without a text
            break;
        case kCodeMark:
            if (!m_bWide) {
                ReadCodes();
                return true;
            }
            break;
        default:
            break;
        }
        if (!IsFiller(cTag))
            Lose(EIENote::RecordField, "its field \"", tag, "\" isn't read");
        return true;
    }

    /// Bytes of the characters that a number may take of the rest.
    [[nodiscard]] std::size_t LengthOfNumber() const
    {
        std::size_t n = 0;
        for (int nCharacters = 0; n < m_Rest.size() && !EndsNumber(m_Rest[n]); ++n) {
            const bool bContinues = (static_cast<unsigned char>(m_Rest[n]) & 0xC0U) == 0x80U;
            if (!bContinues && nCharacters++ == kNumberWidth)
                break;
        }
        return n;
    }

    TNumber TakeNumber()
    {
        TNumber number;
        number.m_Text = m_Rest.substr(0, LengthOfNumber());
        m_Rest.remove_prefix(number.m_Text.size());
        number.m_bAtEnd = m_Rest.empty();
        std::string_view digits = number.m_Text;
        if (digits.starts_with('+') || digits.starts_with('-'))
            digits.remove_prefix(1);
        number.m_bValid = std::all_of(digits.begin(), digits.end(), IsNumberPart);
        if (!number.m_bValid)
            return number;
        if (!IEUtils::StringToDouble(number.m_Text, number.m_dValue, true) && !digits.empty())
            Lose(EIENote::RecordNumber, "its number \"", number.m_Text, "\" is none and was taken as 0");
        number.m_dValue /= kThousand; // nearer to the decimal number than a product with 0.001
        if (m_Rest.starts_with('F') || m_Rest.starts_with('f')) {
            number.m_dValue = IEUtils::ToMetersFactor(number.m_dValue, EDIST_UNITS::USSurveyFeet);
            m_Record.m_bFeet = true;
        }
        if (!m_bLosses)
            return number;
        constexpr std::string_view kUnits = "mMfF";
        const bool bUnit = !digits.empty() && !m_Rest.empty() && kUnits.find(m_Rest.front()) != npos;
        const std::string_view behind = GetField().substr(bUnit ? 1 : 0);
        if (!std::all_of(behind.begin(), behind.end(), IsFiller))
            Lose(EIENote::RecordNumber, "what stands behind its number \"", number.m_Text, "\" isn't read");
        return number;
    }

    bool ReadCoordinate(const char* pWhat, const TNumber& number, double& dValue)
    {
        if (!number.m_bValid)
            return Lose(EIENote::RecordNumber, "its ", pWhat, " \"", number.m_Text, "\" can't be read");
        dValue = number.m_dValue;
        return true;
    }

    bool ReadNorth()
    {
        const TNumber number = TakeNumber();
        m_bNorthSeen = true;
        if (!m_bWide || !number.m_bAtEnd)
            return ReadCoordinate("north", number, m_Record.m_dNorth);
        Lose(EIENote::RecordField, "its north \"", number.m_Text, "\" is cut and isn't read");
        return true;
    }

    bool ReadHeight()
    {
        const std::string_view field = GetField();
        const TNumber number = TakeNumber();
        const bool bTaken = m_bWide || number.m_Text.size() >= kFullHeight;
        m_bEnded = m_bWide;
        m_bHeightSeen = true;
        if (bTaken)
            m_Record.m_dHeight = number.m_dValue;
        if (!bTaken || !number.m_bValid)
            Lose(EIENote::RecordHeight, "its height \"", number.m_Text,
                 (number.m_bValid ? "\" is too short and isn't read" : "\" can't be read and is 0"));
        if (m_bWide && field.find(kCodeMark) != npos)
            Lose(EIENote::RecordCode, "the code behind its height isn't read");
        return true;
    }

    bool ReadName(int nMost)
    {
        if (m_Rest.starts_with('.'))
            m_Rest.remove_prefix(1);
        m_Rest.remove_prefix(std::min(m_Rest.find_first_not_of(' '), m_Rest.size()));
        std::string_view rest = GetField();
        const std::string_view name = IEUtils::Left(rest.substr(0, rest.find(' ')), nMost);
        rest.remove_prefix(name.size());
        m_Rest.remove_prefix(name.size());
        m_Record.m_strName = name;
        if (!IEUtils::IsValidName(name))
            return Lose(EIENote::RecordName, "\"", name, "\" can't name a point");
        if (!std::all_of(rest.begin(), rest.end(), IsFiller))
            Lose(EIENote::RecordNameCut, "its name goes on behind that, which isn't read");
        m_Record.m_dNorth = m_Record.m_dEast = m_Record.m_dHeight = 0.0;
        m_bNorthSeen = m_bEastSeen = m_bHeightSeen = false;
        return true;
    }

    void ReadCodes()
    {
        std::string_view codes = GetField();
        m_Rest.remove_prefix(codes.size());
        m_bEnded = true;
        for (;;) {
            const std::size_t nEnd = codes.find(kCodeDelimiter);
            if (nEnd != 0 && !codes.empty())
                m_Record.m_Codes.emplace_back(codes.substr(0, nEnd));
            if (nEnd == npos)
                break;
            codes.remove_prefix(nEnd + 1);
        }
    }

    /// Tells of what stands behind the field that ended the record, and of what it lacks.
    void NoteRest()
    {
        m_Rest.remove_prefix(GetField().size());
        if (m_bEnded && !std::all_of(m_Rest.begin(), m_Rest.end(), IsFiller))
            Lose(EIENote::RecordField, "what stands behind its end isn't read");
        if (!m_bNorthSeen || !m_bEastSeen || !m_bHeightSeen)
            Lose(EIENote::RecordIncomplete, "it lacks a north, an east or a height, which is 0");
    }

    std::string_view m_Rest;
    bool m_bWide;
    bool m_bLosses;
    bool m_bNorthSeen = false; ///< the record has its north value
    bool m_bEastSeen = false;
    bool m_bHeightSeen = false;
    bool m_bEnded = false;
    TRecord& m_Record;
};

} // namespace

namespace Blocks {

std::string_view MarkerOf(EDialect eDialect)
{
    return eDialect == EDialect::Wide ? "_0." : "_+";
}

std::size_t FindRecordEnd(std::string_view text, EDialect eDialect, std::size_t nFrom)
{
    const std::string_view marker = MarkerOf(eDialect);
    const std::size_t nFirst = eDialect == EDialect::Wide ? marker.size() : 1;
    return text.find(marker, std::max(nFrom, nFirst));
}

std::string_view Decode(std::string_view bytes, CIECodePage& codePage, CString& scratch)
{
    if (IEUtils::IsValidUtf8(bytes))
        return bytes;
    scratch = codePage.ToText(bytes);
    return scratch;
}

bool Parse(std::string_view text, EDialect eDialect, TRecord& record, bool bLosses)
{
    if (text.size() > kLongestRecord && IEUtils::Length(text) > kLongestRecord) {
        record.m_strName = IEUtils::Left(text, kWideName);
        record.m_Losses.push_back({EIENote::RecordTooLong, "it is longer than the 256 characters of a record"});
        return false;
    }
    return CParser(text, eDialect, record, bLosses).Run();
}

} // namespace Blocks
