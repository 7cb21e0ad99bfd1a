// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <vector>

namespace brevant {

class SettingsStore;

/// What all kinds of one language have in common: colour, highlighting, compressor.
enum class KindFamily { StyleSheet, Script, Markup };

/// One kind of files that can be minified, told apart by extension alone.
struct FileKind {
    QStringView extension; ///< in lower case and without a dot
    KindFamily family;
    QLatin1StringView mediaType;
    QLatin1StringView name;      ///< what people call it
    QLatin1StringView switchKey; ///< the setting that accepts it; empty if it is always accepted
    bool isExtra = false;        ///< accepted by no setting, only where it is asked for by its extension

    [[nodiscard]] bool isSwitchedOn(const SettingsStore &settings) const;
};

/// All kinds, in the order in which they are shown; at the end the extra ones, which no window shows.
[[nodiscard]] std::span<const FileKind> allFileKinds();

/// The kind of `path` by its extension, the case of A to Z ignored; null if it is none, or an extra one.
[[nodiscard]] const FileKind *kindOf(QStringView path);

/// Likewise, for the modern compressors, which know the extra ones too.
[[nodiscard]] const FileKind *anyKindOf(QStringView path);

/// Whether the application takes `path` into its queue: its kind is switched on, or is an extra one among
/// `also`, and it is not a file named .min while those are skipped. Never looks at the disk, and reads the
/// settings anew at each call.
[[nodiscard]] bool isAccepted(QStringView path, const SettingsStore &settings, const QStringList &also = {});

/// What isAccepted() says by the settings of one moment, for many paths.
class AcceptedKinds final {
public:
    explicit AcceptedKinds(const SettingsStore &settings, const QStringList &also = {});

    [[nodiscard]] bool accept(QStringView path) const;

private:
    std::vector<const FileKind *> m_kinds;
    bool m_skipsMinified = false;
};

} // namespace brevant
