// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

class SettingsStore;

/// What works in a run and where its outputs go, by the settings as they stand, in words.
class RunManner final {
public:
    explicit RunManner(const SettingsStore &settings);

    /// Of a run that begins: "Modern compressors, outputs beside the sources".
    [[nodiscard]] QString ofRun() const;

    /// Of one to come: "Modern compressors, into ~/dist, suffix .min, with gzip copies. Nothing has been
    /// written yet."
    [[nodiscard]] QString ofPlan() const;

    /// What Minify does: "Writes 9 minified copies beside their sources".
    [[nodiscard]] QString ofMinify(int count) const;

private:
    enum class Place { Beside, Source, Folder };

    [[nodiscard]] QString compressors() const;

    bool m_isModern;
    bool m_hasGzip;
    bool m_hasBrotli;
    QString m_suffix; ///< what the names of outputs get; empty if they are those of the sources
    QString m_folder; ///< as it is shown
    Place m_place;
};

} // namespace brevant
