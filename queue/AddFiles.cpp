// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/AddFiles.h"

#include "files/PathString.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "queue/FolderWalk.h"

namespace brevant {

void addTopLevelPath(const QString &path, FileQueue &queue, const SettingsStore &settings)
{
    walkFolder(path, [&](const QString &relativePath) {
        if (isAccepted(relativePath, settings))
            queue.append(PathString::join(path, relativePath));
    });
    if (isAccepted(path, settings))
        queue.append(path);
}

} // namespace brevant
