// Layout of a delimited text line.
// Conversions without state, which any thread may use.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <string_view>

/// Fields of a delimited line and the words for them.
class ALIDADE_API IEAsciiFields {
public:
    enum EType : int {
        Name = 0,
        North = 1,
        East = 2,
        Height = 3,
        GeoidHeight = 4,
        Notes = 5,
        Codes = 6,               ///< names of the codes alone
        CodesWithStrings = 7,    ///< and their code strings
        CodesWithAttributes = 8, ///< names and attributes
        CodesWithAll = 9,        ///< names, attributes, code strings and control codes
        // what a receiver said of a GPS position; in lists of GPS positions
        HorizontalRMS = 10,
        VerticalRMS = 11,
        Date = 12,
        Time = 13,
        PositionDOP = 14,
        HorizontalDOP = 15,
        VerticalDOP = 16,
        Solution = 17,
        GpsSatellites = 18,
        GlonassSatellites = 19,
        LastDelimited = 19, ///< a line with a field above it can't be read
        // a measurement of a sheet point; in lists of sheet points
        SheetName = 20,
        SheetCodes = 21,
        MeasuredName = 22,
        Cut = 23,     ///< how much is to be cut, 0 where there is nothing
        Fill = 24,    ///< how much is to be filled, 0 where there is nothing
        ToGrade = 25, ///< from the ground up to the design, so above 0 in a fill
        MeasuredTime = 26,
        MeasurementNumber = 27, ///< from 1
        LineStation = 28,
        LineOffset = 29,
        DesignNorth = 30,
        DesignEast = 31,
        DesignHeight = 32,
        MeasuredNorth = 33,
        MeasuredEast = 34,
        MeasuredHeight = 35,
        DeltaNorth = 36, ///< this and the other differences: measured less design
        DeltaEast = 37,
        DeltaHeight = 38,
        DeltaStation = 39,
        DeltaOffset = 40,
        Distance = 41,
        LastField = 41,
    };
    using TFields = std::vector<EType>;

    /// The words of the fields, joined by commas: "name,north,east,height,codes".
    static CString FieldsToString(const TFields& fields);
    /// Reads what FieldsToString writes, and what people type: words in any case, with blanks around, separated by
    /// commas, semicolons or blanks; numbers 0 to 41; or one word of letters as PNEZD (P name, N north, E east, Z
    /// height, D codes; also H or U for the height, G geoid height, C codes, A codes with all that they carry, T
    /// notes). False, with `fields` empty, if a word is unknown or there is none, or nothing stands between two
    /// commas.
    static bool StringToFields(std::string_view text, TFields& fields);
    /// Index of the first field of that type, or -1.
    static int FindTypeInArray(EType type, const TFields& fields);
    /// Index of the last field that holds codes (6 to 9), or -1.
    static int FindCodesInArray(const TFields& fields);
    [[nodiscard]] static bool IsCodes(EType type) { return type >= Codes && type <= CodesWithAll; }
};

/// Layout of a delimited text file.
struct TIEAsciiFormat {
    char16_t m_cDelimiter = u',';
    bool m_bWriteHeader = false; ///< the first line of a written file tells the layout
    IEAsciiFields::TFields m_Fields{IEAsciiFields::Name, IEAsciiFields::North, IEAsciiFields::East,
                                    IEAsciiFields::Height, IEAsciiFields::CodesWithAll};

    bool operator==(const TIEAsciiFormat&) const = default;
};
