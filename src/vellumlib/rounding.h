// Rounding that golden files can rely on.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstdint>

static_assert(FLT_EVAL_METHOD == 0 || FLT_EVAL_METHOD == 1, "a double must be rounded to a double (x87: -mfpmath=sse)");

/// Products from here on may lack the binary digit of one half.
constexpr double kRoundedProductLimit = 4503599627370496.0;

/// The whole number nearest to the exact product of two numbers that aren't negative, to the even one of two; the
/// product must be below kRoundedProductLimit. A product rounded to a double first would go astray at 0.285 * 100,
/// which is 28.499999... and not 28.5.
inline std::uint64_t RoundedProduct(double dLeft, double dRight)
{
    const double dProduct = dLeft * dRight;
    auto nWhole = static_cast<std::uint64_t>(dProduct);
    const double dRest = dProduct - static_cast<double>(nWhole);
    if (dRest > 0.5)
        return nWhole + 1;
    if (dRest == 0.5) {
        const double dLost = std::fma(dLeft, dRight, -dProduct);
        if (dLost > 0 || (dLost == 0 && nWhole % 2 != 0))
            ++nWhole;
    }
    return nWhole;
}
