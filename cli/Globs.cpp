// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Globs.h"

#include <QVarLengthArray>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr char separator = '/';

bool isWildcard(char character)
{
    return character == '*' || character == '?' || character == '[' || character == '\\';
}

std::size_t indexOf(char byte)
{
    return static_cast<unsigned char>(byte);
}

using Bytes = std::bitset<256>;

Bytes range(char first, char last)
{
    Bytes bytes;
    for (std::size_t byte = indexOf(first); byte <= indexOf(last); ++byte)
        bytes.set(byte);
    return bytes;
}

Bytes someOf(QByteArrayView members)
{
    Bytes bytes;
    for (const char byte : members)
        bytes.set(indexOf(byte));
    return bytes;
}

/// The bytes of a class such as [:alpha:], as git knows them whatever the locale; none if there is no such.
Bytes namedClass(QByteArrayView name)
{
    const Bytes lower = range('a', 'z');
    const Bytes upper = range('A', 'Z');
    const Bytes digit = range('0', '9');
    const Bytes blank = someOf(" \t");
    const Bytes graph = range('!', '~');
    const std::pair<QByteArrayView, Bytes> classes[]{
        {"alnum", lower | upper | digit},
        {"alpha", lower | upper},
        {"blank", blank},
        {"cntrl", range('\0', '\x1f') | someOf("\x7f")},
        {"digit", digit},
        {"graph", graph},
        {"lower", lower},
        {"print", range(' ', '~')},
        {"punct", graph & ~(lower | upper | digit)},
        {"space", blank | someOf("\n\r")},
        {"upper", upper},
        {"xdigit", digit | range('a', 'f') | range('A', 'F')},
    };
    for (const auto &[known, bytes] : classes) {
        if (known == name)
            return bytes;
    }
    return {};
}

/// Blanks at the end count only behind a backslash.
QByteArrayView withoutBlanksAtEnd(QByteArrayView pattern)
{
    qsizetype end = 0;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        const bool isEscape = pattern[at] == '\\';
        if (isEscape)
            ++at;
        if (isEscape || pattern[at] != ' ')
            end = std::min(at + 1, pattern.size());
    }
    return pattern.first(end);
}

} // namespace

Glob::Glob(const QByteArray &pattern)
{
    const QByteArrayView rest = withoutMarks(withoutBlanksAtEnd(pattern));
    const auto *const wildcard = std::ranges::find_if(rest, isWildcard);
    m_prefix = rest.first(wildcard - rest.begin()).toByteArray();
    compile(rest.sliced(m_prefix.size()));
    if (rest.isEmpty())
        m_error = u"matches nothing; write the name of a file or folder"_s;
    if (pattern.startsWith('#'))
        m_error = u"is a comment in a .gitignore; write \\# for a name that begins so"_s;
}

/// Notes and takes away what stands before and behind the pattern proper.
QByteArrayView Glob::withoutMarks(QByteArrayView pattern)
{
    m_isNegated = pattern.startsWith('!');
    if (m_isNegated)
        pattern = pattern.sliced(1);
    m_isForFolders = pattern.endsWith(separator);
    if (m_isForFolders)
        pattern.chop(1);
    m_isForNames = !pattern.contains(separator);
    return pattern.startsWith(separator) ? pattern.sliced(1) : pattern;
}

void Glob::compile(QByteArrayView pattern)
{
    const Bytes inNames = ~someOf("/");
    for (qsizetype at = 0; at < pattern.size();) {
        const char character = pattern[at++];
        if (character == '*') {
            at = addStars(pattern, at - 1);
        } else if (character == '[') {
            at = addClass(pattern, at);
        } else if (character == '?') {
            m_parts.push_back({inNames});
        } else if (character == '\\' && at == pattern.size()) {
            m_error = uR"(ends with a backslash; write \\ for one in the name)"_s;
        } else {
            m_parts.push_back({someOf(pattern.sliced(character == '\\' ? at++ : at - 1, 1))});
        }
    }
}

/// Adds one star, or several in a row, which go on across folders if they stand alone between two slashes.
/// Returns where the pattern goes on.
qsizetype Glob::addStars(QByteArrayView pattern, qsizetype at)
{
    qsizetype end = at;
    while (end < pattern.size() && pattern[end] == '*')
        ++end;
    const QByteArrayView rest = pattern.sliced(end);
    const bool crosses = end - at > 1 && (at == 0 || pattern[at - 1] == separator) &&
                         (rest.isEmpty() || rest.startsWith(separator) || rest.startsWith("\\/"));
    if (crosses && rest.startsWith(separator))
        m_parts.push_back({{}, false, 3});
    m_parts.push_back({crosses ? ~Bytes() : ~someOf("/"), true});
    return end;
}

