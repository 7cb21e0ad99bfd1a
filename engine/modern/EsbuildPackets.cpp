// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/EsbuildPackets.h"

#include <QtEndian>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

enum class Type : char { Null, Bool, Number, Text, Bytes, List, Object };

constexpr qsizetype numberSize = 4;

QByteArray versionText()
{
    return "0.28.2"_ba;
}

void appendNumber(QByteArray &packet, qsizetype number)
{
    const quint32 bytes = qToLittleEndian(static_cast<quint32>(number));
    packet.append(reinterpret_cast<const char *>(&bytes), numberSize);
}

void appendType(QByteArray &packet, Type type, qsizetype number)
{
    packet.append(static_cast<char>(type));
    appendNumber(packet, number);
}

void appendBytes(QByteArray &packet, const QByteArray &bytes)
{
    appendNumber(packet, bytes.size());
    packet.append(bytes);
}

void appendText(QByteArray &packet, const QByteArray &text)
{
    packet.append(static_cast<char>(Type::Text));
    appendBytes(packet, text);
}

/// Reads values; after a fault all of them are empty.
class PacketReader {
public:
    explicit PacketReader(QByteArrayView bytes) : m_rest(bytes) {}

    [[nodiscard]] bool isWrong() const { return m_isWrong; }
    [[nodiscard]] bool isAtEnd() const { return !m_isWrong && m_rest.isEmpty(); }

    QByteArrayView take(qsizetype size)
    {
        m_isWrong |= size > m_rest.size();
        const QByteArrayView taken = m_isWrong ? QByteArrayView() : m_rest.first(size);
        m_rest = m_isWrong ? QByteArrayView() : m_rest.sliced(size);
        return taken;
    }

    quint32 number()
    {
        const QByteArrayView bytes = take(numberSize);
        return m_isWrong ? 0 : qFromLittleEndian<quint32>(bytes.data());
    }

    QByteArrayView bytes() { return take(number()); }

    Type type()
    {
        const QByteArrayView byte = take(1);
        return m_isWrong ? Type::Null : Type{byte.front()};
    }

    void expect(Type expected) { m_isWrong |= type() != expected; }

    void skip()
    {
        switch (type()) {
        case Type::Null:
            return;
        case Type::Bool:
            take(1);
            return;
        case Type::Number:
            number();
            return;
        case Type::Text:
        case Type::Bytes:
            bytes();
            return;
        case Type::List:
            skipList();
            return;
        case Type::Object:
            for (quint32 left = number(); left > 0 && !m_isWrong; --left) {
                bytes();
                skip();
            }
            return;
        }
        m_isWrong = true;
    }

    /// How many values there were in the list.
    quint32 skipList()
    {
        const quint32 count = number();
        for (quint32 left = count; left > 0 && !m_isWrong; --left)
            skip();
        return count;
    }

private:
    QByteArrayView m_rest;
    bool m_isWrong = false;
};

} // namespace

QStringList EsbuildPackets::arguments()
{
    return {u"--service="_s + QString::fromLatin1(versionText())};
}

QByteArray EsbuildPackets::greeting()
{
    QByteArray packet;
    appendBytes(packet, versionText());
    return packet;
}

QByteArray EsbuildPackets::requestHead(const QStringList &flags, qsizetype textSize)
{
    QByteArray request;
    appendNumber(request, 0); // its number; there is never more than one
    appendType(request, Type::Object, 4);
    appendBytes(request, "command");
    appendText(request, "transform");
    appendBytes(request, "flags");
    appendType(request, Type::List, flags.size() + 1);
    appendText(request, "--log-limit=6"); // as it has it for one text
    for (const QString &flag : flags)
        appendText(request, flag.toUtf8());
    appendBytes(request, "inputFS");
    request.append(static_cast<char>(Type::Bool)).append('\0');
    appendBytes(request, "input");
    appendType(request, Type::Bytes, textSize);
    QByteArray packet;
    appendNumber(packet, request.size() + textSize);
    return packet + request;
}

std::optional<qint64> EsbuildPackets::sizeOfPacket(const QByteArray &bytes)
{
    if (bytes.size() < numberSize)
        return std::nullopt;
    return numberSize + qint64{PacketReader(bytes).number()};
}

std::optional<EsbuildPackets::Answer> EsbuildPackets::readAnswer(QByteArrayView packet)
{
    constexpr quint32 answerToFirst = 1;
    PacketReader reader(packet);
    reader.number(); // its size
    if (reader.number() != answerToFirst)
        return std::nullopt;
    reader.expect(Type::Object);
    std::optional<QByteArrayView> code;
    Answer answer;
    for (quint32 left = reader.number(); left > 0 && !reader.isWrong(); --left) {
        const QByteArrayView key = reader.bytes();
        if (key == "code") {
            reader.expect(Type::Text);
            code = reader.bytes();
        } else if (key == "errors") {
            reader.expect(Type::List);
            answer.isFailure = reader.skipList() > 0;
        } else {
            reader.skip();
        }
    }
    if (!code || !reader.isAtEnd())
        return std::nullopt;
    answer.code = code->toByteArray();
    return answer;
}

} // namespace brevant
