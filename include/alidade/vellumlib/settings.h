// What a run can vary.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/platform/messages.h"
#include "alidade/vellumlib/ascii_fields.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>

/// Asked when a file is about to be replaced. The host's; not owned.
class ALIDADE_API IIEMessageBox {
public:
    virtual ~IIEMessageBox() = default;
    /// True if the existing file may be replaced. Called on the thread of the run.
    virtual bool AskOverwrite(const CString& strFileName, HWND hWnd) = 0;
};

/// Settings of a job. Copies have a layout of their own.
struct ALIDADE_API TIESettings {
    bool m_bSingleFile = false;             ///< all datasets in one file
    IIEMessageBox* m_pMessageBox = nullptr; ///< not owned; null answers no question
    ECOORDS_STYLE m_eCoordsStyle = ECOORDS_STYLE::DecimalDegrees;
    int m_nNorthDecimals = 3;
    int m_nEastDecimals = 3;
    int m_nHeightDecimals = 3;
    bool m_bAttrTypes = false;                      ///< attribute names carry their type
    bool m_bAttrQuotes = false;                     ///< text values stand in double quotes
    std::unique_ptr<TIEAsciiFormat> m_pAsciiFormat; ///< null stands for the layout of a new TIEAsciiFormat
    std::uint8_t m_cHistoryOptions = 0;             ///< read by the job history report alone
    HWND m_hWnd = nullptr;                          ///< window of the finishing message; null is all windows
    CString m_strCodePage =
        "CP1252"; ///< what a file is read in that has no mark and isn't UTF-8; a name known to iconv
    /// Objects that the block references of a drawing may make; every four stations, values of attributes or 64 bytes
    /// of these count as a further object, and so does a code, but for what a reference tells of its first object
    /// itself. A reference beyond ends the import with IE_OUT_OF_MEMORY: a small file can ask for more than any memory
    /// holds.
    int m_nMostBlockCopies = 5'000'000;
    CString m_strWriteEncoding = "UTF-8"; ///< what text files are written in; a name known to iconv

    TIESettings() = default;
    TIESettings(const TIESettings& other);
    TIESettings& operator=(const TIESettings& other);
    TIESettings(TIESettings&&) noexcept = default;
    TIESettings& operator=(TIESettings&&) noexcept = default;
    ~TIESettings() = default;

    /// Whether that kind of data was asked for. New settings ask for every kind.
    [[nodiscard]] bool HasDataType(EIEDataType type) const
    {
        return (m_nDataTypes >> static_cast<int>(type) & 1U) != 0;
    }
    void SetDataType(EIEDataType type, bool bWanted);
    void SetNoDataTypes() { m_nDataTypes = 0; }
    [[nodiscard]] bool HasAllDataTypes() const { return m_nDataTypes == ~0U; }

    /// The layout in force: the settings' own, or that of a new TIEAsciiFormat.
    [[nodiscard]] const TIEAsciiFormat& GetAsciiFormat() const;

private:
    std::uint32_t m_nDataTypes = ~0U; // one bit for each EIEDataType
};
