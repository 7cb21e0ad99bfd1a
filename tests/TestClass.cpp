// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"

#include <cstdio>
#include <map>
#include <string>

using brevant::test::TestClass;

namespace {

// A function's own, so that it is there before the first class of another source is made known.
std::map<std::string, TestClass::Main> &classes()
{
    static std::map<std::string, TestClass::Main> known;
    return known;
}

} // namespace

TestClass::TestClass(const char *name, Main run)
{
    classes().emplace(name, run);
}

/// NAME [ARGUMENT OF QT TEST…] runs a class; without an argument, all are listed.
int main(int count, char *values[])
{
    if (count < 2) {
        for (const auto &[name, run] : classes())
            std::puts(name.c_str());
        return 0;
    }
    const auto found = classes().find(values[1]);
    if (found == classes().end()) {
        std::fprintf(stderr, "%s: no test class %s\n", values[0], values[1]);
        return 2;
    }
    return found->second(count - 1, values + 1);
}
