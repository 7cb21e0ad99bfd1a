// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/ResultCheck.h"
#include "settings/EntrySettings.h"

#include <QHash>

namespace brevant {

struct EntryResult;

/// Checks the results of the classic compressors as the files of a run end. One call at a time.
class ResultChecks final {
public:
    explicit ResultChecks(const EntrySettings &settings) : m_settings(settings) {}

    /// To be called before work on an entry begins: a source that is to be replaced is read now.
    void entryTaken(const QString &entry, const std::optional<QString> &output);

    /// Nothing for a file that was not minified, or by a modern compressor.
    [[nodiscard]] std::optional<CheckedFile> entryEnded(const EntryResult &result);

private:
    const EntrySettings m_settings;
    /// The entries that classic compressors work on; with the content of sources to be replaced.
    QHash<QString, std::optional<QByteArray>> m_taken;
};

} // namespace brevant
