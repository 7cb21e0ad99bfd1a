// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPanel.h"
#include "app/preview/PreviewText.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Hairline.h"

#include <QAbstractScrollArea>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr int margin = 10;

template <typename Label>
Label *makeLabel(const QString &name, QWidget *parent)
{
    auto *const label = new Label(parent); // a child of the parent
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QWidget *makeLine(QWidget *parent)
{
    auto *const line = new Hairline(parent); // a child of the parent
    line->setFixedHeight(1);
    return line;
}

/// Whether the key is no shortcut of the main window's menu while the panel is active. Without this, Return
/// in the panel would start a run. Escape is the menu's: it closes the panel.
bool isNoMenuKey(const QKeyEvent &event)
{
    constexpr Qt::KeyboardModifiers menuKeys = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return event.key() != Qt::Key_Escape && !(event.modifiers() & menuKeys);
}

} // namespace

void PreviewPanel::setUpContents()
{
    setAccessibleName(tr("Preview"));
    installEventFilter(this);
    m_pages = new QStackedWidget(this);
    m_text = makePreviewText(m_pages);
    if (m_text) {
        m_text->editor()->setObjectName(u"previewText"_s);
        m_text->editor()->installEventFilter(this);
        m_text->editor()->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(m_text->editor(), &QWidget::customContextMenuRequested, this, &PreviewPanel::showTextMenu);
        m_pages->addWidget(m_text->widget());
    }
    m_sentence = makeLabel<QLabel>(u"previewSentence"_s, m_pages);
    m_sentence->setAlignment(Qt::AlignCenter);
    m_sentence->setWordWrap(true);
    m_sentence->setMargin(margin * 2);
    m_sentence->setAutoFillBackground(true);
    m_sentence->setBackgroundRole(QPalette::Base);
    m_sentence->setForegroundRole(QPalette::Text);
    m_pages->addWidget(m_sentence);
    m_notice = makeLabel<QLabel>(u"previewNotice"_s, this);
    m_notice->setWordWrap(true);
    m_notice->setContentsMargins(margin, margin / 2, margin, 0);
    m_footer = makeLabel<ElidedLabel>(u"previewFooter"_s, this);
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
    m_name = makeLabel<ElidedLabel>(u"previewName"_s, header);
    QFont bold = font();
    bold.setBold(true);
    m_name->setFont(bold);
    m_folder = makeLabel<ElidedLabel>(u"previewFolder"_s, header);
    m_counter = makeLabel<QLabel>(u"previewCounter"_s, header);
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
    button->setObjectName(step < 0 ? u"previewPrevious"_s : u"previewNext"_s);
    button->setArrowType(arrow);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // the keyboard is the list's
    button->setAccessibleName(name);
    button->setToolTip(name);
    connect(button, &QToolButton::clicked, this,
            [this, step] { setCurrentPreviewItemIndex(m_index + step); });
    return button;
}

/// What other texts have keys for; here all keys are the delegate's.
void PreviewPanel::showTextMenu(QPoint point)
{
    auto *const menu = new QMenu(this); // deletes itself
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QString selected = m_text->selectedText();
    menu->addAction(tr("&Copy"), this, [selected] { QGuiApplication::clipboard()->setText(selected); })
        ->setEnabled(!selected.isEmpty());
    menu->addSeparator();
    const auto scrolling = [this](QAbstractSlider::SliderAction action) {
        return [this, action] {
            if (auto *const text = qobject_cast<QAbstractScrollArea *>(m_text->editor()))
                text->verticalScrollBar()->triggerAction(action);
        };
    };
    menu->addAction(tr("Page &Up"), this, scrolling(QAbstractSlider::SliderPageStepSub));
    menu->addAction(tr("Page &Down"), this, scrolling(QAbstractSlider::SliderPageStepAdd));
    menu->popup(m_text->editor()->mapToGlobal(point));
}

/// Hears the keys of the text and of the panel.
bool PreviewPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Asked no further: the text has shortcuts of its own.
        event->setAccepted(isNoMenuKey(*static_cast<QKeyEvent *>(event)));
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        // A key that the text did not want comes to the panel, but has been offered already.
        const bool isNew = std::exchange(m_offered, watched == this ? nullptr : event) != event;
        if ((isNew || watched != this) && m_delegate && m_delegate->previewPanelHandleEvent(event)) {
            m_offered = nullptr;
            event->accept();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace brevant
