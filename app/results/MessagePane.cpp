// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/MessagePane.h"

#include "app/results/RunRecord.h"
#include "app/results/Signs.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "widgets/Lines.h"

#include <QAction>
#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Kind = CompressorMessage::Kind;

constexpr int paneEdge = 16;
constexpr int lines = 3;
/// More would take long to lay out, and nobody reads them.
constexpr std::size_t mostListed = 500;

} // namespace

QString wholeSentence(QString text)
{
    if (text.isEmpty())
        return text;
    text[0] = text[0].toUpper();
    return text.endsWith(u'.') ? text : text + u'.';
}

QStringList linesAbout(const ResultRow &row)
{
    QStringList said;
    if (!row.remarks)
        return said;
    const std::vector<CompressorMessage> messages = messagesAbout(row);
    const std::size_t ofCompressor = row.remarks->messages.shown.size();
    for (std::size_t i = 0; i < messages.size() && i < mostListed; ++i) {
        QString words = printable(messages[i].inWords());
        words[0] = words[0].toUpper();
        // Of what a check has found the most are warnings.
        const auto marked = i < ofCompressor ? Kind::Warning : Kind::Information;
        const QString mark = marked == Kind::Warning ? u"Warning: "_s : u"Note: "_s;
        said.append(messages[i].kind == marked ? mark + words : words);
    }
    if (messages.size() > mostListed)
        said.append(QCoreApplication::translate("Results", "And %1 more.").arg(messages.size() - mostListed));
    if (const int more = row.remarks->messages.more; more > 0)
        said.append(QCoreApplication::translate("Results", "And %1 more.").arg(more));
    // The reason of a modern compressor repeats its first message.
    const bool isSaid = !row.remarks->messages.shown.empty() &&
                        row.reason().contains(row.remarks->messages.shown.front().text);
    if (!row.reason().isEmpty() && !isSaid)
        said.append(wholeSentence(printable(row.reason())));
    for (const QString &note : row.remarks->notes)
        said.append(wholeSentence(printable(note)));
    if (const auto &checked = row.remarks->checked; checked && !checked->obstacle.isEmpty())
        said.append(
            QCoreApplication::translate("Results", "Not checked: %1.").arg(printable(checked->obstacle)));
    if (!row.remarks->notKept.isEmpty())
        said.append(wholeSentence(printable(row.remarks->notKept)));
    return said;
}

MessagePane::MessagePane(Reveal reveal, QWidget *parent)
    : QWidget(parent), m_whatToReveal(reveal), m_sign(new QLabel(this)), m_name(new ElidedLabel(this)),
      m_folder(new ElidedLabel(this)), m_messages(new QPlainTextEdit(this))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(paneEdge, 8, paneEdge, 8);
    column->setSpacing(4);
    auto *const bar = new QHBoxLayout;
    bar->setSpacing(8);
    column->addLayout(bar);
    bar->addWidget(m_sign);
    bar->addWidget(m_name);
    bar->addWidget(m_folder, 1);
    m_folder->setElideMode(Qt::ElideLeft);
    m_folder->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_name->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    m_open = addButton(*bar, tr("&Open"));
    m_reveal = addButton(*bar, reveal == Reveal::Output ? tr("Re&veal Output") : tr("Re&veal Source"));
    m_copy = addButton(*bar, tr("&Copy Path"));
    if (reveal == Reveal::Output)
        m_restore = addButton(*bar, tr("&Restore Source"));
    connect(m_open, &QAction::triggered, this, [this] { Q_EMIT openRequested(m_row.source); });
    connect(m_reveal, &QAction::triggered, this, [this] {
        Q_EMIT revealRequested(m_whatToReveal == Reveal::Output ? m_row.output : m_row.source);
    });
    connect(m_copy, &QAction::triggered, this,
            [this] { QGuiApplication::clipboard()->setText(m_row.source); });
    m_messages->setReadOnly(true);
    m_messages->setTabChangesFocus(true);
    m_messages->setFrameShape(QFrame::NoFrame);
    m_messages->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_messages->setAccessibleName(tr("Messages"));
    m_messages->document()->setDocumentMargin(0);
    m_messages->installEventFilter(this);
    m_messages->viewport()->installEventFilter(this);
    column->addWidget(m_messages, 1);
    setTabOrder(m_buttons.back(), m_messages);
    setRow(nullptr);
}

QAction *MessagePane::addButton(QHBoxLayout &bar, const QString &text)
{
    auto *const action = new QAction(text, this);
    action->setIconText(text); // with its mnemonic
    auto *const button = new QToolButton(this);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar.addWidget(button);
    m_buttons.push_back(button);
    return action;
}

