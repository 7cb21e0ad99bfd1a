// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OwnOutputs.h"

#include "cli/ChangedPaths.h"
#include "files/Folders.h"
#include "files/RawBytes.h"

#include <algorithm>

namespace brevant {

void OwnOutputs::add(const QString &file, const QString &source)
{
    QByteArray path = RawBytes::encoded(file);
    QByteArray shortSource = RawBytes::encoded(source);
    if (folderOf(shortSource) == folderOf(path))
        shortSource.remove(0, shortSource.lastIndexOf('/') + 1);
    path.squeeze(); // made with room for the longest encoding
    shortSource.squeeze();
    if (const auto state = FileState::of(file))
        m_files.insert(path, {shortSource, *state});
}

/// The path of the source of that file.
QByteArray OwnOutputs::sourceOf(const QByteArray &file, const Own &own)
{
    return own.source.startsWith('/') ? own.source : file.first(file.lastIndexOf('/') + 1) + own.source;
}

bool OwnOutputs::hold(const QString &file) const
{
    const auto own = m_files.constFind(RawBytes::encoded(file));
    return own != m_files.constEnd() && FileState::of(file) == own->state;
}

bool OwnOutputs::hold(const QString &file, const QString &source) const
{
    const QByteArray path = RawBytes::encoded(file);
    return hold(file) && sourceOf(path, m_files.value(path)) == RawBytes::encoded(source);
}

std::vector<OwnOutputs::Orphan> OwnOutputs::takeOrphans(const ChangedPaths &changed)
{
    std::vector<Orphan> orphans;
    // Whatever is there and is no folder has no sources below it that could be gone.
    const auto mayHaveGone = [](const QString &path) {
        const QByteArray bytes = RawBytes::encoded(path);
        return !isThere(bytes) || leadsToFolder(bytes);
    };
    if (std::ranges::none_of(changed.paths(), mayHaveGone))
        return orphans;
    m_files.removeIf([&](const auto &own) {
        const QByteArray sourcePath = sourceOf(own.key(), own.value());
        const QString source = RawBytes::decoded(sourcePath);
        if (!changed.hold(source) || isThere(sourcePath))
            return false;
        const QString file = RawBytes::decoded(own.key());
        if (FileState::of(file) == own.value().state)
            orphans.push_back({file, source});
        return true;
    });
    return orphans;
}

} // namespace brevant
