// Cross-section shapes of a road.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/codes.h"
#include "alidade/vellumlib/road_elements.h"

#include <string_view>
#include <unordered_map>

class CIERoadTemplatesDictionary;

enum class ETSDataType : int { Offset = 0, Height = 1 };

/// Values of a whole template: slopes to the ground beyond its last segment, as run for each unit of rise.
enum class ECSDataType : int { CutSlope = 0, FillSlope = 1 };

/// A point of a template, in metres: how far out and how high, from the centre line or from the point before (see
/// CIERoadTemplate::EForm), and the code of what lies there.
class ALIDADE_API CIETemplateSegment : public TIERoadValues<ETSDataType, 2> {
public:
    /// Belongs to the job's data dictionary; null is none.
    [[nodiscard]] const CIECodeDescription* GetCodeDescription() const { return m_pCode; }
    void SetCodeDescription(const CIECodeDescription* pCode) { m_pCode = pCode; }

private:
    const CIECodeDescription* m_pCode = nullptr;
};

/// One side of a road's cross section: points from the centre line outwards. Offsets of a left side are positive too,
/// save in templates of the formats that keep them negative.
class ALIDADE_API CIERoadTemplate : public TIERoadValues<ECSDataType, 2> {
public:
    /// What offsets, or heights, are measured from.
    enum EForm : int {
        Open = 0,       ///< as read; the first conversion takes it for what it converts from
        Central = 1,    ///< from the centre line, and heights from the level there
        Sequential = 2, ///< each from the segment before, the first from the centre line
    };

    explicit CIERoadTemplate(CString name) : m_strName(std::move(name)) {}
    CIERoadTemplate(const CIERoadTemplate&) = delete; // cross sections point to it
    CIERoadTemplate& operator=(const CIERoadTemplate&) = delete;

    [[nodiscard]] const CString& GetName() const { return m_strName; }
    /// False, with nothing changed, if another template of its dictionary has that name.
    bool SetName(CString name);

    [[nodiscard]] int GetNumberOfSegments() const { return static_cast<int>(m_Segments.size()); }
    /// Null past the end. Valid until a segment is added.
    [[nodiscard]] const CIETemplateSegment* GetSegmentAt(int i) const;
    [[nodiscard]] CIETemplateSegment* GetSegmentAt(int i);
    void AddSegment(CIETemplateSegment segment) { m_Segments.push_back(segment); }

    [[nodiscard]] EForm GetOffsetsForm() const { return m_eOffsets; }
    [[nodiscard]] EForm GetHeightsForm() const { return m_eHeights; }
    /// Says what the values mean without changing them.
    void SetForms(EForm eOffsets, EForm eHeights);

private:
    friend class CIERoadTemplatesDictionary;
    void Convert(ETSDataType key, EForm& eForm, EForm eWanted);
    void MakeOffsetsPositive();

    CString m_strName;
    std::vector<CIETemplateSegment> m_Segments;
    CIERoadTemplatesDictionary* m_pOwner = nullptr; // told of a new name, because it finds templates by name
    EForm m_eOffsets = Open;
    EForm m_eHeights = Open;
};

/// The road templates of a job, in the order of adding and by name. Owns them; a template stays where it is until it is
/// removed.
class ALIDADE_API CIERoadTemplatesDictionary {
public:
    /// A place in a walk; 0 is behind the last template. Adding keeps places valid, removing does not.
    using TPosition = std::size_t;

    CIERoadTemplatesDictionary() = default;
    CIERoadTemplatesDictionary(const CIERoadTemplatesDictionary&) = delete;
    CIERoadTemplatesDictionary& operator=(const CIERoadTemplatesDictionary&) = delete;

    [[nodiscard]] int GetNumberOfRoadTemplates() const { return static_cast<int>(m_ByName.size()); }
    /// Place of the first template; 0 if there is none.
    [[nodiscard]] TPosition GetStartPosition() const { return NextTaken(0); }
    /// The template at that place; the place moves on to the next, to 0 behind the last. Null at place 0.
    CIERoadTemplate* GetNextRoadTemplate(TPosition& position) const;

    /// By name, in constant time; null if there is none.
    [[nodiscard]] CIERoadTemplate* FindRoadTemplate(std::string_view name) const;
    /// Adds a template and gives it back. If the name is there already, that one is given back and nothing is added.
    /// Null adds nothing and gives null.
    CIERoadTemplate* AddRoadTemplate(std::unique_ptr<CIERoadTemplate> pTemplate);
    /// Deletes a template, which no cross section may refer to any more. False if there is none of that name.
    bool RemoveRoadTemplate(std::string_view name);

    /// Turns offsets, heights or both of every template into steps from segment to segment. What is sequential already
    /// stays, so a second call is harmless.
    void ConvertOffsetsCentralToSeq(bool bOffsets, bool bHeights);
    /// Turns them into distances from the centre line. What is central already stays, so templates that were just read
    /// in can be converted beside older ones.
    void ConvertOffsetsSeqToCentral(bool bOffsets, bool bHeights);
    /// Takes the sign from central offsets. A template that then runs towards the centre line, as a left side does
    /// whose file tells it from left to right, is turned round to run outwards.
    void MakeOffsetsPositive();
    /// Declares all values central that no conversion has yet settled; right for templates that are complete, as a job
    /// holds them.
    void SettleAsCentral();

private:
    friend class CIERoadTemplate;
    bool Rename(CIERoadTemplate& renamed, CString name);
    [[nodiscard]] TPosition NextTaken(std::size_t i) const;
    void CloseGaps();

    std::vector<std::unique_ptr<CIERoadTemplate>> m_Templates;  // null where one was removed, until the gaps are closed
    std::unordered_map<std::string_view, std::size_t> m_ByName; // keys live in the templates
};
