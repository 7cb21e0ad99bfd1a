// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TextFile.h"

#include "files/FileBytes.h"

#include <QFile>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype bufferSize = 256 * qsizetype(1024);
constexpr QByteArrayView byteOrderMarkBytes("\xEF\xBB\xBF");

} // namespace

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
    : m_file(path), m_encoding(encoding), m_decoder(encoding), m_encoder(encoding)
{
}

void TextFile::append(QStringView text)
{
    encode(text, false);
}

std::optional<TextFileError> TextFile::appendFile(const QString &path)
{
    const Descriptor file = openRegularFile(QFile::encodeName(path));
    if (!file.isOpen())
        return TextFileError{path, 0, errno == EINVAL ? u"Not a regular file"_s : qt_error_string(errno)};
    return m_encoding == TextEncoding::Utf8 ? appendUtf8(path, file.number())
                                            : appendDecoded(path, file.number());
}

/// UTF-8 is only checked and copied.
std::optional<TextFileError> TextFile::appendUtf8(const QString &path, int file)
{
    for (qint64 position = 0;;) {
        const std::optional<QByteArray> bytes = FileBytes::read(file, bufferSize, position);
        if (!bytes)
            return TextFileError{path, position, qt_error_string(errno)};
        const bool last = bytes->size() < bufferSize;
        const Utf8Prefix good = validUtf8Prefix(*bytes);
        if (good.size < bytes->size() && (last || !good.unfinished)) {
            return TextFileError{
                path, position + good.size,
                faultReason(good.unfinished ? TextFault::Kind::Truncated : TextFault::Kind::Invalid)};
        }
        const bool marked = position == 0 && bytes->startsWith(byteOrderMarkBytes);
        m_output.append(
            QByteArrayView(*bytes).first(good.size).sliced(marked ? byteOrderMarkBytes.size() : 0));
        flush();
        if (last)
            return std::nullopt;
        position += good.size; // a character that was cut off is read again
    }
}

std::optional<TextFileError> TextFile::appendDecoded(const QString &path, int file)
{
    const std::optional<QByteArray> bytes = FileBytes::readAll(file);
    if (!bytes)
        return TextFileError{path, 0, qt_error_string(errno)};
    const auto fault = m_decoder.decode(*bytes, [this](QStringView text) { encode(text, false); });
    if (fault)
        return TextFileError{path, fault->position, faultReason(fault->kind)};
    return std::nullopt;
}

QString TextFile::commit()
{
    encode({}, true);
    if (m_failure.isEmpty() && !(m_file.write(m_output) && m_file.commit()))
        m_failure = m_file.errorText();
    return m_failure;
}

QString TextFile::faultReason(TextFault::Kind kind) const
{
    return (kind == TextFault::Kind::Truncated ? u"The text ends in the middle of a %1 character"_s
                                               : u"Not valid %1"_s)
        .arg(nameOf(m_encoding));
}

void TextFile::encode(QStringView text, bool last)
{
    if (!m_failure.isEmpty())
        return;
    if (!m_encoder.encode(text, last, m_output))
        m_failure = u"The text has a character that is not in %1"_s.arg(nameOf(m_encoding));
    flush();
}

void TextFile::flush()
{
    if (m_output.size() < bufferSize)
        return;
    if (m_failure.isEmpty() && !m_file.write(m_output))
        m_failure = m_file.errorText();
    m_output.resize(0);
}

} // namespace brevant
