// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/ElidedLabel.h"
#include "app/preview/PreviewPanel.h"
#include "app/preview/PreviewText.h"
#include "looks/Hairline.h"

#include <QAbstractScrollArea>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace brevant {

namespace {

constexpr int margin = 10;

QWidget *makeLine(QWidget *parent)
{
    auto *const line = new Hairline(parent);
    line->setFixedHeight(1);
    return line;
}

/// Shift and the like, which mean something only with another key.
bool isModifier(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

/// With no other modifier than the keypad's.
bool isPlain(const QKeyEvent &event)
{
    return !(event.modifiers() & ~Qt::KeypadModifier);
}

/// What Alt with a key does to the text. Without Alt these keys are the list's.
QAbstractSlider::SliderAction scrollAction(const QKeyEvent &event)
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::AltModifier)
        return QAbstractSlider::SliderNoAction;
    switch (event.key()) {
    case Qt::Key_Up:
        return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
        return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
        return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
        return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
        return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
        return QAbstractSlider::SliderToMaximum;
    default:
        return QAbstractSlider::SliderNoAction;
    }
}

} // namespace

void PreviewPanel::setUpContents()
{
    setAccessibleName(tr("Preview"));
    m_pages = new QStackedWidget(this);
    m_text = makePreviewText(m_pages);
    if (m_text) {
        m_text->editor()->setObjectName(QStringLiteral("previewText"));
        m_text->editor()->installEventFilter(this);
        m_pages->addWidget(m_text->widget());
    }
    m_sentence = new QLabel(m_pages);
    m_sentence->setObjectName(QStringLiteral("previewSentence"));
    m_sentence->setTextFormat(Qt::PlainText);
    m_sentence->setAlignment(Qt::AlignCenter);
    m_sentence->setWordWrap(true);
    m_sentence->setMargin(margin * 2);
    m_sentence->setAutoFillBackground(true);
    m_sentence->setBackgroundRole(QPalette::Base);
    m_sentence->setForegroundRole(QPalette::Text);
    m_pages->addWidget(m_sentence);
    m_notice = new QLabel(this);
    m_notice->setObjectName(QStringLiteral("previewNotice"));
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->setWordWrap(true);
    m_notice->setContentsMargins(margin, margin / 2, margin, 0);
    m_footer = new ElidedLabel(this);
    m_footer->setObjectName(QStringLiteral("previewFooter"));
    m_footer->setContentsMargins(margin, margin / 2, margin, margin / 2);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());
    layout->addWidget(makeLine(this));
    layout->addWidget(m_pages, 1);
    layout->addWidget(makeLine(this));
    layout->addWidget(m_notice);
    layout->addWidget(m_footer);
}

QWidget *PreviewPanel::makeHeader()
{
    auto *const header = new QWidget(this);
    m_name = new ElidedLabel(header);
    m_name->setObjectName(QStringLiteral("previewName"));
    QFont bold = font();
    bold.setBold(true);
    m_name->setFont(bold);
    m_folder = new ElidedLabel(header);
    m_folder->setObjectName(QStringLiteral("previewFolder"));
    m_counter = new QLabel(header);
    m_counter->setObjectName(QStringLiteral("previewCounter"));
    m_previous = makeTurnButton(Qt::LeftArrow, tr("Previous file"), -1);
    m_next = makeTurnButton(Qt::RightArrow, tr("Next file"), 1);

    auto *const titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(m_name);
    titles->addWidget(m_folder);
    auto *const layout = new QHBoxLayout(header);
    layout->setContentsMargins(margin, margin / 2, margin, margin / 2);
    layout->addLayout(titles, 1);
    layout->addWidget(m_counter);
    layout->addWidget(m_previous);
    layout->addWidget(m_next);
    return header;
}

QToolButton *PreviewPanel::makeTurnButton(Qt::ArrowType arrow, const QString &name, int step)
{
    auto *const button = new QToolButton(this);
    button->setObjectName(step < 0 ? QStringLiteral("previewPrevious") : QStringLiteral("previewNext"));
    button->setArrowType(arrow);
    button->setAutoRaise(true);
    // The keyboard is the list's; the button's own key works wherever the focus is.
    button->setFocusPolicy(Qt::NoFocus);
    button->setAccessibleName(name);
    const QKeySequence key(step < 0 ? QKeySequence::Back : QKeySequence::Forward);
    button->setToolTip(tr("%1 (%2)").arg(name, key.toString(QKeySequence::NativeText)));
    connect(button, &QToolButton::clicked, this,
            [this, step] { setCurrentPreviewItemIndex(m_index + step); });
    return button;
}

/// The keys that never reach the delegate.
bool PreviewPanel::isOwnKey(QKeyEvent *event) const
{
    if (event->key() == Qt::Key_Escape && isPlain(*event))
        return true;
    // A space bar that is held down has just opened the panel; it does not close it at once.
    if (event->key() == Qt::Key_Space && isPlain(*event) && event->isAutoRepeat())
        return true;
    return scrollAction(*event) != QAbstractSlider::SliderNoAction || event->matches(QKeySequence::Close) ||
           event->matches(QKeySequence::Back) || event->matches(QKeySequence::Forward) ||
           event->matches(QKeySequence::Copy);
}

/// Whether the key is no shortcut of the main window's menu while the panel is active. Without this, Return
/// in the panel would start a run.
bool PreviewPanel::isForUs(QKeyEvent *event) const
{
    constexpr Qt::KeyboardModifiers menuKeys = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return isOwnKey(event) || (!isModifier(*event) && !(event->modifiers() & menuKeys));
}

/// Whether the key was dealt with, here or by the delegate.
bool PreviewPanel::handleKey(QKeyEvent *event)
{
    if (!isOwnKey(event))
        return !isModifier(*event) && m_delegate && m_delegate->previewPanelHandleEvent(event);
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        orderOut();
    } else if (event->matches(QKeySequence::Back)) {
        setCurrentPreviewItemIndex(m_index - 1);
    } else if (event->matches(QKeySequence::Forward)) {
        setCurrentPreviewItemIndex(m_index + 1);
    } else if (const auto action = scrollAction(*event); action != QAbstractSlider::SliderNoAction) {
        if (auto *const text = m_text ? qobject_cast<QAbstractScrollArea *>(m_text->editor()) : nullptr)
            text->verticalScrollBar()->triggerAction(action);
    } else if (event->matches(QKeySequence::Copy)) {
        if (const QString text = m_text ? m_text->selectedText() : QString(); !text.isEmpty())
            QGuiApplication::clipboard()->setText(text);
    }
    return true;
}

bool PreviewPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        m_offered = nullptr;
        auto *const key = static_cast<QKeyEvent *>(event);
        if (event->type() == QEvent::ShortcutOverride ? isForUs(key) : handleKey(key)) {
            event->accept();
            return true;
        }
        if (event->type() == QEvent::KeyPress)
            m_offered = event;
    }
    return QWidget::eventFilter(watched, event);
}

bool PreviewPanel::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isForUs(static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        // A key that the text did not want has been offered already.
        const bool isNew = std::exchange(m_offered, nullptr) != event;
        if (isNew && handleKey(static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

} // namespace brevant
