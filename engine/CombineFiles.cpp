// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"

#include "files/FileBytes.h"
#include "files/PathString.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView mixedKinds("NO");
constexpr qsizetype bufferSize = 256 * qsizetype(1024);
constexpr QByteArrayView byteOrderMarkBytes("\xEF\xBB\xBF");

} // namespace

QString combineKind(const std::vector<QString> &entries)
{
    if (entries.empty())
        return mixedKinds;
    const QStringView first = PathString::extension(entries.front());
    const bool same = std::ranges::all_of(
        entries, [first](const QString &entry) { return PathString::hasExtension(entry, first); });
    return same ? first.toString() : QString(mixedKinds);
}

std::optional<CombineAlert> combineRefusal(const std::vector<QString> &entries)
{
    if (entries.size() < 2)
        return CombineAlert{u"Notice"_s, u"Please select 2 or more files to combine."_s};
    const QString kind = combineKind(entries);
    if (kind == mixedKinds) {
        return CombineAlert{u"Combine different kinds of files?"_s,
                            u"No, please select only one kind of files at a time."_s};
    }
    // Only these spellings are refused: unlike elsewhere, the case counts.
    for (const QLatin1StringView refused : {"html"_L1, "phtml"_L1, "php"_L1}) {
        if (kind == refused)
            return CombineAlert{
                u"Combine %1 files?"_s.arg(kind.toUpper()),
                u"Sorry, you can only combine CSS or JS files. Combine %1 files makes no scene."_s.arg(
                    kind.toUpper())};
    }
    return std::nullopt;
}

QString TextFileError::message() const
{
    QString line = u"%1: byte %2: %3"_s.arg(path, QString::number(position), reason);
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control)
            character = u'?';
    }
    return line;
}

TextFile::TextFile(const QString &path, TextEncoding encoding)
    : m_file(path), m_encoding(encoding), m_codec(encoding)
{
}

void TextFile::append(QStringView text)
{
    encode(text, false);
}

std::optional<TextFileError> TextFile::appendFile(const QString &path)
{
    const std::optional<QByteArray> bytes = FileBytes::readAll(QFile::encodeName(path));
    if (!bytes)
        return TextFileError{path, 0, errno == EINVAL ? u"Not a regular file"_s : qt_error_string(errno)};
    // Much faster than from character to character.
    if (m_encoding == TextEncoding::Utf8 && bytes->isValidUtf8()) {
        put(QByteArrayView(*bytes).sliced(bytes->startsWith(byteOrderMarkBytes) ? byteOrderMarkBytes.size()
                                                                                : 0));
        return std::nullopt;
    }
    const auto fault = m_codec.decode(*bytes, [this](QStringView text) { encode(text, false); });
    if (!fault)
        return std::nullopt;
    return TextFileError{path, fault->position,
                         (fault->kind == TextFault::Kind::Truncated
                              ? u"The text ends in the middle of a %1 character"_s
                              : u"Not valid %1"_s)
                             .arg(nameOf(m_encoding))};
}

QString TextFile::commit()
{
    encode({}, true);
    if (m_failure.isEmpty() && !(m_file.write(m_output) && m_file.commit()))
        m_failure = m_file.errorText();
    return m_failure;
}

void TextFile::encode(QStringView text, bool last)
{
    if (!m_failure.isEmpty())
        return;
    if (!m_codec.encode(text, last, m_output))
        m_failure = u"The text has a character that is not in %1"_s.arg(nameOf(m_encoding));
    put({});
}

/// Large bytes go to the file without being copied first.
void TextFile::put(QByteArrayView bytes)
{
    if (m_output.size() + bytes.size() < bufferSize) {
        m_output.append(bytes);
        return;
    }
    for (const QByteArrayView part : {QByteArrayView(m_output), bytes}) {
        if (m_failure.isEmpty() && !m_file.write(part))
            m_failure = m_file.errorText();
    }
    m_output.resize(0);
}

CombineResult combine(const std::vector<QString> &paths, const QString &target, TextEncoding encoding)
{
    if (paths.empty() && QFileInfo::exists(target))
        return {CombineResult::Outcome::WriteFailed,
                u"%1: kept as it is, as no files were selected any more"_s.arg(target)};
    TextFile file(target, encoding);
    for (const QString &path : paths) {
        if (const auto error = file.appendFile(PathString::expandTilde(path)))
            return {CombineResult::Outcome::Aborted, error->message()};
        file.append(u"\n");
    }
    const QString failure = file.commit();
    if (failure.isEmpty())
        return {CombineResult::Outcome::Written, {}};
    return {CombineResult::Outcome::WriteFailed, u"%1: %2"_s.arg(target, failure)};
}

} // namespace brevant
