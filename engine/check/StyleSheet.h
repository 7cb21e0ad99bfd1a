// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/StyleTokens.h"

#include <span>

namespace brevant {

/// A style sheet taken apart, as far as it can be understood. It points into the text it was made from.
class StyleSheet final {
public:
    using Tokens = std::span<const StyleToken>;

    static constexpr int noBlock = -1;

    /// A rule with a block: "a, b {…}", "@media print {…}".
    struct Block {
        int parent; ///< its number, which is lower; or noBlock
        Tokens prelude;
        [[nodiscard]] bool isAtRule() const { return startsWithAt(prelude); }
    };

    /// A rule without a block: "@import …;".
    struct Statement {
        int block;         ///< where it stands, or noBlock
        bool isAfterBlock; ///< of the top level, where that rules out @import and @namespace
        Tokens tokens;
    };

    struct Declaration {
        int block;
        QStringView property;
        Tokens value;
        bool isHack; ///< a sign precedes the property, for old browsers alone
    };

    explicit StyleSheet(QStringView text);

    [[nodiscard]] const std::vector<Block> &blocks() const { return m_blocks; }
    [[nodiscard]] const std::vector<Statement> &statements() const { return m_statements; }
    [[nodiscard]] const std::vector<Declaration> &declarations() const { return m_declarations; }

    /// The text from the first of `tokens` to the last.
    [[nodiscard]] static QStringView textOf(Tokens tokens);
    [[nodiscard]] static bool startsWithAt(Tokens tokens);

private:
    /// The part of a block, or of the top level, that is still to be read.
    struct Open {
        int block;
        std::size_t at;
        std::size_t end;
    };

    void matchBrackets();
    void read();
    /// Reads one statement, declaration or prelude. The block that this opens, if any.
    [[nodiscard]] std::optional<Open> readNext(Open &open);
    [[nodiscard]] std::size_t endOfPart(const Open &open) const;
    void addDeclaration(int block, Tokens tokens);
    [[nodiscard]] Tokens part(std::size_t first, std::size_t last) const;

    std::vector<StyleToken> m_tokens;
    std::vector<std::size_t> m_closing; ///< for each token that opens a bracket, where that is closed
    std::vector<Block> m_blocks;
    std::vector<Statement> m_statements;
    std::vector<Declaration> m_declarations;
};

} // namespace brevant
