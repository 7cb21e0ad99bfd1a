// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace brevant {

/// One of several parts of a list of files that machines share among themselves.
struct Shard {
    int number = 1; ///< from 1
    int count = 1;
};

/// Reads "K/N", with K from 1 to N. False if it is something else.
[[nodiscard]] bool readShard(const QString &text, Shard &shard);

/// The files of that part, in their order. Each file is in exactly one part, and the parts are about as large
/// in bytes as each other. Which part that is depends on sizes and paths alone and not on the order; paths
/// below `folder` count from there, so that it may lie elsewhere on each machine.
[[nodiscard]] std::vector<QString> filesOfShard(const std::vector<QString> &files, const Shard &shard,
                                                const QString &folder);

} // namespace brevant
