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

/// The four steps, in their order, that leave `output` as it is and its compressed copy beside it, by way of
/// a temporary copy. Without an output path each list ends where that is missing.
///
/// gzip -S SUFFIX takes off just SUFFIX (gzip(1)); given without a dot, it leaves the dot, which mv takes
/// off.
[[nodiscard]] std::array<GzipStep, 4> gzipSteps(const std::optional<QString> &output);

/// Runs the steps one after the other, whatever becomes of each; none is begun after a stop at once.
void makeGzipCopy(const std::optional<QString> &output, const std::atomic<Stop> &stop);

} // namespace brevant
