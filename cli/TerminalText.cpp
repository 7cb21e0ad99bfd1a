// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalText.h"

#include "files/RawBytes.h"

#include <QLocale>

#include <QTime>

#include <algorithm>
#include <array>
#include <cmath>
#include <cwchar>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant::TerminalText {

namespace {

bool isSafeInShell(QChar character)
{
    const char16_t code = character.unicode();
    return code < 0x80 && (character.isLetterOrNumber() || QStringView(u"_@%+=:,./-").contains(character));
}

int columnsOf(char32_t character)
{
    return std::max(0, ::wcwidth(static_cast<wchar_t>(character)));
}

/// In the shell's $'…', with characters that are not printable as octal escapes of their UTF-8.
QString quotedWithEscapes(const QString &argument)
{
    QString quoted;
    for (const QChar character : argument) {
        if (character == u'\'' || character == u'\\')
            quoted += u'\\';
        if (isPrintable(character)) {
            quoted += character;
            continue;
        }
        for (const char byte : QString(character).toUtf8())
            quoted += QString::asprintf("\\%03o", static_cast<unsigned char>(byte));
    }
    return u"$'%1'"_s.arg(quoted);
}

} // namespace

QString shellQuoted(const QString &argument)
{
    if (!std::ranges::all_of(argument, isPrintable))
        return quotedWithEscapes(argument);
    if (!argument.isEmpty() && std::ranges::all_of(argument, isSafeInShell))
        return argument;
    QString quoted = argument;
    quoted.replace(u'\'', u"'\\''"_s);
    return u'\'' + quoted + u'\'';
}

QString commandLine(const QString &program, const QStringList &arguments)
{
    QString line = shellQuoted(program);
    for (const QString &argument : arguments)
        line += u' ' + shellQuoted(argument);
    return line;
}

QString grouped(qint64 number)
{
    return QLocale(QLocale::English).toString(number);
}

QString countedFiles(qint64 count)
{
    return count == 1 ? u"1 file"_s : grouped(count) + u" files"_s;
}

QString duration(double seconds)
{
    const auto whole = static_cast<long long>(std::ceil(seconds));
    if (whole < 3600)
        return QString::asprintf("%lld:%02lld", whole / 60, whole % 60);
    return QString::asprintf("%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
}

QString fitted(const QString &text, int columns)
{
    QString kept;
    int used = 0;
    for (const char32_t character : text.toUcs4()) {
        used += columnsOf(character);
        if (used > columns)
            break;
        kept += QString::fromUcs4(&character, 1);
    }
    return kept;
}

int width(const QString &text)
{
    int columns = 0;
    for (const char32_t character : text.toUcs4())
        columns += columnsOf(character);
    return columns;
}

QString progressLine(const Progress &progress, int columns)
{
    constexpr int barWidth = 20;
    constexpr int leastOfName = 12; // columns
    const QString gap = u"  "_s;
    const int filled = barWidth * progress.done / progress.total;
    const QString count = u"%1/%2"_s.arg(progress.done).arg(progress.total);
    const QString bar = u"[%1%2] "_s.arg(QString(filled, u'#'), QString(barWidth - filled, u'-'));
    const QString left = progress.left.isEmpty() ? QString() : gap + progress.left;

    const std::array<std::pair<QString, QString>, 4> choices{{{bar + count + gap + progress.status, left},
                                                              {bar + count, left},
                                                              {count, left},
                                                              {count, QString()}}};
    const int nameWidth = width(progress.name);
    QString line;
    for (const auto &[before, after] : choices) {
        const int room = columns - width(before + gap + after);
        const QString name =
            nameWidth <= room ? progress.name : fitted(progress.name, room - 1) + QChar(u'…');
        line = before + gap + name + after;
        if (room >= std::min(nameWidth, leastOfName))
            break;
    }
    return fitted(line, columns);
}

bool print(std::FILE *stream, const QString &text)
{
    return print(stream, text.toUtf8());
}

bool print(std::FILE *stream, const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

void printNow(const QString &text)
{
    print(stdout, u"%1 %2\n"_s.arg(QTime::currentTime().toString(u"HH:mm:ss"), printable(text)));
}

void printError(const QString &text)
{
    print(stderr, u"brevant-cli: %1\n"_s.arg(printable(text)));
}

} // namespace brevant::TerminalText
