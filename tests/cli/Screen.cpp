// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/Screen.h"

#include <QRegularExpression>

#include <algorithm>
#include <clocale>
#include <cwchar>

using namespace Qt::StringLiterals;

namespace brevant::test {

void Screen::write(const QByteArray &output)
{
    std::setlocale(LC_CTYPE, "C.UTF-8"); // for wcwidth(3)
    const QString text = QString::fromUtf8(output);
    for (qsizetype position = 0; position < text.size();) {
        const QChar character = text[position];
        if (character.category() == QChar::Other_Control) {
            position += control(text, position);
        } else if (character.isHighSurrogate() && position + 1 < text.size()) {
            put(QChar::surrogateToUcs4(character, text[position + 1]));
            position += 2;
        } else {
            put(character.unicode());
            ++position;
        }
    }
}

qsizetype Screen::control(const QString &text, qsizetype position)
{
    const QStringView rest = QStringView(text).sliced(position);
    if (rest.startsWith(u'\r')) {
        m_column = 0;
        return 1;
    }
    if (rest.startsWith(u'\n')) {
        ++m_row;
        return 1;
    }
    if (rest.startsWith("\x1b[A"_L1)) {
        m_row = std::max<qsizetype>(m_row - 1, 0);
        return 3;
    }
    if (rest.startsWith("\x1b[K"_L1)) {
        row().resize(std::min(row().size(), m_column));
        return 3;
    }
    static const QRegularExpression colour(u"^\x1b\\[[0-9;]*m"_s); // SGR, which moves nothing
    if (const auto match = colour.match(rest.toString()); match.hasMatch())
        return match.capturedLength();
    m_unknown.append(rest.first(std::min<qsizetype>(rest.size(), 4)).toString());
    return 1;
}

void Screen::put(char32_t character)
{
    const int width = std::max(0, ::wcwidth(static_cast<wchar_t>(character)));
    if (m_column + width > m_columns) {
        m_wrapped = true;
        ++m_row;
        m_column = 0;
    }
    QStringList &line = row();
    while (line.size() < m_column + width)
        line.append(u" "_s);
    const QString text = QString::fromUcs4(&character, 1);
    if (width == 0) {
        if (m_column > 0)
            line[m_column - 1] += text;
        return;
    }
    line[m_column] = text;
    if (width == 2)
        line[m_column + 1].clear();
    m_column += width;
}

QStringList &Screen::row()
{
    while (m_rows.size() <= m_row)
        m_rows.append(QStringList());
    return m_rows[m_row];
}

QStringList Screen::rows() const
{
    QStringList seen;
    for (const QStringList &line : m_rows)
        seen.append(line.join(QString()));
    while (!seen.isEmpty() && seen.last().isEmpty())
        seen.removeLast();
    return seen;
}

} // namespace brevant::test
