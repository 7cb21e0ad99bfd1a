// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace brevant {

/// A value in a JSON text, with the place where it begins.
struct JsonNode {
    enum class Type { Null, Boolean, Number, Text, List, Object };

    Type type = Type::Null;
    qsizetype at = 0; ///< in bytes
    bool state = false;
    QString text{};
    std::vector<JsonNode> items{}; ///< of a list; of an object its values, in the order of its keys
    std::vector<JsonNode> keys{};  ///< texts, of which no two are the same
};

/// A JSON text taken apart (RFC 8259). Two values with one key are an error here, and so are texts that are
/// no valid Unicode and values that are nested too deeply for any use.
class JsonText final {
public:
    explicit JsonText(const QByteArray &bytes);

    [[nodiscard]] const JsonNode &root() const { return m_root; }

    /// What is wrong, in words, and where; empty if nothing is.
    [[nodiscard]] const QString &error() const { return m_error; }
    [[nodiscard]] qsizetype errorAt() const { return m_errorAt; }

    /// "LINE:COLUMN" of a place, from 1, the column in characters.
    [[nodiscard]] QString place(qsizetype at) const;

private:
    const QByteArray m_bytes;
    JsonNode m_root;
    QString m_error;
    qsizetype m_errorAt = 0;
};

} // namespace brevant
