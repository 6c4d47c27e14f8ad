// Files of the floor programs, by the standard library alone.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

using TFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

[[noreturn]] inline void Fail(const char* pWhat)
{
    std::perror(pWhat);
    std::exit(1);
}

inline TFile Open(const char* pPath, const char* pMode)
{
    TFile file(std::fopen(pPath, pMode), &std::fclose);
    if (!file)
        Fail(pPath);
    return file;
}
