// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"

namespace brevant {

/// One thing that is wrong with a file of a run, or with what became of it.
struct Fault {
    enum class Kind { Error, Warning, Note };

    Kind kind = Kind::Error;
    QString text;
    qint64 line = 0;   ///< in the source, from 1; 0 for the whole file
    qint64 column = 0; ///< in characters, from 1; 0 if it is not known
};

/// All of them, the reason of a failure first. A file that was not run has none.
[[nodiscard]] std::vector<Fault> faultsOf(const ResultRow &row);

} // namespace brevant
