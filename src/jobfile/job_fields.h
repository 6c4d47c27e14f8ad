// Tables of the keys of a document's objects: one row says how a key is written and read.
#pragma once

#include "jobfile/job_context.h"

#include <functional>
#include <iterator>
#include <type_traits>

/// A key of the document with its length, so that most keys differ at a glance.
class CIEJobKey {
public:
    constexpr CIEJobKey(const char* pKey) : m_Key(pKey) {} // NOLINT(google-explicit-constructor): tables hold the texts
    constexpr operator const char*() const { return m_Key.data(); } // NOLINT(google-explicit-constructor)
    [[nodiscard]] constexpr bool Is(std::string_view key) const { return IsSameKey(key, m_Key); }

private:
    std::string_view m_Key;
};

/// A key of the objects that hold a T. Writing leaves the key out where the value is that of a new T.
template <class T>
struct TIEJobField {
    CIEJobKey m_Key;
    void (*m_pWrite)(CIEJobWriting& out, const char* pKey, const T& object);
    bool (*m_pRead)(CIEJobReading& in, const CIEJsonValue& value, T& object);
};

namespace JobFields {

/// The object whose values needn't be written. A type without a default constructor has its own.
template <class T>
const T& DefaultOf()
{
    static const T object{};
    return object;
}

template <class T, auto set, class TValue>
void Set(T& object, TValue value)
{
    if constexpr (std::is_member_object_pointer_v<decltype(set)>)
        object.*set = std::move(value);
    else
        std::invoke(set, object, std::move(value));
}

/// A number, whole number, flag or text. `get` and `set` are a data member, member functions or plain functions.
template <class T, auto get, auto set = get>
constexpr TIEJobField<T> Value(const char* pKey)
{
    using TValue = std::decay_t<std::invoke_result_t<decltype(get), const T&>>;
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const T& object) {
                const TValue& value = std::invoke(get, object);
                if (value == std::invoke(get, DefaultOf<T>()))
                    return;
                out.m_Text.Key(pName);
                if constexpr (std::is_same_v<TValue, double>)
                    out.m_Text.Number(value);
                else if constexpr (std::is_same_v<TValue, bool>)
                    out.m_Text.Flag(value);
                else if constexpr (std::is_same_v<TValue, CString>)
                    out.m_Text.Text(value);
                else
                    out.m_Text.Whole(value);
            },
            [](CIEJobReading& in, const CIEJsonValue& value, T& object) {
                std::conditional_t<std::is_integral_v<TValue> && !std::is_same_v<TValue, bool>, int, TValue> read{};
                if (!in.Read(value, read))
                    return false;
                Set<T, set>(object, std::move(read));
                return true;
            }};
}

template <class T, auto key>
double GetKeyed(const T& object)
{
    return object.GetData(key);
}

template <class T, auto key>
void SetKeyed(T& object, double dValue)
{
    object.SetData(key, dValue);
}

/// A number that a road object holds under a key.
template <class T, auto key>
constexpr TIEJobField<T> Keyed(const char* pKey)
{
    return Value<T, &GetKeyed<T, key>, &SetKeyed<T, key>>(pKey);
}

/// A number of the job that has words in the document.
template <class T, const auto& words, auto get, auto set = get>
constexpr TIEJobField<T> Word(const char* pKey)
{
    using TValue = std::decay_t<std::invoke_result_t<decltype(get), const T&>>;
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const T& object) {
                const TValue value = std::invoke(get, object);
                if (value == std::invoke(get, DefaultOf<T>()))
                    return;
                out.m_Text.Key(pName);
                out.WriteWord(words, std::size(words), static_cast<int>(value));
            },
            [](CIEJobReading& in, const CIEJsonValue& value, T& object) {
                int nValue = 0;
                if (!in.ReadWord(value, words, std::size(words), nValue))
                    return false;
                Set<T, set>(object, static_cast<TValue>(nValue));
                return true;
            }};
}

template <class T, std::size_t n>
void Write(CIEJobWriting& out, const T& object, const TIEJobField<T> (&fields)[n])
{
    for (const TIEJobField<T>& field : fields)
        field.m_pWrite(out, field.m_Key, object);
}

/// Gives the member to the row of its key.
template <class T, std::size_t n>
EJobMember ReadMember(CIEJobReading& in, const CIEJsonValue& member, T& object, const TIEJobField<T> (&fields)[n])
{
    for (const TIEJobField<T>& field : fields) {
        if (field.m_Key.Is(member.GetKey()))
            return field.m_pRead(in, member, object) ? EJobMember::Done : EJobMember::Failed;
    }
    return EJobMember::Unknown;
}

/// Reads the members of an object whose keys stand in the table, passing over the one that the caller has read (null is
/// none).
template <class T, std::size_t n>
bool ReadOtherMembers(CIEJobReading& in, const CIEJsonValue& value, const char* pDone, T& object,
                      const TIEJobField<T> (&fields)[n])
{
    for (const CIEJsonValue member : value) {
        if (pDone && member.GetKey() == pDone)
            continue;
        const EJobMember eMember = ReadMember(in, member, object, fields);
        if (eMember != EJobMember::Done)
            return eMember == EJobMember::Unknown ? in.FailUnknownKey(member) : false;
    }
    return true;
}

/// Reads an object all of whose keys stand in the table.
template <class T, std::size_t n>
bool ReadObject(CIEJobReading& in, const CIEJsonValue& value, T& object, const TIEJobField<T> (&fields)[n])
{
    return in.WantObject(value) && ReadOtherMembers(in, value, nullptr, object, fields);
}

/// Calls `read` for each element of a list until one fails.
template <class TRead>
bool ReadList(CIEJobReading& in, const CIEJsonValue& value, TRead read)
{
    if (!in.WantArray(value))
        return false;
    for (const CIEJsonValue element : value) {
        if (!read(element))
            return false;
    }
    return true;
}

/// Reads the name that an entry of a list must have, and no other may.
template <class TFind>
bool ReadEntryName(CIEJobReading& in, const CIEJsonValue& value, CString& name, TFind find)
{
    if (!in.WantObject(value))
        return false;
    const auto itName = value.Find("name");
    if (itName == value.end())
        return in.Fail(value, "An entry of this list needs its name.");
    if (!in.Read(*itName, name))
        return false;
    return !find(name) || in.Fail(*itName, "This name stands in the list twice.");
}

} // namespace JobFields
