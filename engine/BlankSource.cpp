// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/BlankSource.h"

#include "queue/FileKind.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cctype>
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

/// Reads on behind the next `text`, or to the end if there is none.
void skipPast(QIODevice &file, QByteArrayView text)
{
    QByteArray last;
    char sign = 0;
    while (last != text && file.getChar(&sign))
        last = last.last(std::min(last.size(), text.size() - 1)) + sign;
}

/// Reads to the first byte that is no white space; whether there is one.
bool skipWhiteSpace(QIODevice &file)
{
    char sign = 0;
    while (file.getChar(&sign)) {
        if (std::isspace(static_cast<unsigned char>(sign)) == 0) {
            file.ungetChar(sign);
            return true;
        }
    }
    return false;
}

} // namespace

bool isBlankSource(const QString &source)
{
    const FileKind *const kind = kindOf(source);
    const std::optional<Comment> comment = kind ? commentsOf(kind->family) : std::nullopt;
    QFile file(source);
    // A pipe is not even opened: that could wait for ever.
    if (!comment || !QFileInfo(source).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    while (skipWhiteSpace(file)) {
        const QByteArray next = file.peek(htmlCondition.size());
        if (!next.startsWith(comment->opening) || next == htmlCondition)
            return false;
        file.skip(comment->opening.size());
        skipPast(file, comment->closing);
    }
    return true;
}

} // namespace brevant
