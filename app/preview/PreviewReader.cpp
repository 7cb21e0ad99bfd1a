// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewReader.h"

#include "app/preview/PreviewPages.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/SizeText.h"
#include "settings/Encodings.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

#include <sys/stat.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 countedLimit = 16 * previewLimit; ///< no more is read to count the lines
constexpr qsizetype blockSize = qsizetype(64) * 1024;

/// Notes why there is nothing to read.
void fail(PreviewContent &content, int error)
{
    content.state = error == ENOENT || error == ENOTDIR ? PreviewContent::State::Missing
                                                        : PreviewContent::State::Unreadable;
    content.reason = QString::fromStdString(std::generic_category().message(error));
}

/// Counts lines that end in a line feed, a carriage return or both.
class LineCount final {
public:
    void add(QByteArrayView bytes)
    {
        for (const char byte : bytes) {
            if (byte == '\r' || (byte == '\n' && m_last != '\r'))
                ++m_ends;
            m_last = byte;
        }
    }
    [[nodiscard]] qint64 lines() const { return m_ends + (m_last == '\n' || m_last == '\r' ? 0 : 1); }

private:
    qint64 m_ends = 0;
    char m_last = '\n';
};

/// Each invalid sequence becomes one U+FFFD. A shift followed at once by another one carries no text and is
/// allowed.
void replaceInvalid(const void *context, UConverterToUnicodeArgs *arguments, const char *, int32_t,
                    UConverterCallbackReason reason, UErrorCode *status)
{
    constexpr char16_t replacement = 0xFFFD;
    if (reason > UCNV_IRREGULAR)
        return;
    *status = U_ZERO_ERROR;
    if (reason == UCNV_IRREGULAR)
        return;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
    *const_cast<bool *>(static_cast<const bool *>(context)) = true;
}

/// `complete` tells that the text ends with the bytes.
QString decode(QByteArrayView bytes, const QString &encoding, bool complete, bool &hasInvalidBytes)
{
    UErrorCode status = U_ZERO_ERROR;
    UConverter *const opened = ucnv_open(encoding.toLatin1().constData(), &status);
    if (U_FAILURE(status))
        qFatal("The table of %s is missing: %s", qPrintable(encoding), u_errorName(status));
    const std::unique_ptr<UConverter, void (*)(UConverter *)> converter(opened, ucnv_close);
    ucnv_setToUCallBack(opened, replaceInvalid, &hasInvalidBytes, nullptr, nullptr, &status);

    QString text;
    const char *source = bytes.data();
    const char *const sourceEnd = source + bytes.size();
    std::array<char16_t, 8192> units;
    do {
        status = U_ZERO_ERROR;
        char16_t *end = units.data();
        ucnv_toUnicode(opened, &end, units.data() + units.size(), &source, sourceEnd, nullptr,
                       static_cast<UBool>(complete), &status);
        text.append(QStringView(units.data(), end));
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    if (text.startsWith(QChar::ByteOrderMark))
        text.remove(0, 1);
    return text;
}

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r';
}

int columnsOf(QChar character)
{
    // Halves of one character, and the wide ones of the Far East.
    return character.isLowSurrogate() ? 0 : character.unicode() >= 0x1100 ? 2 : 1;
}

/// Where a line whose beginning is `line` is best folded.
qsizetype foldOf(QStringView line)
{
    constexpr int searched = previewFoldedLine / 2;
    qsizetype limit = 0;
    for (int columns = 0; limit < line.size(); ++limit) {
        columns += columnsOf(line[limit]);
        if (columns > previewFoldedLine)
            break;
    }
    constexpr QStringView good = u"};>, ";
    for (const QChar wanted : good) {
        const qsizetype found = line.first(limit).lastIndexOf(wanted);
        if (found >= std::max<qsizetype>(0, limit - searched))
            return found + 1;
    }
    return limit;
}

bool isRightToLeft(QChar character)
{
    return character.direction() == QChar::DirR || character.direction() == QChar::DirAL;
}

/// Whether right-to-left words on both sides of it belong to one text.
bool joinsWords(QChar character)
{
    return character.isDigit() || character.isMark() || QStringView(u" ,.:!?-").contains(character);
}

/// Adds the text of one line, or a part of it. The editor takes the end of the last character for the width
/// of a piece of text, but that of right-to-left text is at its left. Between two marks, which have no width,
/// such text gets its full width.
void addMarked(PreviewContent &content, QStringView line)
{
    const auto mark = [&content] {
        content.marks.push_back(content.text.size());
        content.text += leftToRightMark;
    };
    while (!line.isEmpty()) {
        const auto *const begin = std::ranges::find_if(line, isRightToLeft);
        content.text += line.first(begin - line.begin()).toUtf8();
        line = line.sliced(begin - line.begin());
        if (line.isEmpty())
            return;
        qsizetype length = 1;
        for (qsizetype i = 1; i < line.size() && (isRightToLeft(line[i]) || joinsWords(line[i])); ++i) {
            if (isRightToLeft(line[i]) || line[i].isMark())
                length = i + 1;
        }
        mark();
        content.text += line.first(length).toUtf8();
        mark();
        line = line.sliced(length);
    }
}

