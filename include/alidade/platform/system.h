// Clock, memory and folders.
#pragma once

#include "alidade/platform/api.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A moment in local time.
struct TIEDateTime {
    int m_nYear = 0;   ///< four digits
    int m_nMonth = 0;  ///< 1 to 12
    int m_nDay = 0;    ///< 1 to 31
    int m_nHour = 0;   ///< 0 to 23
    int m_nMinute = 0; ///< 0 to 59
    int m_nSecond = 0; ///< 0 to 60
    int m_nMillisecond = 0;

    bool operator==(const TIEDateTime&) const = default;
};

namespace Platform {

/// The current local time.
ALIDADE_API TIEDateTime Now();
/// A date in the short form that the user's environment asks for (LC_ALL, LC_TIME, LANG), "11/22/26" in the plain one.
ALIDADE_API std::string ShortDate(const TIEDateTime& moment);
/// Bytes of virtual memory that this process can still get: what the system has free or can free, and no more than a
/// limit on its address space leaves. Cheap enough to be asked once in a thousand records.
ALIDADE_API std::uint64_t FreeVirtualMemory();
/// Names (without the folder) of the plain files in a folder that fit a pattern with `*` and `?`, case ignored, in
/// order of name. Empty if the folder can't be read.
ALIDADE_API std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern);

/// Test hooks: replace a service until an empty function puts the system's own back. Not to be changed while another
/// thread asks for the service.
ALIDADE_API void SetClock(std::function<TIEDateTime()> clock);
ALIDADE_API void SetFreeMemory(std::function<std::uint64_t()> freeMemory);

} // namespace Platform
