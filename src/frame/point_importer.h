// Reader of delimited lines, and the base of importers that read one point a line.
#pragma once

#include "alidade/frame/importer.h"
#include "alidade/vellumlib/text_file.h"

#include <string_view>

class CIELineJoiner;

/// Reads lines by the layout in the settings, or in the file's own header line, which then replaces the one in the
/// settings. Consecutive lines of one name make a polyline, a closed one becomes a polygon. Coordinates stand in the
/// job's units. The first blank line is the end of the data.
class CIEPointImporter : public CIEImporter {
public:
    using CIEImporter::CIEImporter;

    /// IE_CANNOT_OPEN_FILE, IE_STOPPED, or what ImportFile gave.
    EIEResult Import() override;
    /// Reads an open file into a new dataset "Import dataset". IE_OK; IE_PARTIAL if some lines were refused;
    /// IE_BAD_CONTENT if all were; IE_NOTHING_DONE if there was none; IE_OUT_OF_MEMORY.
    virtual EIEResult ImportFile(CIETextFile& file);
    /// Makes an object from one line: IE_OK, or IE_PARTIAL if the line is refused. A reader of another line layout
    /// replaces this alone; it tells the reason of a refusal by Refuse.
    virtual EIEResult ParseLine(std::string_view line, std::unique_ptr<CIEObject>& pObject);

protected:
    /// Keeps the reason for the note on this line. Gives IE_PARTIAL.
    EIEResult Refuse(EIENote eCode, CString strReason);
    /// Tells of something on this line that came in, but not as it stands.
    void NoteLine(EIENote eCode, const CIEObject& object, CString strReason) const;
    /// The start of a field, for notes: what has no delimiter may be as long as the file.
    static CString Excerpt(std::string_view text);
    /// Turns one code text, as "ROAD:width=3.5&note@c1", into a code of the object and, if it is new, of the job.
    void ParseCode(std::string_view text, CIEObject& object);

    bool m_bCodeStrings = false; ///< code strings are taken; worked out on the first code

private:
    struct TAttribute {
        CString m_strName; // as it stands in the file, type word and all
        CString m_strValue;
    };
    using TAttributes = std::vector<TAttribute>;

    [[nodiscard]] TAttributes ReadAttributes(std::string_view text) const;
    void NoteOtherNames(const CIECodeDescription& description, const TAttributes& attributes,
                        const CIEObject& object) const;
    [[nodiscard]] std::unique_ptr<CIECodeDescription> MakeDescription(CString strName,
                                                                      const TAttributes& attributes) const;
    void TakeHeader(CIETextFile& file);
    void NoteRest(CIETextFile& file);
    void Join(CIELineJoiner& joiner, std::unique_ptr<CIEObject> pObject);
    bool SetField(int nField, std::string_view text, CIEStation& station);

    std::int64_t m_nLine = 0; // the line being read, for notes
    EIENote m_eRefusalCode{};
    CString m_strRefusal;
    std::vector<std::string_view> m_FieldTexts; // fields of the line being read
    std::vector<std::string_view> m_CodeTexts;
};
