#include "TestMain.h"

#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace {

using Classes = std::vector<std::pair<const char*, TestClass::Main>>;

// Filled before main.
Classes& All()
{
    static Classes s_all;
    return s_all;
}

} // namespace

TestClass::TestClass(const char* pszName, Main pfnMain)
{
    All().emplace_back(pszName, pfnMain);
}

int main(int argc, char** argv)
{
    for (const auto& [pszName, pfnMain] : All()) {
        if (argc > 1 && std::strcmp(argv[1], pszName) == 0) {
            argv[1] = argv[0];
            return pfnMain(argc - 1, argv + 1);
        }
    }
    std::fprintf(stderr, "usage: %s CLASS [what QTest takes...], CLASS one of:\n", argv[0]);
    for (const auto& [pszName, pfnMain] : All())
        std::fprintf(stderr, "  %s\n", pszName);
    return 2;
}
