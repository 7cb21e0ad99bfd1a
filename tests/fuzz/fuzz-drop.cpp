// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The bytes are the list of addresses of a drop. Each path in it goes through the rules of paths and kinds.
#include "app/platform/Workspace.h"
#include "files/PathString.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "tests/fuzz/Fuzzing.h"

#include <QFile>
#include <QMimeData>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QMimeData drop;
    drop.setData(u"text/uri-list"_s, bytesOf(data, size).toByteArray());
    FileQueue queue;
    for (const QUrl &url : drop.urls()) {
        const std::optional<QString> path = localPath(url);
        if (!path)
            continue;
        require(!path->isEmpty(), "a path is not empty");
        queue.append(*path);
        require(queue.indexOf(*path) >= 0, "what was added is found");
        static_cast<void>(kindOf(*path));
        const qsizetype lengths = PathString::stem(*path).size() + PathString::extension(*path).size();
        require(lengths <= path->size(), "the parts are not longer than the path");
        // A path that the system can take comes back from its address.
        const bool isWhole = QFile::decodeName(QFile::encodeName(*path)) == *path;
        if (isWhole && path->startsWith(u'/'))
            require(localPath(fileUrl(*path)) == *path, "a path comes back from its address");
    }
    return 0;
}
