// Codes: what a job's dictionary says of each, and the values that an object carries.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/draw_properties.h"
#include "alidade/vellumlib/types.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <unordered_map>

/// One attribute that objects of a code have.
class ALIDADE_API CIEAttrDescription {
public:
    enum EType : int {
        TEXT = 0,
        INT = 1,
        REAL = 2,
        LIST = 3, ///< text out of the list's items
    };

    CIEAttrDescription() = default;
    explicit CIEAttrDescription(CString name, EType type = TEXT, CStringArray items = {})
        : m_strName(std::move(name)), m_ListItems(std::move(items)), m_eType(type)
    {
    }

    [[nodiscard]] const CString& GetName() const { return m_strName; }
    void SetName(CString name) { m_strName = std::move(name); }
    [[nodiscard]] EType GetType() const { return m_eType; }
    void SetType(EType type) { m_eType = type; }
    /// Choices of a LIST attribute, in the order in which they are shown.
    [[nodiscard]] const CStringArray& GetListItems() const { return m_ListItems; }
    void SetListItems(CStringArray items) { m_ListItems = std::move(items); }

    bool operator==(const CIEAttrDescription&) const = default;

private:
    CString m_strName;
    CStringArray m_ListItems;
    EType m_eType = TEXT;
};

/// One code of the dictionary with its attributes, in order.
class ALIDADE_API CIECodeDescription {
public:
    CIECodeDescription() = default;
    explicit CIECodeDescription(CString name) : m_strName(std::move(name)) {}
    CIECodeDescription(const CIECodeDescription&) = default;
    CIECodeDescription& operator=(const CIECodeDescription&) = delete; ///< a dictionary finds it by its name
    ~CIECodeDescription() = default;

    [[nodiscard]] const CString& GetName() const { return m_strName; }
    /// Words for people; empty if there are none.
    [[nodiscard]] const CString& GetDescription() const { return m_strDescription; }
    void SetDescription(CString text) { m_strDescription = std::move(text); }

    /// Number of attributes.
    [[nodiscard]] int GetSize() const { return static_cast<int>(m_Attributes.size()); }
    /// Null past the end.
    [[nodiscard]] const CIEAttrDescription* GetAttrDescriptionAt(int i) const;
    void AddAttrDescription(CIEAttrDescription attribute) { m_Attributes.push_back(std::move(attribute)); }
    /// Index of the first attribute of that name, or -1.
    [[nodiscard]] int FindAttrDescription(std::string_view name) const;

    /// How objects of the code are drawn that don't say it themselves, by CIEDrawProperties::EType; null if that was
    /// never set, and for any other type.
    [[nodiscard]] CIEDrawProperties* GetDrawProperties(int nType) const;
    /// A type other than that of the properties, or one that there isn't, is passed over. Null takes them away.
    void SetDrawProperties(int nType, std::unique_ptr<CIEDrawProperties> pProperties);
    /// True if there are any.
    [[nodiscard]] bool IsDrawPropertiesWasDefined() const;

private:
    CString m_strName;
    CString m_strDescription;
    std::vector<CIEAttrDescription> m_Attributes;
    std::array<CIEDrawPropertiesHolder, CIEDrawProperties::kTypes> m_DrawProperties;
};

/// The codes of a job, in order and by name. Names are compared exactly. A description stays where it is as long as the
/// dictionary lives, so that objects can point to it.
class ALIDADE_API CIEDataDictionary {
public:
    [[nodiscard]] int GetSize() const { return static_cast<int>(m_Codes.size()); }
    /// Null past the end.
    [[nodiscard]] CIECodeDescription* GetCodeDescriptionAt(int i) const;
    /// By name, in constant time; null if the dictionary doesn't have it.
    [[nodiscard]] CIECodeDescription* FindCodeDiscription(std::string_view name) const;
    /// Adds a code and gives it back. If the name is there already, that one is given back and nothing is added.
    CIECodeDescription* AddCodeDescription(std::unique_ptr<CIECodeDescription> pCode);
    /// Takes out and deletes the codes for which `unwanted` is true; no object may have them.
    template <class TPredicate>
    void RemoveCodesIf(TPredicate unwanted)
    {
        std::erase_if(m_Codes, [&](const std::unique_ptr<CIECodeDescription>& pCode) {
            if (!unwanted(*pCode))
                return false;
            m_ByName.erase(pCode->GetName());
            return true;
        });
    }

private:
    std::vector<std::unique_ptr<CIECodeDescription>> m_Codes;
    std::unordered_map<std::string_view, CIECodeDescription*> m_ByName; // keys live in the descriptions
};

