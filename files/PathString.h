// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

/// Cuts and joins paths as texts: nothing is normalised, no "~" is expanded unless asked for, the disk is
/// never asked. A "/" at the end is not part of the last component. A name that begins with "." and has no
/// other "." has no extension.
namespace brevant::PathString {

/// "/w/site.min.css" and "/w/site.min.css/" give "site.min.css"; "/" gives "/".
[[nodiscard]] QStringView lastComponent(QStringView path);

/// What follows the last "." of the last component, without the dot; empty if there is none.
[[nodiscard]] QStringView extension(QStringView path);

/// Whether two extensions are the same, ignoring the case of A to Z only.
[[nodiscard]] bool isSameExtension(QStringView one, QStringView other);

/// Whether `wanted` is its extension, ignoring the case of A to Z only.
[[nodiscard]] bool hasExtension(QStringView path, QStringView wanted);

/// The path without its extension and the dot before it: "/w/site.min.css" gives "/w/site.min".
[[nodiscard]] QStringView stem(QStringView path);

/// The path without its last component: "/w/a.css" gives "/w", "/a.css" gives "/", "a.css" gives "".
[[nodiscard]] QStringView folder(QStringView path);

/// Both with exactly one separator in between.
[[nodiscard]] QString join(QStringView folder, QStringView name);

/// The path with "." and the extension appended: "/w/a.css" and "gz" give "/w/a.css.gz".
[[nodiscard]] QString withExtension(QStringView path, QStringView extension);

/// The path as it is if it begins at the root; else joined to the working folder, without "." at its start.
[[nodiscard]] QString absolute(const QString &path);

/// The home folder of the user: `$HOME`, or where that is unset or relative what the list of users says;
/// "/" if neither tells.
[[nodiscard]] QString home();

/// The path with a leading "~" or "~name" replaced by the home folder of the user, or of the user of that
/// name; unchanged if there is no such user.
[[nodiscard]] QString expandTilde(const QString &path);

/// The path with "~" for the home folder of the user, where it is that folder or below it.
[[nodiscard]] QString withTilde(const QString &path);

/// The text of a name or path from the system. Unlike QFile::decodeName it keeps U+FEFF at the beginning,
/// which that takes for a byte-order mark.
[[nodiscard]] QString decoded(const QByteArray &name);

} // namespace brevant::PathString
