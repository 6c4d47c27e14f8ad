// What one run of the importer of drawings works with. Private to the importer's own sources.
#pragma once

#include "alidade/formats/dxf/import/dxf_importer.h"
#include "alidade/formats/dxf/import/dxf_reader.h"
#include "formats/dxf/import/dxf_tally.h"
#include "formats/dxf/import/dxf_text.h"

#include <optional>

/// What entities of all kinds can say of themselves.
struct CDXFImporter::TEntity {
    /// `token` is the one that began the entity.
    TEntity(const CDXFReader& reader, const TToken& token)
        : m_Place(CDXFTally::PlaceOf(reader)), m_strKind(token.GetText())
    {
    }

    CDXFTally::TPlace m_Place;
    CString m_strKind;
    CString m_strLayer;    ///< as bytes
    CString m_strLineType; ///< empty if it tells none
    int m_nColor = 0;      ///< 1 to 255, 0 if it tells none
    int m_nWidth = 0;
    bool m_bWidth = false; ///< it tells a width
    /// How an entity is drawn, as bits.
    enum EDrawn : unsigned { Color = 1, LineType = 2, LineWeight = 4 };
    unsigned m_nTold = 0;    ///< what it tells itself
    unsigned m_nByBlock = 0; ///< what it leaves to the reference to its block
    std::optional<double> m_GroundWidth;
    bool m_bWidthVaries = false;
    bool m_bDropped = false; ///< invisible or in paper space
    bool m_bExtruded = false;
    bool m_bThick = false;
    bool m_bTrueColor = false;
    bool m_bRefused = false; ///< a number that it can't do without isn't finite
};

struct CDXFImporter::TRun {
    enum EEnd { Going, FileEnd, Broken, Stopped, NoMemory, TooManyCopies };
    /// The group codes 40, 41 and 43, where they are widths.
    enum EWidths : unsigned { NoWidths = 0, Width40 = 1, Width41 = 2, Width43 = 4, AllWidths = 7 };
    struct TCorner {
        double m_Values[3] = {}; ///< X, Y, Z in the drawing's units
    };
    /// A block reference.
    struct TReference {
        CString m_strName; ///< of the block
        CIEStation m_Place;
        double m_dNorthScale = 1.0;
        double m_dEastScale = 1.0;
        double m_dHeightScale = 1.0;
    };
    /// Where the value of an attribute belongs.
    struct TTarget {
        CIECodeDescription* m_pCode = nullptr; ///< null if it belongs nowhere
        int m_nAttribute = -1;                 ///< index in the code's description, -1 for none
        bool m_bCodeString = false;
        bool m_bBeyond = false; ///< too much would come of it
        bool operator==(const TTarget&) const = default;
    };
    struct THash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    template <class TValue>
    using TByName = std::unordered_map<CString, TValue, THash, std::equal_to<>>;

    explicit TRun(CDXFImporter& importer);

    // ---- groups

    /// The next group. False at the end, whose reason is in m_eEnd: memory and the host's stop are looked at here, so
    /// that every loop over groups ends by them.
    bool Next(TToken& token);
    bool EndBy(EEnd eEnd);
    /// False, with the reason in m_eEnd, if memory runs out or the host stops the run. Also to be asked where objects
    /// are made without reading.
    bool MayGoOn();
    bool HasMemory();
    /// Hands the entity's groups to `take`, but for those that all entities share. False if the file ended ahead of the
    /// next entity, whose first group is left in `token` else.
    template <class TTake>
    bool ReadEntity(TToken& token, TEntity& entity, unsigned nWidths, TTake take);
    bool TakeShared(const TToken& token, TEntity& entity, unsigned nWidths);
    static void TakeWidth(TEntity& entity, double dWidth);
    /// A number without which the entity is nothing.
    double Number(const TToken& token, TEntity& entity) const;
    /// Takes the group of a coordinate of one of the corners, 10, 20, 30 of the first, 11, 21, 31 of the second ...
    template <std::size_t nCorners>
    void TakeCorner(const TToken& token, TEntity& entity, TCorner (&corners)[nCorners], const TBase& base) const;

