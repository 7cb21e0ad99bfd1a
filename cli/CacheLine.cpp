// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CacheLine.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <string_view>

namespace brevant::CacheLine {

namespace {

/// Between the name of an output and what is known of it, and between two parts of that.
constexpr QByteArrayView colon("\": [\"");
constexpr QByteArrayView comma("\", \"");
constexpr QByteArrayView closing("\"]");

/// A text as it stands between quotes in JSON, where it holds characters that are not to stand there.
QByteArray escaped(const QByteArray &utf8)
{
    const QJsonArray array{QString::fromUtf8(utf8)};
    return QJsonDocument(array).toJson(QJsonDocument::Compact).chopped(2).sliced(2);
}

bool isToBeEscaped(const QByteArray &text)
{
    unsigned char found = 0;
    for (const char byte : text)
        found |= static_cast<unsigned char>((static_cast<unsigned char>(byte) < ' ') | (byte == '"') |
                                            (byte == '\\'));
    return found != 0;
}

/// Much faster than QByteArrayView::indexOf() for what begins with a rare character; -1 if it is not there.
qsizetype find(QByteArrayView text, QByteArrayView what)
{
    const auto viewOf = [](QByteArrayView bytes) {
        return std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size()));
    };
    const std::size_t at = viewOf(text).find(viewOf(what));
    return at == std::string_view::npos ? -1 : static_cast<qsizetype>(at);
}

/// Reads the extension of a copy, if one stands before a file, off the beginning of a part.
QString takeExtension(QByteArrayView &part)
{
    for (const QByteArrayView known : {"gz ", "br ", "map "}) {
        if (part.startsWith(known)) {
            part = part.sliced(known.size());
            return QString::fromLatin1(known.chopped(1));
        }
    }
    return {};
}

} // namespace

QByteArray from(const QByteArray &name, QByteArrayView source, QByteArrayView recipe,
                const RecordedFiles &files)
{
    QByteArray line = QByteArray("\"").append(name).append(colon).append(source).append(comma).append(recipe);
    for (const auto &[extension, file] : files) {
        line.append(comma);
        if (!extension.isEmpty())
            line += extension.toLatin1() + ' ';
        line += file.text();
    }
    return line.append(closing);
}

QByteArray quoted(const QByteArray &path)
{
    return isToBeEscaped(path) ? escaped(path) : path;
}

QByteArrayView nameIn(QByteArrayView line)
{
    const qsizetype end = find(line, colon);
    return end > 0 && line.startsWith('"') ? line.sliced(1, end - 1) : QByteArrayView();
}

Parts::Parts(QByteArrayView line)
{
    if (const qsizetype start = find(line, colon); start >= 0 && line.endsWith(closing))
        m_rest = line.sliced(start + colon.size()).chopped(closing.size());
}

QByteArrayView Parts::next()
{
    const qsizetype end = find(m_rest, comma);
    const QByteArrayView part = end < 0 ? m_rest : m_rest.first(end);
    m_rest = end < 0 ? QByteArrayView() : m_rest.sliced(end + comma.size());
    return part;
}

std::optional<std::pair<QString, RecordedFile>> fileFrom(QByteArrayView part)
{
    const QString extension = takeExtension(part);
    std::optional<RecordedFile> file = RecordedFile::fromText(part);
    return file ? std::optional(std::pair(extension, *file)) : std::nullopt;
}

QByteArray pathOf(const QByteArray &output, const QString &extension)
{
    return extension.isEmpty() ? output : output + '.' + extension.toLatin1();
}

bool looksUnchanged(Parts parts, const QByteArray &source, const QByteArray &output)
{
    int count = 0;
    for (QByteArrayView part = parts.next(); !part.isNull(); part = parts.next(), ++count) {
        const QString extension = takeExtension(part);
        if (extension.isEmpty() != (count < 2) ||
            !RecordedFile::looksLikeText(part, count == 0 ? source : pathOf(output, extension)))
            return false;
    }
    return count >= 2;
}

} // namespace brevant::CacheLine