/// Puts `text` into the content, its long lines folded.
void setText(PreviewContent &content, QStringView text)
{
    content.text.reserve(text.size() + text.size() / 16);
    while (!text.isEmpty()) {
        const auto *const found = std::find_if(text.begin(), text.end(), isLineEnd);
        qsizetype length = found - text.begin();
        const bool mixed = std::any_of(text.begin(), found, isRightToLeft);
        if (length > (mixed ? previewLongestMixedLine : previewLongestLine)) {
            while (length > previewFoldedLine) {
                const qsizetype fold = foldOf(text.first(length));
                if (fold == length)
                    break;
                addMarked(content, text.first(fold));
                content.folds.push_back(content.text.size());
                content.text += '\n';
                text = text.sliced(fold);
                length -= fold;
            }
        }
        const qsizetype withEnd = std::min(length + 1, text.size());
        addMarked(content, text.first(withEnd));
        text = text.sliced(withEnd);
    }
}

void setBeginning(PreviewContent &content, QByteArrayView beginning, bool complete)
{
    if (beginning.isEmpty()) {
        content.state = PreviewContent::State::Empty;
    } else if (beginning.contains('\0')) {
        content.state = PreviewContent::State::Binary;
    } else {
        content.state = PreviewContent::State::Text;
        content.shown = beginning.size();
        setText(content, decode(beginning, content.encoding, complete, content.hasInvalidBytes));
    }
}

/// False if it was cancelled.
bool readText(int file, PreviewContent &content, const std::function<bool()> &cancelled)
{
    QByteArray beginning;
    LineCount count;
    qint64 total = 0;
    while (total < countedLimit) {
        if (cancelled())
            return false;
        const std::optional<QByteArray> block = FileBytes::read(file, blockSize, total);
        if (!block) {
            fail(content, errno);
            return true;
        }
        if (block->isEmpty())
            break;
        count.add(*block);
        beginning += block->first(std::min(block->size(), previewLimit - beginning.size()));
        total += block->size();
    }
    content.size = std::max(content.size, total);
    if (total < countedLimit)
        content.lines = count.lines();
    setBeginning(content, beginning, beginning.size() == total);
    return !cancelled();
}

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Preview)
};

QString linesText(qint64 lines)
{
    return lines == 1 ? Words::tr("1 line") : Words::tr("%1 lines").arg(QLocale().toString(lines));
}

} // namespace

std::optional<PreviewContent> readPreview(const QString &path, const QString &encoding,
                                          const std::function<bool()> &cancelled)
{
    PreviewContent content;
    content.path = path;
    content.encoding = isEncodingName(encoding) ? encoding : u"utf-8"_s;
    const QByteArray name = QFile::encodeName(path);
    const Descriptor file = openRegularFile(name);
    const int error = errno;
    struct stat status {};
    if ((file.isOpen() ? ::fstat(file.number(), &status) : ::stat(name.constData(), &status)) != 0) {
        fail(content, errno);
        return content;
    }
    content.size = status.st_size;
    content.modified = QDateTime::fromSecsSinceEpoch(status.st_mtime);
    if (S_ISDIR(status.st_mode))
        content.state = PreviewContent::State::Folder;
    else if (!S_ISREG(status.st_mode))
        content.state = PreviewContent::State::Special;
    else if (!file.isOpen())
        fail(content, error);
    else if (!readText(file.number(), content, cancelled))
        return std::nullopt;
    return content;
}

QString previewSentence(const PreviewContent &content)
{
    using State = PreviewContent::State;
    switch (content.state) {
    case State::Text:
        break;
    case State::Empty:
        return Words::tr("This file is empty.");
    case State::Missing:
        return Words::tr("This file does not exist.");
    case State::Unreadable:
        return Words::tr("This file cannot be read: %1.").arg(content.reason);
    case State::Folder:
        return Words::tr("This is a folder.");
    case State::Special:
        return Words::tr("This is not an ordinary file, so it is not opened.");
    case State::Binary:
        return Words::tr("This file is not text.");
    }
    return {};
}

QString previewNotice(const PreviewContent &content)
{
    if (content.state != PreviewContent::State::Text)
        return {};
    QStringList sentences;
    if (content.shown < content.size)
        sentences +=
            Words::tr("Showing the first %1 of %2.").arg(sizeText(content.shown), sizeText(content.size));
    if (content.hasInvalidBytes)
        sentences += Words::tr("Bytes that are not valid in %1 are shown as %2.")
                         .arg(content.encoding, QChar(QChar::ReplacementCharacter));
    if (!content.folds.empty())
        sentences += Words::tr("Long lines are folded.");
    return sentences.join(u' ');
}

QString previewFooter(const PreviewContent &content)
{
    using State = PreviewContent::State;
    QStringList parts;
    if (content.state == State::Text || content.state == State::Empty || content.state == State::Binary)
        parts += sizesText(content);
    if (content.state == State::Text) {
        if (content.lines)
            parts += linesText(*content.lines);
        parts += content.encoding;
    }
    if (content.modified.isValid())
        parts += Words::tr("Modified %1").arg(QLocale().toString(content.modified, QLocale::ShortFormat));
    return parts.join(u"  ·  "_s);
}

} // namespace brevant
