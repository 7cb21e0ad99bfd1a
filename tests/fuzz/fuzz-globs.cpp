// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Each line of the bytes but the last one is a pattern, the last one a path.
#include "cli/Globs.h"
#include "tests/fuzz/Fuzzing.h"

#include <QList>

using namespace brevant;
using namespace brevant::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QList<QByteArray> lines = bytesOf(data, size).toByteArray().split('\n');
    const QByteArray path = lines.takeLast();
    GlobList globs;
    for (const QByteArray &line : lines) {
        const Glob glob(line);
        const bool isMatch = glob.matches(path, false) || glob.matches(path, true);
        require(glob.error().isEmpty() || !isMatch, "a wrong pattern matches nothing");
        require(!glob.matches(path, false) || glob.matches(path, true), "a folder matches what a file does");
        require(globs.add(line) == glob.error(), "a list says what a pattern says");
    }
    const bool isCovered = globs.covers(path, false);
    require(isCovered || !globs.matches(path, false), "what matches is covered");
    require(!globs.covers(path, true) || globs.covers(path + "/a", false), "what is below is covered too");
    require(!lines.isEmpty() || !isCovered, "no pattern covers nothing");
    return 0;
}
