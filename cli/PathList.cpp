// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PathList.h"

#include "cli/CommandLine.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/RawBytes.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

QString addPathsFromFile(CommandLine &line)
{
    if (line.filesFrom.isEmpty())
        return {};
    Descriptor list; // which may be a pipe
    if (line.filesFrom != u"-")
        list = Descriptor(::open(RawBytes::encoded(line.filesFrom).constData(), O_RDONLY | O_CLOEXEC));
    constexpr qint64 mostBytes = 100'000'000; // it may never end
    const std::optional<QByteArray> bytes =
        list.isOpen() || line.filesFrom == u"-"
            ? FileBytes::readStream(list.isOpen() ? list.number() : STDIN_FILENO, mostBytes)
            : std::nullopt;
    if (!bytes && errno == EFBIG)
        return u"--files-from: %1 is longer than 100 MB; name folders, or divide it"_s.arg(line.filesFrom);
    if (!bytes)
        return u"--files-from: %1 cannot be read: %2"_s.arg(line.filesFrom, qt_error_string(errno));
    if (!line.nulls && bytes->contains('\0'))
        return u"--files-from: %1 holds zero bytes; add -0"_s.arg(line.filesFrom);
    const qsizetype named = line.paths.size();
    for (const QByteArray &path : bytes->split(line.nulls ? '\0' : '\n')) {
        if (!path.isEmpty())
            line.paths.append(RawBytes::decoded(path));
    }
    line.listed = line.paths.size() - named;
    return {};
}

} // namespace brevant
