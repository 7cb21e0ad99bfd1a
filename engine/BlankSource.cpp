// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/BlankSource.h"

#include "files/FileBytes.h"
#include "queue/FileKind.h"

#include <QFile>

#include <optional>

namespace brevant {

namespace {

/// How a comment begins and ends.
struct Comment {
    QByteArrayView opening;
    QByteArrayView closing;
};

/// The comments of a language whose compressor may leave nothing of a file; nothing for one that never does.
std::optional<Comment> commentsOf(KindFamily family)
{
    switch (family) {
    case KindFamily::StyleSheet:
        return Comment{"/*", "*/"};
    case KindFamily::Script:
        return std::nullopt;
    case KindFamily::Markup:
        return Comment{"<!--", "-->"};
    }
    Q_UNREACHABLE();
}

constexpr QByteArrayView htmlCondition("<!--["); // no comment to the compressor, which keeps it

} // namespace

bool isBlankSource(const QString &source)
{
    const FileKind *const kind = kindOf(source);
    const std::optional<Comment> comment = kind ? commentsOf(kind->family) : std::nullopt;
    const auto text = comment ? FileBytes::readAll(QFile::encodeName(source)) : std::nullopt;
    if (!text)
        return false;
    QByteArrayView rest = QByteArrayView(*text).trimmed();
    while (rest.startsWith(comment->opening) && !rest.startsWith(htmlCondition)) {
        const qsizetype end = rest.indexOf(comment->closing, comment->opening.size());
        rest = end < 0 ? QByteArrayView() : rest.sliced(end + comment->closing.size()).trimmed();
    }
    return rest.isEmpty();
}

} // namespace brevant
