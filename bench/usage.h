// What the process has used so far, as the system counts it.
#pragma once

#include <cstdio>

#include <sys/resource.h>

namespace Usage {

/// Seconds of processor time, ours and the system's on our behalf.
inline double CpuSeconds()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// The most memory that was resident at once.
inline double PeakMegabytes()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024.0 / 1e6; // counted in KiB
}

/// One line for the comparing script: the work's own processor time, the whole process's, and its peak of memory.
inline void Print(std::size_t nRecords, double dWorkSeconds)
{
    std::printf("records=%zu work_cpu=%.6f process_cpu=%.6f peak_mb=%.1f\n", nRecords, dWorkSeconds, CpuSeconds(),
                PeakMegabytes());
}

} // namespace Usage