/// One code on one object: values of its attributes, code strings, and two control codes.
class ALIDADE_API CIECodeValues {
public:
    static constexpr int kControlCodes = 2;

    /// `pDescription` belongs to the job's dictionary and must outlive the values; null is a code without a name and
    /// attributes.
    explicit CIECodeValues(const CIECodeDescription* pDescription);
    CIECodeValues(const CIECodeValues& other);
    CIECodeValues& operator=(const CIECodeValues& other);
    CIECodeValues(CIECodeValues&&) noexcept = default;
    CIECodeValues& operator=(CIECodeValues&&) noexcept = default;
    ~CIECodeValues() = default;

    /// Never null.
    [[nodiscard]] const CIECodeDescription* GetDescription() const { return m_pDescription; }

    /// Values stand in the order of the description's attributes, as text.
    [[nodiscard]] int GetNumberOfAttrs() const { return static_cast<int>(m_Attributes.size()); }
    /// Empty past the end.
    [[nodiscard]] const CString& GetAttrAt(int i) const;
    void AddAttr(CString value) { m_Attributes.push_back(std::move(value)); }
    /// Sets value i, filling the ones before it with empty texts.
    void SetAttrAt(int i, CString value);

    [[nodiscard]] int GetNumberOfCodeStrings() const;
    /// Empty past the end.
    [[nodiscard]] const CString& GetCodeStringAt(int i) const;
    void AddCodeString(CString text);

    /// Control code 0 or 1; empty if it was never set, and for any other index.
    [[nodiscard]] const CString& GetControlCode(int i) const;
    /// An index other than 0 and 1 is passed over.
    void SetControlCode(int i, CString text);

    /// The same code of the same dictionary with the same texts.
    bool operator==(const CIECodeValues& other) const;

private:
    struct TExtras {
        CStringArray m_CodeStrings;
        std::array<CString, kControlCodes> m_ControlCodes;
    };
    TExtras& Extras();

    const CIECodeDescription* m_pDescription;
    CStringArray m_Attributes;
    std::unique_ptr<TExtras> m_pExtras; // few objects have strings or control codes
};

/// The codes face of an object.
class ALIDADE_API CIECodesDataInterface {
public:
    virtual ~CIECodesDataInterface() = default;

    [[nodiscard]] int GetNumberOfCodes() const { return static_cast<int>(m_Codes.size()); }
    /// Null past the end. Valid until a code is added or taken away.
    [[nodiscard]] const CIECodeValues* GetCode(int i) const;
    [[nodiscard]] CIECodeValues* GetCode(int i);
    void AddCode(CIECodeValues values) { m_Codes.push_back(std::move(values)); }
    /// The object's values of the code of that name, or null. With `bIgnoreCase` ASCII letters count the same in either
    /// case. Valid as those of GetCode.
    [[nodiscard]] CIECodeValues* FindCode(std::string_view name, bool bIgnoreCase);
    /// Index of the object's values of that code, or -1.
    [[nodiscard]] int GetCodePos(const CIECodeDescription* pCode) const;
    void RemoveCodes() { m_Codes.clear(); }
    /// Replaces this object's codes by copies of the other's.
    void copyCodesData(const CIECodesDataInterface& other) { m_Codes = other.m_Codes; }

protected:
    CIECodesDataInterface() = default;
    CIECodesDataInterface(const CIECodesDataInterface&) = default;
    CIECodesDataInterface& operator=(const CIECodesDataInterface&) = default;

private:
    std::vector<CIECodeValues> m_Codes;
};
