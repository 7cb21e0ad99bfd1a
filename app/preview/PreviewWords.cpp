// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewReader.h"

#include "widgets/SizeText.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace brevant {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Preview)
};

QString linesText(qint64 lines)
{
    return lines == 1 ? Words::tr("1 line") : Words::tr("%1 lines").arg(QLocale().toString(lines));
}

} // namespace

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
    return sentences.join(QLatin1Char(' '));
}

QString previewFooter(const PreviewContent &content)
{
    using State = PreviewContent::State;
    QStringList parts;
    if (content.state == State::Text || content.state == State::Empty || content.state == State::Binary)
        parts += sizeText(content.size);
    if (content.state == State::Text) {
        if (content.lines)
            parts += linesText(*content.lines);
        parts += content.encoding;
    }
    if (content.modified.isValid())
        parts += Words::tr("Modified %1").arg(QLocale().toString(content.modified, QLocale::ShortFormat));
    return parts.join(QStringLiteral("  ·  "));
}

} // namespace brevant
