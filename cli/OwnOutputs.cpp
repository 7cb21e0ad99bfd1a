// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OwnOutputs.h"

#include "cli/ChangedPaths.h"
#include "files/Folders.h"
#include "files/RawBytes.h"

#include <algorithm>

#include <sys/stat.h>

namespace brevant {

namespace {

bool isThere(const QByteArray &path)
{
    struct stat status {};
    return ::lstat(path.constData(), &status) == 0;
}

} // namespace

void OwnOutputs::add(const QString &file, const QString &source)
{
    QByteArray path = RawBytes::encoded(file);
    QByteArray sourcePath = RawBytes::encoded(source);
    path.squeeze(); // made with room for the longest encoding
    sourcePath.squeeze();
    if (const auto state = FileState::of(file))
        m_files.insert(path, {sourcePath, *state});
}

bool OwnOutputs::hold(const QString &file) const
{
    const auto own = m_files.constFind(RawBytes::encoded(file));
    return own != m_files.constEnd() && FileState::of(file) == own->state;
}

bool OwnOutputs::hold(const QString &file, const QString &source) const
{
    return hold(file) && m_files.value(RawBytes::encoded(file)).source == RawBytes::encoded(source);
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
        const QString source = RawBytes::decoded(own.value().source);
        if (!changed.hold(source) || isThere(own.value().source))
            return false;
        const QString file = RawBytes::decoded(own.key());
        if (FileState::of(file) == own.value().state)
            orphans.push_back({file, source});
        return true;
    });
    return orphans;
}

} // namespace brevant
