// Point records told as data: what stands where in a record, for the reader and for the writer of a list. A new list of
// points costs a table.
#pragma once

#include "alidade/vellumlib/data.h"

#include <cstdint>
#include <span>
#include <string_view>

/// What stands at one place of a record.
enum class EIEPiece : std::uint8_t {
    Literal, ///< writing: m_pText as it stands
    Name,
    North,
    East,
    Height,
    HeightUnlessZero, ///< writing: empty for a height of exactly 0
    Code,             ///< of the first code its name; one with a "." in it loses its first two characters when written
    CodeString,       ///< first string of the first code
    ControlCode0,
    ControlCode1,
    Notes,
    FirstReference, ///< of a point-to-line point
    SecondReference,
    Check, ///< writing: check character over all that stands ahead of it in the line
};

/// What one record of a list says of a point. The texts point into the record.
struct TIEPointRecord {
    std::string_view m_Name;
    std::string_view m_Code;
    std::string_view m_CodeString;
    std::string_view m_ControlCodes[CIECodeValues::kControlCodes];
    std::string_view m_Notes;
    std::string_view m_FirstReference;
    std::string_view m_SecondReference;
    double m_dNorth = 0.0; ///< metres, as far as the form tells units
    double m_dEast = 0.0;
    double m_dHeight = 0.0;
    bool m_bHeight = true; ///< false: the record has none
    bool m_bCode = false;  ///< the point gets a code, be its name empty
    bool m_bRelative = false;
};

/// Where a piece stands in a record that is read.
struct TIEPlace {
    EIEPiece m_ePiece;
    int m_nFirst;     ///< index of the field, or the first column
    int m_nWidth = 0; ///< columns; 0 for a field between delimiters, kToEnd for all that is left
    static constexpr int kToEnd = 1 << 30;
};

/// How the records of one import code are read.
struct TIEReadForm {
    enum EName : std::uint8_t {
        MustBeValid, ///< a name that isn't refuses the record
        Any,
        IfValid ///< a name that isn't valid is left out
    };
    enum ENumbers : std::uint8_t {
        Lengths,        ///< in the job's units, also in a geographic job; one that can't be read refuses the record
        LengthsIfValid, ///< the same, but one that can't be read is left out
        Coordinates,    ///< in the job's units, or degrees in a geographic job; heights are lengths
        WithoutUnits    ///< as they stand; a height that can't be read is 0
    };
    int m_nCode;
    std::span<const TIEPlace> m_Places;
    char m_cDelimiter = '\0'; ///< 0 for columns
    EName m_eName = MustBeValid;
    ENumbers m_eNumbers = Lengths;
    std::size_t m_nFewestFields = 1;
    int m_nColumns = TIEPlace::kToEnd; ///< what stands behind them doesn't count
    bool m_bHeightMayLack = false;     ///< an empty height makes a point without one
    double m_dMissingHeight = 0.0;     ///< if it isn't 0: the height, in metres, that an empty field stands for
    bool m_bAlwaysCode = false;        ///< the point gets a code also where its field is empty
    bool m_bRelative = false;          ///< a line of seven fields or more is a point-to-line point
    bool m_bFirstFieldOnly = false;    ///< what stands behind a comma within a field doesn't count
    const char* m_pTag = nullptr;      ///< what the first field of each record should be
    std::size_t m_nMostFields = 0;     ///< if it isn't 0: what stands behind them means nothing
};

/// A comma list with those fields, of which the code, its string and the height may lack.
constexpr TIEReadForm CommaForm(int nCode, std::span<const TIEPlace> places)
{
    return {.m_nCode = nCode,
            .m_Places = places,
            .m_cDelimiter = ',',
            .m_bHeightMayLack = true,
            .m_bRelative = true,
            .m_nMostFields = 8};
}

inline constexpr TIEPlace kNorthFirstFields[] = {{EIEPiece::Name, 0}, {EIEPiece::North, 1},
                                                 {EIEPiece::East, 2}, {EIEPiece::Height, 3},
                                                 {EIEPiece::Code, 4}, {EIEPiece::CodeString, 5}};
/// How comma lists with north ahead of east are read, whatever their decimals.
inline constexpr TIEReadForm kNorthFirstComma = CommaForm(28, kNorthFirstFields);

/// The form of that code out of a table; the first, if it has none of it.
template <class TForm, std::size_t nForms>
constexpr const TForm& FindForm(const TForm (&forms)[nForms], int nCode)
{
    for (const TForm& form : forms) {
        if (form.m_nCode == nCode)
            return form;
    }
    return forms[0];
}

/// Reads records of one form. Knows nothing of files.
class CIERecordReader {
public:
    /// Both must outlive the reader.
    CIERecordReader(const TIEReadForm& form, const TIEJobInfo& info) : m_Form(form), m_Info(info) {}

    /// False if the record is refused. The texts of `record` live as long as `text`.
    bool Read(std::string_view text, TIEPointRecord& record);
    /// The same for one piece alone.
    bool ReadPiece(EIEPiece ePiece, std::string_view text, TIEPointRecord& record);

    /// Something of a record that was taken and didn't come in, or not as it stands.
    struct TDoubt {
        TIENote::EKind m_eKind;
        EIENote m_eCode;     ///< stable word
        CString m_strReason; ///< a sentence
    };
    /// Those of the last record.
    [[nodiscard]] const std::vector<TDoubt>& GetDoubts() const { return m_Doubts; }

    /// Why the last record was refused: a stable word, and a sentence.
    [[nodiscard]] EIENote GetRefusalCode() const { return m_eRefusalCode; }
    [[nodiscard]] const CString& GetRefusal() const { return m_strRefusal; }

    /// A point as the record tells it. Its code is added to the job if it is new.
    static std::unique_ptr<CIEObject> MakePoint(CIEData& job, const TIEPointRecord& record);

private:
    bool ReadFields(std::string_view text, TIEPointRecord& record);
    bool ReadColumns(std::string_view text, TIEPointRecord& record);
    bool ReadReferences(TIEPointRecord& record);
    bool ReadNumber(std::string_view text, bool bHeight, const char* pWhat, double& dValue);
    bool ReadHeight(std::string_view text, TIEPointRecord& record);
    void DoubtFields(std::string_view text);
    void DoubtNumbers(std::string_view text, bool bAscii);
    bool Refuse(EIENote eCode, CString strReason);
    /// Keeps what isn't as it should be for the host. True.
    bool Doubt(EIENote eCode, CString strReason, TIENote::EKind eKind = TIENote::Changed);

    const TIEReadForm& m_Form;
    const TIEJobInfo& m_Info;
    std::vector<std::string_view> m_Fields;
    std::vector<TDoubt> m_Doubts;
    EIENote m_eRefusalCode{};
    CString m_strRefusal;
};
