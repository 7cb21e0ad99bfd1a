// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <bitset>
#include <vector>

namespace brevant {

/// One pattern in the syntax of gitignore(5), for paths in bytes. Matching takes a time that is at most the
/// product of both lengths, whatever the pattern.
class Glob final {
public:
    explicit Glob(const QByteArray &pattern);

    /// What is wrong with the pattern, in words that can follow it; empty if nothing is. A wrong one matches
    /// nothing.
    [[nodiscard]] const QString &error() const { return m_error; }

    /// Whether it begins with "!": it takes back what patterns before it match.
    [[nodiscard]] bool isNegated() const { return m_isNegated; }

    /// Whether it matches `path`, which is relative and has no "/" at its end.
    [[nodiscard]] bool matches(QByteArrayView path, bool isFolder) const;

private:
    using Bytes = std::bitset<256>;

    /// A part of the pattern that takes bytes of a path.
    struct Part {
        Bytes bytes;          ///< those that it takes
        bool repeats = false; ///< takes any number of them; otherwise one
        int skip = 0;         ///< begins so many parts, itself with them, that may be left out: "**/"
    };

    [[nodiscard]] QByteArrayView withoutMarks(QByteArrayView pattern);
    void compile(QByteArrayView pattern);
    [[nodiscard]] qsizetype addStars(QByteArrayView pattern, qsizetype at);
    [[nodiscard]] qsizetype addClass(QByteArrayView pattern, qsizetype at);
    [[nodiscard]] bool matchesParts(QByteArrayView text) const;

    QString m_error;
    bool m_isNegated = false;
    bool m_isForFolders = false;
    bool m_isForNames = false; ///< the pattern has no "/" inside: it is held against the last component alone
    QByteArray m_prefix;       ///< without wildcards, before the parts
    std::vector<Part> m_parts;
};

/// An ordered list of patterns, of which the last one that matches decides.
class GlobList final {
public:
    /// Returns what is wrong with the pattern, as Glob::error() does.
    [[nodiscard]] QString add(const QByteArray &pattern);

    [[nodiscard]] bool isEmpty() const { return m_globs.empty(); }

    /// Whether the list matches the path itself, not looking at the folders above it.
    [[nodiscard]] bool matches(QByteArrayView path, bool isFolder) const;

    /// Whether the list matches the path or one of the folders above it; nothing below these can be taken
    /// back.
    [[nodiscard]] bool covers(QByteArrayView path, bool isFolder) const;

private:
    std::vector<Glob> m_globs;
};

} // namespace brevant
