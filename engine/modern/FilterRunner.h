// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/modern/Filter.h"

#include <chrono>
#include <memory>
#include <optional>

class QProcess;

namespace brevant {

/// Runs one filter after another on one thread. Brevant's own esbuild is kept between texts: to start it
/// takes longer than to minify most of them.
class FilterRunner final {
public:
    /// A stop at once ends the filter.
    explicit FilterRunner(const std::atomic<Stop> &stop);
    ~FilterRunner();
    Q_DISABLE_COPY_MOVE(FilterRunner)

    /// From here on no filter works longer on a text than that; 0 for whatever run() says.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

    /// As runFilter() does it.
    [[nodiscard]] FilterRun run(const Filter &filter, const QByteArray &input,
                                std::chrono::milliseconds limit);

private:
    using Deadline = std::chrono::steady_clock::time_point;

    [[nodiscard]] bool keep(const Filter &filter);
    [[nodiscard]] std::optional<FilterRun> ask(const Filter &filter, const QByteArray &input,
                                               Deadline deadline);
    [[nodiscard]] std::optional<QByteArray> nextPacket(FilterRun &run, qsizetype inputSize,
                                                       Deadline deadline);
    void endKept();

    const std::atomic<Stop> &m_stop;
    std::chrono::milliseconds m_timeout{};
    std::unique_ptr<QProcess> m_kept; ///< null as long as none is needed
    bool m_canKeep = true;
};

} // namespace brevant