QList<QAction *> MessagePane::fileActions() const
{
    QList<QAction *> actions{m_open, m_reveal, m_copy};
    if (m_restore)
        actions.append(m_restore);
    return actions;
}

void MessagePane::setRow(const ResultRow *row, bool isAsked)
{
    m_row = row ? *row : ResultRow();
    const bool isFile = row && !row->source.isEmpty();
    m_name->setText(isFile ? printable(PathString::lastComponent(row->source).toString()) : QString());
    const QString folder = isFile ? folderText(row->source) : QString();
    m_folder->setText(layoutDirection() == Qt::RightToLeft ? isolated(folder) : folder);
    m_folder->setToolTip(toolTipOf(folder));
    QStringList said = row ? linesAbout(*row)
                           : QStringList{m_whatToReveal == Reveal::Output
                                             ? tr("Select a file to see its messages.")
                                             : tr("Select a file to see what is planned for it.")};
    m_linesBefore = isAsked ? 1 : 0;
    if (isAsked)
        said.prepend(tr("Asking the compressor once more…"));
    if (const QString text = said.join(u'\n'); text != m_messages->toPlainText())
        m_messages->setPlainText(text); // else what is selected in it stays
    m_sign->setVisible(row != nullptr);
    m_open->setEnabled(isFile);
    m_copy->setEnabled(isFile);
    const bool isOfSource = m_whatToReveal == Reveal::Source;
    m_reveal->setEnabled(isFile && (isOfSource || row->isMinified()));
    m_reveal->setToolTip(isOfSource              ? tr("Show the source in the file manager")
                         : m_reveal->isEnabled() ? tr("Show the output in the file manager")
                                                 : tr("There is no output."));
    m_open->setToolTip(tr("Open the source with the program of your choice for such files"));
    m_copy->setToolTip(tr("Copy the path of the source"));
    updateLooks();
}

bool MessagePane::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            return chooseMessage(m_messages->textCursor());
    } else if (event->type() == QEvent::MouseButtonDblClick) {
        return chooseMessage(
            m_messages->cursorForPosition(static_cast<QMouseEvent *>(event)->position().toPoint()));
    }
    return QWidget::eventFilter(watched, event);
}

/// That in the line of the cursor; false if it is about no place.
bool MessagePane::chooseMessage(const QTextCursor &at)
{
    const std::vector<CompressorMessage> messages = messagesAbout(m_row);
    const auto number = static_cast<std::size_t>(at.blockNumber() - m_linesBefore); // huge if there is none
    if (number >= std::min(messages.size(), mostListed) || messages[number].line == 0)
        return false;
    Q_EMIT messageChosen(messages[number]);
    return true;
}

void MessagePane::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        updateLooks();
}

void MessagePane::updateLooks()
{
    const int size = signSize(fontMetrics());
    for (QToolButton *const button : m_buttons)
        button->setIconSize({size, size});
    m_open->setIcon(textIcon(u"document-open"_s, *this));
    m_reveal->setIcon(textIcon(u"folder-open"_s, *this));
    m_copy->setIcon(textIcon(u"edit-copy"_s, *this));
    if (m_restore)
        m_restore->setIcon(textIcon(u"document-revert"_s, *this));
    if (m_sign->isVisibleTo(this))
        m_sign->setPixmap(signIcon(m_row.state, *this).pixmap({size, size}, devicePixelRatioF()));
    QFont bold = font();
    bold.setBold(true);
    m_name->setFont(bold);
    const QColor ground = palette().color(QPalette::Active, QPalette::Window);
    const QColor text = palette().color(QPalette::Active, QPalette::WindowText);
    QPalette muted = m_folder->palette();
    muted.setColor(QPalette::WindowText, mutedText(ground, text));
    m_folder->setPalette(muted);
    QPalette plain = m_messages->palette();
    plain.setColor(QPalette::Base, ground);
    plain.setColor(QPalette::Text, text);
    m_messages->setPalette(plain);
    // Flush with the rest, though what compressors say is read from the left.
    QTextOption option;
    option.setAlignment(layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    m_messages->document()->setDefaultTextOption(option);
    m_messages->setFixedHeight(lines * m_messages->fontMetrics().lineSpacing() + 1);
}

/// Where there is no room for their words, the buttons keep their signs.
void MessagePane::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    int needed = 0;
    for (const QToolButton *const button : m_buttons)
        needed += fontMetrics().horizontalAdvance(button->text()) + 2 * paneEdge + 8;
    const auto style = needed * 2 > width() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon;
    for (QToolButton *const button : m_buttons)
        button->setToolButtonStyle(style);
}

} // namespace brevant
