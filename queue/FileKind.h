// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace brevant {

class SettingsStore;

/// The kinds of files that can be minified, told apart by extension alone.
enum class FileKind { Css, Js, Html, Phtml, Php };

/// The kind of `path` by its extension, the case of A to Z ignored; nothing if it is none of the five.
[[nodiscard]] std::optional<FileKind> kindOf(QStringView path);

/// The extension of a kind, in lower case and without a dot.
[[nodiscard]] QStringView extensionOf(FileKind kind);

/// Whether the application takes `path` into its queue: its kind is switched on, and it is not a file named
/// .min while those are skipped. Asks for no file, and reads the settings anew at each call.
[[nodiscard]] bool isAccepted(QStringView path, const SettingsStore &settings);

} // namespace brevant
