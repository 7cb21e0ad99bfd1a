// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Tools.h"
#include "engine/modern/FilterRunner.h"
#include "engine/modern/ModernCompressor.h"
#include "queue/FileKind.h"

namespace brevant::test {

using namespace Qt::StringLiterals;

/// The modern compressors of the build folder.
struct ModernFixture {
    ModernFixture() { tools.programs = QStringLiteral(MODERN_PROGRAMS); }

    [[nodiscard]] ModernResult minify(const QString &name, const QByteArray &source,
                                      const ModernOptions &options = {}) const
    {
        return minifyModern(*anyKindOf(name), source, options, tools, u"/site/src/"_s + name,
                            u"/site/out/"_s + name, filters);
    }

    Tools tools;
    std::atomic<Stop> stop = Stop::No;
    mutable FilterRunner filters{stop};
};

} // namespace brevant::test

/// To stand in initTestCase(): without the programs, which not every machine can have, the test is skipped.
#define BREVANT_SKIP_WITHOUT_MODERN(tools)                                                                   \
    do {                                                                                                     \
        if (const QString missing = (tools).missingModern(); !missing.isEmpty())                             \
            QSKIP(qPrintable(missing));                                                                      \
    } while (false)