    // ---- objects

    [[nodiscard]] CIEStation ToStation(const TCorner& corner, bool bAlwaysMeters = false) const;
    [[nodiscard]] double ToMeters(double dValue) const;
    [[nodiscard]] const CIELayer* FindLayer(const TEntity& entity);
    /// How the entity is drawn. Null where it says nothing of that.
    [[nodiscard]] std::unique_ptr<CIEDrawProperties> MakePointProperties(const TEntity& entity) const;
    [[nodiscard]] std::unique_ptr<CIEDrawProperties> MakeLineProperties(const TEntity& entity) const;
    /// Puts it behind the others. With a block's name it is part of that block.
    void AddObject(std::unique_ptr<CIEObject> pObject, const TEntity& entity, const CString& strBlock,
                   std::unique_ptr<CIEDrawProperties> pProperties);
    /// Takes the object that was added last out again.
    void RemoveLast(const CString& strBlock);
    /// Every object of a block has its name, so it may not be long.
    CString ToBlockName(const TToken& token);
    void EnterBlock(const CString& strBlock) { m_BlockObjects[strBlock].push_back(CountObjects()); }
    /// Looks what a reference gives to the parts of its block, or passes on to them within block `strBlock`.
    void CountByBlock(const TReference& reference, const TEntity& entity, const CString& strBlock);
    /// Counts a line type beyond the ordinary ones.
    void CountLineType(std::string_view name, const CDXFTally::TPlace& place);
    [[nodiscard]] int CountObjects() const { return m_pDataset->GetNumberOfElements(-1, 2, false, false); }
    /// Counts towards the copies that block references may make; `nParts` are stations and values of attributes. False
    /// when there are enough.
    bool CountCopy(const TEntity& insert, const CString& strName, std::int64_t nObjects, std::int64_t nParts);
    bool AddCopies(const TReference& reference, const TEntity& entity, const CString& strBlock);

    // ---- codes

    TTarget FindTarget(std::string_view name, CIEAttrDescription::EType eType, const CString& strValue);
    void CountTargetParts(const CStringArray& values);
    void TakeGaps(int nObjects);
    int TakeAttribute(CIECodeDescription& code, std::string_view attribute, CIEAttrDescription::EType eType);

    // ---- notes

    /// A word of the form that is the value of another group than 0 and does what it says all the same.
    void CountWord(const TToken& token);
    /// Words that belong to an entity which has been told of, or that bring nothing themselves. A block's patterns of
    /// attributes are for a program in which someone draws.
    static bool IsCompanion(TToken::EToken eToken, bool bInBlock)
    {
        return eToken == TToken::SEQEND || eToken == TToken::VERTEX || (eToken == TToken::ATTDEF && bInBlock) ||
               eToken == TToken::ENDTAB || eToken == TToken::END_OF_FILE;
    }
    /// An entity that the job has nothing for.
    void CountEntity(const TToken& token) { m_Tally.CountEntity(ToNote(token), m_Reader); }
    /// A word between the sections or the blocks, where no entity can be.
    void CountOutside(const TToken& token);
    /// A section that is left out; one whose name doesn't follow at once counts as "nameless".
    void CountSection(const TToken& token);
    /// To be asked of each group of a section without entities: finds sections that it swallows for want of its end.
    void LookForSection(const TToken& token);
    void CountNumber();
    /// That, and a value that was cut.
    void CountValue();
    /// What an entity has that no object of the job has. An attribute isn't one.
    void CountExtras(const TEntity& entity);
    /// Of an entity that tells its coordinates in a plane of its own.
    void CountExtrusion(const TEntity& entity);
    void Tell(TIENote note) const;
    void Refuse(const TEntity& entity, CString strReason) const;
    void TellLosses(bool bSection) const;
    std::string_view ToNote(const TToken& token) { return m_Text.View(token.GetText(), m_strScratch); }

