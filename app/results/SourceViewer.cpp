// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/SourceViewer.h"

#include "app/preview/PreviewLoader.h"
#include "app/results/RunRecord.h"
#include "app/results/SourceView.h"
#include "engine/originals/KeptOriginals.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "widgets/Lines.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace brevant {

namespace {

constexpr int viewerEdge = 16;
constexpr QSize usualSize(760, 520);
constexpr int leastLetters = 40; // letters, and lines half as many

} // namespace

SourceViewer::SourceViewer(QWidget *parent)
    : QWidget(parent, Qt::Window), m_loader(new PreviewLoader(this)), m_folder(new ElidedLabel(this)),
      m_message(new QLabel(this)), m_notice(new QLabel(this)), m_view(new SourceView(this))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    auto *const head = new QVBoxLayout;
    head->setContentsMargins(viewerEdge, 8, viewerEdge, 8);
    head->setSpacing(4);
    m_folder->setElideMode(Qt::ElideLeft);
    for (QLabel *const label : {m_message, m_notice}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    for (QWidget *const line : {static_cast<QWidget *>(m_folder), static_cast<QWidget *>(m_message),
                                static_cast<QWidget *>(m_notice)})
        head->addWidget(line);
    auto *const hairline = new Hairline(this);
    hairline->setFixedHeight(1);
    column->addLayout(head);
    column->addWidget(hairline);
    column->addWidget(m_view, 1);
    setFocusProxy(m_view);
    connect(m_loader, &PreviewLoader::loaded, this, &SourceViewer::showContent);
    setMinimumSize(leastLetters * fontMetrics().averageCharWidth(),
                   leastLetters / 2 * fontMetrics().lineSpacing());
    resize(usualSize.boundedTo(screen()->availableSize() * 0.9));
}

void SourceViewer::showSource(const ResultRow &row, const CompressorMessage &about, const QString &encoding)
{
    m_about = about;
    const QString name = printable(PathString::lastComponent(row.source).toString());
    setWindowTitle(name);
    const bool isFromTheRight = layoutDirection() == Qt::RightToLeft;
    const QString folder = folderText(row.source);
    m_folder->setText(isFromTheRight ? isolated(folder) : folder);
    QString words = printable(m_about.inWords());
    if (!words.isEmpty())
        words[0] = words[0].toUpper();
    m_message->setText(words);
    // A text that can be selected is aligned as it is read itself, not as the window is.
    m_message->setAlignment(Qt::AlignVCenter | (isFromTheRight ? Qt::AlignRight : Qt::AlignLeft));
    m_message->setVisible(!words.isEmpty());
    m_notice->hide();
    m_view->setAccessibleName(tr("Text of %1").arg(name));
    m_view->clear();
    const QString original = row.remarks ? row.remarks->original : QString();
    m_loader->start(row.source, encoding, {}, false, KeptOriginals::isThere(original) ? original : QString());
    show();
    raise();
    activateWindow();
    m_view->setFocus();
}

void SourceViewer::showContent(const PreviewContent &content)
{
    const ShownSource source(content, m_about.line, m_about.column);
    QString notice = previewSentence(content) + previewNotice(content);
    if (m_about.line > 0 && source.place < 0 && notice.isEmpty())
        notice = tr("The file has changed: it has no such line any more.");
    m_notice->setText(notice);
    m_notice->setVisible(!notice.isEmpty());
    m_view->setSource(source);
}

void SourceViewer::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Close) || event->matches(QKeySequence::Cancel))
        close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace brevant
