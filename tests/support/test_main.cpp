#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <locale>
#include <stdexcept>

// The tests live in the locale of their environment, as a host with a user interface would: under a locale with a
// decimal comma, a number that reaches a file through the C or C++ locale shows at once.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);

    if (std::setlocale(LC_ALL, "") == nullptr) {
        std::fputs("the locale of the environment isn't installed, see tools/setup.sh\n", stderr);
        return 2;
    }
    try {
        std::locale::global(std::locale(""));
    } catch (const std::runtime_error&) {
        std::fputs("the C++ library doesn't know the locale of the environment\n", stderr);
        return 2;
    }

    if (testing::UnitTest::GetInstance()->total_test_count() == 0) {
        std::fputs("this executable holds no test\n", stderr);
        return 2;
    }
    return RUN_ALL_TESTS();
}
