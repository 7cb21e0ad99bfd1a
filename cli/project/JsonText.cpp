// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/JsonText.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Builds nodes from what the reader meets. Each call returns whether it is to go on.
class Builder final {
public:
    Builder(const QByteArray &bytes, const rapidjson::MemoryStream &stream) : m_bytes(bytes), m_stream(stream)
    {
    }

    [[nodiscard]] bool Null() { return add({JsonNode::Type::Null}); }
    [[nodiscard]] bool Bool(bool state) { return add({JsonNode::Type::Boolean, 0, state}); }
    [[nodiscard]] bool Int(int) { return add({JsonNode::Type::Number}); }
    [[nodiscard]] bool Uint(unsigned) { return add({JsonNode::Type::Number}); }
    [[nodiscard]] bool Int64(std::int64_t) { return add({JsonNode::Type::Number}); }
    [[nodiscard]] bool Uint64(std::uint64_t) { return add({JsonNode::Type::Number}); }
    [[nodiscard]] bool Double(double) { return add({JsonNode::Type::Number}); }
    [[nodiscard]] bool RawNumber(const char *, unsigned, bool) { return add({JsonNode::Type::Number}); }
    [[nodiscard]] bool String(const char *bytes, unsigned size, bool)
    {
        return addText(QByteArrayView(bytes, static_cast<qsizetype>(size)), false);
    }
    [[nodiscard]] bool Key(const char *bytes, unsigned size, bool)
    {
        return addText(QByteArrayView(bytes, static_cast<qsizetype>(size)), true);
    }
    [[nodiscard]] bool StartObject() { return open(JsonNode::Type::Object); }
    [[nodiscard]] bool StartArray() { return open(JsonNode::Type::List); }
    [[nodiscard]] bool EndObject(unsigned) { return close(); }
    [[nodiscard]] bool EndArray(unsigned) { return close(); }

    JsonNode root;
    QString error;
    qsizetype errorAt = 0;

private:
    static constexpr qsizetype deepest = 16;

    /// Where the token begins that has just been read: what is between two tokens is known.
    [[nodiscard]] qsizetype takeBegin()
    {
        while (m_end < m_bytes.size() && QByteArrayView(" \t\r\n,:").contains(m_bytes[m_end]))
            ++m_end;
        return std::exchange(m_end, static_cast<qsizetype>(m_stream.Tell()));
    }

    [[nodiscard]] bool fail(const QString &words, qsizetype at)
    {
        error = words;
        errorAt = at;
        return false;
    }

    [[nodiscard]] bool add(JsonNode node)
    {
        node.at = takeBegin();
        put(std::move(node));
        return true;
    }

    JsonNode &put(JsonNode node)
    {
        if (m_open.empty())
            return root = std::move(node);
        return m_open.back()->items.emplace_back(std::move(node));
    }

    [[nodiscard]] bool addText(QByteArrayView bytes, bool isKey)
    {
        const qsizetype at = takeBegin();
        if (!bytes.isValidUtf8() || bytes.contains('\0'))
            return fail(u"the text holds what is no character"_s, at);
        JsonNode node{JsonNode::Type::Text, at, false, QString::fromUtf8(bytes)};
        if (!isKey) {
            put(std::move(node));
            return true;
        }
        std::vector<JsonNode> &keys = m_open.back()->keys;
        if (std::ranges::find(keys, node.text, &JsonNode::text) != keys.end())
            return fail(u"\"%1\" is there twice; leave out one of the two"_s.arg(node.text), at);
        keys.push_back(std::move(node));
        return true;
    }

    [[nodiscard]] bool open(JsonNode::Type type)
    {
        const qsizetype at = takeBegin();
        if (std::ssize(m_open) == deepest)
            return fail(u"values are nested too deeply"_s, at);
        m_open.push_back(&put({type, at}));
        return true;
    }

    [[nodiscard]] bool close()
    {
        static_cast<void>(takeBegin());
        m_open.pop_back();
        return true;
    }

    const QByteArray &m_bytes;
    const rapidjson::MemoryStream &m_stream;
    qsizetype m_end = 0;            ///< of the token before
    std::vector<JsonNode *> m_open; ///< the values that the next one is in; the last grows, the others do not
};

/// "Missing a comma." as a part of a sentence.
QString asPart(const char *sentence)
{
    QString words = QString::fromLatin1(sentence);
    words.front() = words.front().toLower();
    return words.chopped(words.endsWith(u'.') ? 1 : 0);
}

} // namespace

JsonText::JsonText(const QByteArray &bytes) : m_bytes(bytes)
{
    if (const qsizetype zero = bytes.indexOf('\0'); zero >= 0) {
        m_error = u"it is no JSON: it holds a zero byte"_s; // which the reader takes for the end
        m_errorAt = zero;
        return;
    }
    constexpr unsigned flags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag;
    // Not a StringStream, of which the reader works on a copy.
    rapidjson::MemoryStream stream(m_bytes.constData(), static_cast<std::size_t>(m_bytes.size()));
    Builder builder(m_bytes, stream);
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, builder);
    m_root = std::move(builder.root);
    m_error = builder.error;
    m_errorAt = builder.errorAt;
    if (result.IsError() && m_error.isEmpty()) {
        m_error = u"it is no JSON: "_s + asPart(rapidjson::GetParseError_En(result.Code()));
        m_errorAt = static_cast<qsizetype>(result.Offset());
    }
}

QString JsonText::place(qsizetype at) const
{
    const QByteArrayView before = QByteArrayView(m_bytes).first(std::min(at, m_bytes.size()));
    const qsizetype line = before.lastIndexOf('\n') + 1;
    return u"%1:%2"_s.arg(before.count('\n') + 1).arg(QString::fromUtf8(before.sliced(line)).size() + 1);
}

} // namespace brevant
