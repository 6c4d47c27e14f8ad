// One value of a JSON document with all that is in it.
#pragma once

#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <forward_list>
#include <string_view>

class CIEJsonScanner;

/// The value, its members and elements in a row of nodes that look into the document's text, so that a tree which is
/// filled again and again needs no memory after the first times. An object's members keep the document's order. The
/// document's text outlives the tree.
class CIEJsonTree {
public:
    enum EType : std::uint8_t { Null, Flag, Number, Text, Array, Object };

    void Clear();
    /// The tree's own name in the document: what stands before the value.
    void SetRootKey(std::string_view key);
    void SetRootIndex(std::size_t nIndex) { m_nRootIndex = nIndex; }

    /// Takes the scanner's key as the name of the next value within an object.
    void AddKey(const CIEJsonScanner& scanner) { m_Key = Keep(scanner); }
    void AddNull() { Add(Null); }
    void AddFlag(bool bValue) { Add(Flag).m_bFlag = bValue; }
    void AddNumber(const CIEJsonScanner& scanner);
    void AddText(const CIEJsonScanner& scanner) { Add(Text).m_Text = Keep(scanner); }
    void Open(EType eType);
    /// Ends the array or object opened last. False, with the key in `twice`, if an object has a key twice.
    bool Close(std::string_view& twice);
    /// False while an array or object is open.
    [[nodiscard]] bool IsComplete() const { return m_Open.empty() && !m_Nodes.empty(); }
    /// Place of the array or object opened last, for messages while the tree grows.
    [[nodiscard]] CString GetOpenPlace() const;

private:
    friend class CIEJsonValue;
    struct TNode {
        std::string_view m_Key;
        std::string_view m_Text; ///< of a number its digits
        double m_dNumber = 0.0;
        std::uint32_t m_nParent = 0;
        std::uint32_t m_nIndex = 0; ///< among the elements of the parent
        std::uint32_t m_nCount = 0; ///< members or elements
        std::uint32_t m_nEnd = 0;   ///< the node behind everything within this one
        EType m_eType = Null;
        bool m_bFlag = false; ///< a flag's value; of a number, that it is whole
    };
    TNode& Add(EType eType);
    std::string_view Keep(const CIEJsonScanner& scanner);
    [[nodiscard]] CString PlaceOf(std::size_t i) const;

    std::vector<TNode> m_Nodes;
    std::vector<std::uint32_t> m_Open;
    std::forward_list<CString> m_Decoded; // texts that the document has with escapes
    CString m_strRootKey;
    std::size_t m_nRootIndex = 0;
    std::string_view m_Key;               // of the next member
    std::vector<std::string_view> m_Keys; // work space
};

/// A value within a tree. Valid until the tree changes.
class CIEJsonValue {
public:
    CIEJsonValue(const CIEJsonTree& tree, std::size_t i) : m_pTree(&tree), m_i(i) {}
    /// The whole tree, which must be complete.
    explicit CIEJsonValue(const CIEJsonTree& tree) : CIEJsonValue(tree, 0) {}

    [[nodiscard]] CIEJsonTree::EType GetType() const { return Node().m_eType; }
    [[nodiscard]] bool Is(CIEJsonTree::EType eType) const { return GetType() == eType; }
    [[nodiscard]] std::string_view GetKey() const { return Node().m_Key; }
    [[nodiscard]] bool GetFlag() const { return Node().m_bFlag; }
    [[nodiscard]] double GetNumber() const { return Node().m_dNumber; }
    /// False if the number isn't whole in the document or passes 64 bits.
    bool GetWhole(std::int64_t& nValue) const;
    /// Of a text.
    [[nodiscard]] std::string_view GetText() const { return Node().m_Text; }
    /// Number of members or elements.
    [[nodiscard]] std::size_t GetSize() const { return Node().m_nCount; }
    /// JSON pointer from the document part that the tree was cut from, as /12/north.
    [[nodiscard]] CString GetPlace() const { return m_pTree->PlaceOf(m_i); }

    class CIterator {
    public:
        CIterator(const CIEJsonTree& tree, std::size_t i) : m_pTree(&tree), m_i(i) {}
        CIEJsonValue operator*() const { return {*m_pTree, m_i}; }
        CIterator& operator++();
        bool operator==(const CIterator& other) const { return m_i == other.m_i; }

    private:
        const CIEJsonTree* m_pTree;
        std::size_t m_i;
    };
    /// Members or elements, in the document's order; none for other values.
    [[nodiscard]] CIterator begin() const { return {*m_pTree, m_i + 1}; }
    [[nodiscard]] CIterator end() const { return {*m_pTree, Node().m_nEnd}; }
    /// The member of that key, or end.
    [[nodiscard]] CIterator Find(std::string_view key) const;

private:
    [[nodiscard]] const CIEJsonTree::TNode& Node() const { return m_pTree->m_Nodes[m_i]; }

    const CIEJsonTree* m_pTree;
    std::size_t m_i;
};

/// Compares keys, which mostly differ at the first glance.
constexpr bool IsSameKey(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && (left.empty() || left[0] == right[0]) && left == right;
}

/// Appends a step to a JSON pointer: "/" and the key, with ~ and / within it as ~0 and ~1.
void AppendJsonStep(CString& strPlace, std::string_view key);
