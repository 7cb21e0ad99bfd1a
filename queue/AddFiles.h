// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace brevant {

class FileQueue;
class SettingsStore;

/// Adds one path that was dropped, chosen, opened or typed.
///
/// If it is a folder, every accepted entry below it, at any depth, hidden ones included, in the order the
/// file system gives; folders are tested by their names like files, and symbolic links to folders are tested
/// and not followed. Then the path itself, if it is accepted. What cannot be read or vanishes is passed over.
void addTopLevelPath(const QString &path, FileQueue &queue, const SettingsStore &settings);

} // namespace brevant
