// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TextFile.h"

#include <QFile>
#include <QScopeGuard>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevant {

namespace {

constexpr qsizetype bufferSize = 256 * qsizetype(1024);
constexpr QByteArrayView byteOrderMarkBytes("\xEF\xBB\xBF");

/// Opens a regular file for reading, or tells why not. Nothing else is opened: a pipe would wait for a
/// writer, and a device may act on being opened.
int openRegularFile(const QString &path, QString &reason)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    if (::stat(name.constData(), &status) != 0) {
        reason = qt_error_string(errno);
        return -1;
    }
    int descriptor = -1;
    if (S_ISREG(status.st_mode)) {
        // What was a file a moment ago may be a pipe by now, hence O_NONBLOCK and the second look.
        descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
        if (descriptor < 0) {
            reason = qt_error_string(errno);
            return -1;
        }
        if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
            return descriptor;
        ::close(descriptor);
    }
    reason = QStringLiteral("Not a regular file");
    return -1;
}

/// Fills `buffer` from `offset` on, as far as the file goes. Returns the size of its content, or -1.
qsizetype fill(int descriptor, QByteArray &buffer, qsizetype offset)
{
    while (offset < buffer.size()) {
        const ssize_t size =
            ::read(descriptor, buffer.data() + offset, static_cast<std::size_t>(buffer.size() - offset));
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            return -1;
        if (size == 0)
            break;
        offset += size;
    }
    return offset;
}

} // namespace

QString TextFileError::message() const
{
    QString line = QStringLiteral("%1: byte %2: %3").arg(path, QString::number(position), reason);
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control)
            character = u'?';
    }
    return line;
}

TextFile::TextFile(const QString &path, TextEncoding encoding)
    : m_file(path), m_encoding(encoding), m_decoder(encoding), m_encoder(encoding),
      m_input(bufferSize, Qt::Uninitialized)
{
}

void TextFile::append(QStringView text)
{
    encode(text, false);
}

std::optional<TextFileError> TextFile::appendFile(const QString &path)
{
    QString reason;
    const int descriptor = openRegularFile(path, reason);
    if (descriptor < 0)
        return TextFileError{path, 0, reason};
    const auto closing = qScopeGuard([descriptor] { ::close(descriptor); });
    return m_encoding == TextEncoding::Utf8 ? appendUtf8(path, descriptor) : appendDecoded(path, descriptor);
}

/// UTF-8 stays as it is and is only checked.
std::optional<TextFileError> TextFile::appendUtf8(const QString &path, int descriptor)
{
    qint64 position = 0; // of the first byte of m_input
    qsizetype kept = 0;  // the beginning of a character that the buffer's end has cut
    for (;;) {
        const qsizetype size = fill(descriptor, m_input, kept);
        if (size < 0)
            return TextFileError{path, position + kept, qt_error_string(errno)};
        const bool last = size < m_input.size();
        const QByteArrayView bytes = QByteArrayView(m_input).first(size);
        const Utf8Prefix good = validUtf8Prefix(bytes);
        if (good.size < size && (last || !good.unfinished)) {
            return TextFileError{
                path, position + good.size,
                faultReason(good.unfinished ? TextFault::Kind::Truncated : TextFault::Kind::Invalid)};
        }
        const bool marked = position == 0 && bytes.startsWith(byteOrderMarkBytes);
        m_output.append(bytes.first(good.size).sliced(marked ? byteOrderMarkBytes.size() : 0));
        flush();
        if (last)
            return std::nullopt;
        kept = size - good.size;
        position += good.size;
        std::memmove(m_input.data(), m_input.constData() + good.size, static_cast<std::size_t>(kept));
    }
}

std::optional<TextFileError> TextFile::appendDecoded(const QString &path, int descriptor)
{
    qsizetype size = 0;
    for (;;) {
        size = fill(descriptor, m_input, size);
        if (size < 0)
            return TextFileError{path, 0, qt_error_string(errno)};
        if (size < m_input.size())
            break;
        m_input.resize(2 * m_input.size());
    }
    m_decoder.begin(QByteArrayView(m_input).first(size));
    while (const auto text = m_decoder.next())
        encode(*text, false);
    if (const auto &fault = m_decoder.fault())
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
    return (kind == TextFault::Kind::Truncated
                ? QStringLiteral("The text ends in the middle of a %1 character")
                : QStringLiteral("Not valid %1"))
        .arg(nameOf(m_encoding));
}

void TextFile::encode(QStringView text, bool last)
{
    if (!m_failure.isEmpty())
        return;
    if (!m_encoder.encode(text, last, m_output))
        m_failure = QStringLiteral("The text has a character that is not in %1").arg(nameOf(m_encoding));
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
