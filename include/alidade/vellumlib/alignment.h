// Roads: a horizontal alignment with its profile and its cross sections.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/road_elements.h"
#include "alidade/vellumlib/road_templates.h"

#include <optional>
#include <string_view>

class CIEDesignPoint;

/// The shape of one side of a road at a station. Belongs to the alignment that it was added to.
class ALIDADE_API CIECrossSection {
public:
    /// The template belongs to the job's road templates and must outlive the cross section. Null is none.
    explicit CIECrossSection(const CIERoadTemplate* pTemplate);
    virtual ~CIECrossSection() = default;

    /// Station in metres.
    virtual void SetSta(double dStation) { m_dStation = dStation; }
    [[nodiscard]] virtual double GetSta() const { return m_dStation; }
    /// Elevation of the centre line at the station, metres.
    virtual void SetLevelAtCL(double dLevel) { m_Level = dLevel; }
    /// 0 while it isn't known.
    [[nodiscard]] virtual double GetLevelAtCL() const { return m_Level.value_or(0.0); }
    /// True once the level was set.
    [[nodiscard]] virtual bool IsLevelAtCLCalculated() const { return m_Level.has_value(); }
    /// False is the left side, true the right.
    virtual void SetTurn(bool bRight) { m_bRight = bRight; }
    [[nodiscard]] virtual bool GetTurn() const { return m_bRight; }

    [[nodiscard]] int GetNumberOfRoadTemplates() const { return static_cast<int>(m_Templates.size()); }
    /// Null past the end.
    [[nodiscard]] const CIERoadTemplate* GetRoadTemplateAt(int i) const;
    /// See the constructor.
    void AddRoadTemplate(const CIERoadTemplate* pTemplate);
    /// Lets go of the template of that name. False if it wasn't referred to.
    bool RemoveRoadTemplate(std::string_view name);
    /// Takes over station, level and side of another cross section; the templates stay.
    void CopyData(const CIECrossSection& other);

private:
    std::vector<const CIERoadTemplate*> m_Templates;
    double m_dStation = 0.0;
    std::optional<double> m_Level;
    bool m_bRight = false;
};

/// The name face of an alignment.
class ALIDADE_API CIENameInterface {
public:
    void SetName(CString name) { m_strName = std::move(name); }
    [[nodiscard]] const CString& GetName() const { return m_strName; }

protected:
    ~CIENameInterface() = default;

private:
    CString m_strName;
};

/// A road. Belongs to the dataset that it was added to, and owns all that is added to it.
class ALIDADE_API CIEAlignment : public CIENameInterface {
public:
    CIEAlignment() = default;
    virtual ~CIEAlignment() = default;
    CIEAlignment(const CIEAlignment&) = delete;
    CIEAlignment& operator=(const CIEAlignment&) = delete;

    /// Kind of alignment; 0, unless a host's own class says otherwise.
    [[nodiscard]] virtual int GetType() const { return 0; }
    /// A point of the dataset, which must outlive the alignment there. Null is none.
    virtual void SetStartPoint(CIEDesignPoint* pPoint) { m_pStartPoint = pPoint; }
    [[nodiscard]] virtual CIEDesignPoint* GetStartPoint() const { return m_pStartPoint; }
    /// Station of the start, metres.
    virtual void SetStaStart(double dStation) { m_dStaStart = dStation; }
    [[nodiscard]] virtual double GetStaStart() const { return m_dStaStart; }
    /// Length in metres as a file told it.
    virtual void SetLength(double dLength) { m_Length = dLength; }
    /// The length that was set, else the lengths of the objects together.
    [[nodiscard]] virtual double GetLength() const;
    [[nodiscard]] bool IsLengthSet() const { return m_Length.has_value(); }

    /// Each Add puts a thing behind the others of its kind and gives it back; null adds nothing and gives null. Each
    /// ...At is null past the end.
    CIEAlignmentObject* AddObject(std::unique_ptr<CIEAlignmentObject> pObject);
    [[nodiscard]] int GetNumberOfObjects() const { return static_cast<int>(m_Objects.size()); }
    [[nodiscard]] CIEAlignmentObject* GetObjectAt(int i) const;

    /// The profile's points, in ascending stations.
    CIELongSection* AddLongSection(std::unique_ptr<CIELongSection> pSection);
    [[nodiscard]] int GetNumberOfLongSections() const { return static_cast<int>(m_LongSections.size()); }
    [[nodiscard]] CIELongSection* GetLongSectionAt(int i) const;

    /// The profile's pieces, for formats that tell it by pieces instead of points. Neither kind is made from the other.
    CIEVerticalElement* AddVerticalElement(std::unique_ptr<CIEVerticalElement> pElement);
    [[nodiscard]] int GetNumberOfVerticalElements() const { return static_cast<int>(m_VerticalElements.size()); }
    [[nodiscard]] CIEVerticalElement* GetVerticalElementAt(int i) const;

    CIECrossSection* AddCrossSection(std::unique_ptr<CIECrossSection> pSection);
    [[nodiscard]] int GetNumberOfCrossSections() const { return static_cast<int>(m_CrossSections.size()); }
    [[nodiscard]] CIECrossSection* GetCrossSectionAt(int i) const;

private:
    CIEDesignPoint* m_pStartPoint = nullptr;
    double m_dStaStart = 0.0;
    std::optional<double> m_Length;
    std::vector<std::unique_ptr<CIEAlignmentObject>> m_Objects;
    std::vector<std::unique_ptr<CIELongSection>> m_LongSections;
    std::vector<std::unique_ptr<CIEVerticalElement>> m_VerticalElements;
    std::vector<std::unique_ptr<CIECrossSection>> m_CrossSections;
};