    CDXFImporter& m_Importer;
    CDXFReader& m_Reader;
    CIEData& m_Data;
    CIEDataset* m_pDataset;
    CDXFText m_Text;
    CDXFTally m_Tally;
    EEnd m_eEnd = Going;
    int m_nSinceCheck = 0; ///< groups since memory was looked at
    bool m_bPlane;
    EDIST_UNITS m_Units;

    /// Places in the dataset of the objects of each block, in order.
    TByName<std::vector<int>> m_BlockObjects;
    TByName<unsigned> m_ByBlock; ///< what parts of a block leave to references, as TEntity::EDrawn
    std::int64_t m_nCopies = 0;
    std::int64_t m_nMostCopies;
    std::int64_t m_nGaps = 0;        ///< empty values that the objects may get
    CString m_strFileCode;           ///< of attributes that name no code
    std::vector<TTarget> m_Targets;  ///< of the reference that is being read
    std::int64_t m_nTargetParts = 0; ///< what its attributes add to each object, by the memory it takes
    std::int64_t m_nTargetGaps = 0;  ///< of that, what isn't in the file: empty values ahead of those that are
    /// Attributes of codes that have too many to look through.
    std::unordered_map<const CIECodeDescription*, TByName<int>> m_ManyAttributes;
    CString m_strScratch;
    bool m_bRefusedVertex = false;      ///< of the polyline that is being read
    double m_dPolylineWidth = 0;        ///< likewise
    bool m_bPolylineVaries = false;     ///< likewise
    CDXFTally::TPlace m_ReferencePlace; ///< of the reference that is being read
    bool m_bDroppedReference = false;   ///< what was read last is a block reference that was left out
    bool m_bMovedBlock = false;         ///< the block that is being read has a base point that isn't 0
    bool m_bAnySection = false;         ///< a section has begun
    bool m_bPassedOver = false;         ///< within a section that is left out
    bool m_bSectionHead = false;        ///< of a section that is swallowed, the name is to come
};

/// A value of the last group that isn't the number which its code wants.
inline void CDXFImporter::TRun::CountNumber()
{
    switch (m_Reader.GetNumberState()) {
    case CDXFReader::ENumber::Read:
        break;
    case CDXFReader::ENumber::InPart:
        m_Tally.Count(CDXFTally::NumberInPart, m_Reader);
        break;
    case CDXFReader::ENumber::NoNumber:
        m_Tally.Count(CDXFTally::Number, m_Reader);
        break;
    case CDXFReader::ENumber::NotFinite:
        m_Tally.Count(CDXFTally::NotFinite, m_Reader);
        break;
    }
}

inline void CDXFImporter::TRun::CountValue()
{
    CountNumber();
    if (m_Reader.WasCut())
        m_Tally.Count(CDXFTally::LongValue, m_Reader);
}

template <class TTake>
bool CDXFImporter::TRun::ReadEntity(TToken& token, TEntity& entity, unsigned nWidths, TTake take)
{
    while (Next(token)) {
        if (token.m_nCode == 0) {
            CountExtras(entity);
            return true;
        }
        if (entity.m_bDropped)
            continue;
        CountValue();
        if (!TakeShared(token, entity, nWidths))
            take(token);
    }
    return false;
}

template <std::size_t nCorners>
void CDXFImporter::TRun::TakeCorner(const TToken& token, TEntity& entity, TCorner (&corners)[nCorners],
                                    const TBase& base) const
{
    const auto nAxis = static_cast<std::size_t>(token.m_nCode / 10 - 1);
    const auto nCorner = static_cast<std::size_t>(token.m_nCode % 10);
    if (nAxis < 3 && nCorner < nCorners)
        corners[nCorner].m_Values[nAxis] = Number(token, entity) - base[nAxis];
}