/// Adds a class, whose "[" stands before `at`. Returns where the pattern goes on.
qsizetype Glob::addClass(QByteArrayView pattern, qsizetype at)
{
    const auto byteAt = [&](qsizetype i) { return i < pattern.size() ? pattern[i] : '\0'; };
    const bool isInverted = byteAt(at) == '!' || byteAt(at) == '^';
    at += isInverted ? 1 : 0;
    Bytes bytes;
    char before = '\0'; // where a range may begin
    do {
        char byte = byteAt(at);
        const qsizetype end = pattern.indexOf(']', at + 2);
        if (byte == '-' && before != '\0' && byteAt(at + 1) != ']') {
            at += byteAt(at + 1) == '\\' ? 2 : 1;
            bytes |= range(before, byteAt(at));
            byte = '\0';
        } else if (byte == '[' && byteAt(at + 1) == ':' && end >= 0 && pattern[end - 1] == ':' &&
                   end > at + 2) {
            const QByteArrayView name = pattern.sliced(at + 2, end - at - 3);
            const Bytes named = namedClass(name);
            if (named.none())
                m_error = u"has an unknown class [:%1:]; gitignore(5) and glob(7) name those there are"_s.arg(
                    QLatin1StringView(name));
            bytes |= named;
            at = end;
            byte = '\0';
        } else {
            if (byte == '\\')
                byte = byteAt(++at);
            bytes.set(indexOf(byte));
        }
        before = byte;
    } while (++at < pattern.size() && pattern[at] != ']');
    if (at >= pattern.size())
        m_error = uR"(has a [ without its ]; write \[ for one in the name)"_s;
    m_parts.push_back({(isInverted ? ~bytes : bytes) & ~someOf("/")});
    return at + 1;
}

bool Glob::matches(QByteArrayView path, bool isFolder) const
{
    if (!m_error.isEmpty() || (m_isForFolders && !isFolder))
        return false;
    const QByteArrayView text = m_isForNames ? path.sliced(path.lastIndexOf(separator) + 1) : path;
    return text.startsWith(m_prefix) && matchesParts(text.sliced(m_prefix.size()));
}

/// Follows all ways through the parts at once.
bool Glob::matchesParts(QByteArrayView text) const
{
    const auto count = static_cast<qsizetype>(m_parts.size());
    QVarLengthArray<bool, 256> isReached(count + 1,
                                         false); // that the parts before have taken the text so far
    isReached[0] = true;
    const auto passOptional = [&] {
        for (qsizetype i = 0; i < count; ++i) {
            const Part &part = m_parts[static_cast<std::size_t>(i)];
            if (isReached[i] && (part.repeats || part.skip > 0))
                isReached[i + 1] = true;
            if (isReached[i] && part.skip > 0)
                isReached[i + part.skip] = true;
        }
    };
    passOptional();
    for (const char byte : text) {
        isReached[count] = false;
        for (qsizetype i = count - 1; i >= 0; --i) {
            const Part &part = m_parts[static_cast<std::size_t>(i)];
            const bool isTaken = isReached[i] && part.bytes.test(indexOf(byte));
            isReached[i] = isTaken && part.repeats;
            if (isTaken && !part.repeats)
                isReached[i + 1] = true;
        }
        passOptional();
    }
    return isReached[count];
}

QString GlobList::add(const QByteArray &pattern)
{
    m_globs.emplace_back(pattern);
    return m_globs.back().error();
}

bool GlobList::matches(QByteArrayView path, bool isFolder) const
{
    const auto last = std::ranges::find_if(m_globs.rbegin(), m_globs.rend(),
                                           [&](const Glob &glob) { return glob.matches(path, isFolder); });
    return last != m_globs.rend() && !last->isNegated();
}

bool GlobList::covers(QByteArrayView path, bool isFolder) const
{
    for (qsizetype slash = path.indexOf(separator); slash >= 0; slash = path.indexOf(separator, slash + 1)) {
        if (matches(path.first(slash), true))
            return true;
    }
    return matches(path, isFolder);
}

} // namespace brevant
