// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

namespace brevant {

/// One child process of the gzip copy.
struct GzipStep {
    QString program;
    QStringList arguments;
    bool operator==(const GzipStep &) const = default;
};

/// The four steps that make a compressed copy of `output` and leave `output` itself as it was, by way of a
/// temporary copy. Without an output path each list ends where that would stand.
///
/// gzip -S SUFFIX (gzip(1)) removes just SUFFIX and leaves the dot before it, which is what mv is for.
[[nodiscard]] std::array<GzipStep, 4> gzipSteps(const std::optional<QString> &output);

/// Runs the steps one after the other, even if some fail; a stop at once ends the sequence.
void makeGzipCopy(const std::optional<QString> &output, const std::atomic<Stop> &stop);

} // namespace brevant
