// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPanel.h"

#include "app/preview/PreviewLoader.h"
#include "app/preview/PreviewPlace.h"
#include "app/preview/PreviewText.h"
#include "files/PathString.h"
#include "ui_PreviewPanel.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr std::chrono::milliseconds patience{150};

/// A text as a child of `parent`; null if its module is missing.
PreviewText *makeText(QWidget *parent)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    // A build folder, the tests in it, an installation.
    for (const QString &place : {u"modules"_s, u"../modules"_s, QStringLiteral(BREVANT_INSTALLED_MODULES)}) {
        QPluginLoader loader(folder.filePath(place + u"/brevant-preview.so"_s));
        if (const auto *const maker = qobject_cast<PreviewTextMaker *>(loader.instance()))
            return maker->make(parent);
    }
    return nullptr;
}

/// Where among the `count` items of `source` the one at `index` is now, or what has taken its place.
int nearestIndex(const PreviewPanelDataSource &source, const QUrl &item, int index, int count)
{
    const auto isAt = [&](int place) { return source.previewPanelPreviewItemAtIndex(place) == item; };
    if (index < 0)
        return 0;
    // Most often it has not moved.
    if (index < count && isAt(index))
        return index;
    for (int place = 0; place < count; ++place) {
        if (isAt(place))
            return place;
    }
    return std::min(index, count - 1);
}

void showPosition(const Ui::PreviewPanel &ui, int index, int count)
{
    const bool isOneOfSeveral = count > 1;
    ui.previewCounter->setText(isOneOfSeveral ? PreviewPanel::tr("%1 of %2").arg(index + 1).arg(count)
                                              : QString());
    for (QWidget *const widget :
         std::initializer_list<QWidget *>{ui.previewCounter, ui.previewPrevious, ui.previewNext})
        widget->setVisible(isOneOfSeveral);
    ui.previewPrevious->setEnabled(index > 0);
    ui.previewNext->setEnabled(index + 1 < count);
}

/// Whether the key is no shortcut of the main window's menu while the panel is active. Without this, Return
/// in the panel would start a run. Escape is the menu's: it closes the panel.
bool isNoMenuKey(const QKeyEvent &event)
{
    constexpr Qt::KeyboardModifiers menuKeys = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return event.key() != Qt::Key_Escape && !(event.modifiers() & menuKeys);
}

} // namespace

PreviewPanel::PreviewPanel(std::function<QString()> encodingName, QWidget *parent)
    : QWidget(parent, Qt::Tool), m_ui(std::make_unique<Ui::PreviewPanel>()),
      m_encodingName(std::move(encodingName)), m_loader(new PreviewLoader(this)),
      m_zoom(new ZoomWindow(this)), m_patience(this)
{
    m_ui->setupUi(this);
    // Neither paths nor sizes are read from the right.
    for (ElidedLabel *const label : {m_ui->previewName, m_ui->previewFolder, m_ui->previewFooter}) {
        label->setAlignment(Qt::AlignVCenter | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft));
        label->setLayoutDirection(Qt::LeftToRight);
    }
    setAttribute(Qt::WA_QuitOnClose, false);
    m_ui->previewSentence->setBackgroundRole(QPalette::Base);
    m_ui->previewSentence->setForegroundRole(QPalette::Text);
    installEventFilter(this);
    m_text = makeText(m_ui->pages);
    if (m_text) {
        m_text->focusProxy()->installEventFilter(this);
        m_ui->pages->addWidget(m_text);
    }
    m_patience.setObjectName(u"previewPatience"_s);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { showPage(m_item.path(QUrl::FullyDecoded), tr("Loading…")); });
    connect(m_loader, &PreviewLoader::loaded, this, &PreviewPanel::showContent);
    connect(m_zoom, &ZoomWindow::finished, this, &PreviewPanel::endZoom);
    connect(m_ui->previewPrevious, &QToolButton::clicked, this,
            [this] { setCurrentPreviewItemIndex(m_index - 1); });
    connect(m_ui->previewNext, &QToolButton::clicked, this,
            [this] { setCurrentPreviewItemIndex(m_index + 1); });
}

PreviewPanel::~PreviewPanel() = default;

void PreviewPanel::setOutputOf(std::function<PreviewOutput(const QString &source)> outputOf)
{
    m_outputOf = std::move(outputOf);
    connect(m_ui->previewSource, &QToolButton::clicked, this, [this] { turnTo(false); });
    connect(m_ui->previewMinified, &QToolButton::clicked, this, [this] { turnTo(true); });
}

void PreviewPanel::turnTo(bool isOutput)
{
    m_isOutputWanted = isOutput;
    setCurrentPreviewItemIndex(m_index);
}

void PreviewPanel::showPageButtons(bool isOutput, bool hasOutput)
{
    for (QToolButton *const button : {m_ui->previewSource, m_ui->previewMinified})
        button->setVisible(m_outputOf && !m_item.isEmpty());
    m_ui->previewSource->setChecked(!isOutput);
    m_ui->previewMinified->setChecked(isOutput);
    m_ui->previewMinified->setEnabled(hasOutput);
    m_ui->previewMinified->setToolTip(hasOutput                   ? tr("Show the output")
                                      : m_output.reason.isEmpty() ? tr("There is no output.")
                                                                  : m_output.reason);
}

void PreviewPanel::makeKeyAndOrderFront()
{
    if (m_open) {
        if (isVisible()) {
            raise();
            activateWindow();
        }
        return;
    }
    m_open = true;
    Q_EMIT willOpen();
    m_index = -1;
    m_item.clear();
    showPage({}, {});
    reloadData();
    const QRect from = sourceFrame();
    placeOnScreen(*this, from);
    if (!m_zoom->zoom(*this, from, restingPlace(*this)))
        endZoom();
}

void PreviewPanel::orderOut()
{
    if (!m_open)
        return;
    m_open = false;
    m_patience.stop();
    m_loader->cancel();
    if (!m_zoom->zoom(*this, restingPlace(*this), sourceFrame()))
        endZoom();
    hide();
    Q_EMIT didClose();
}

/// The picture of the opened panel goes when the panel itself has been painted.
void PreviewPanel::endZoom()
{
    if (!m_open) {
        m_zoom->hide();
        return;
    }
    show();
    activateWindow();
}

void PreviewPanel::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (m_open && m_zoom->isVisible() && !m_zoom->isZooming())
        QTimer::singleShot(0, m_zoom, [this] {
            if (!m_zoom->isZooming())
                m_zoom->hide();
        });
}

void PreviewPanel::closeEvent(QCloseEvent *event)
{
    event->ignore();
    orderOut();
}

/// Hears the keys of the text and of the panel.
bool PreviewPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Not passed on: the text has shortcuts of its own.
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

int PreviewPanel::itemCount() const
{
    return m_open && m_dataSource ? m_dataSource->numberOfPreviewItemsInPreviewPanel() : 0;
}

void PreviewPanel::reloadData()
{
    if (!m_open)
        return;
    const int count = itemCount();
    showItem(count > 0 ? nearestIndex(*m_dataSource, m_item, m_index, count) : -1, count);
}

void PreviewPanel::setCurrentPreviewItemIndex(int index)
{
    const int count = itemCount();
    if (index >= 0 && index < count)
        showItem(index, count);
}

QRect PreviewPanel::sourceFrame() const
{
    return m_delegate && !m_item.isEmpty() ? m_delegate->previewPanelSourceFrameOnScreenForPreviewItem(m_item)
                                           : QRect();
}

void PreviewPanel::showItem(int index, int count)
{
    m_index = index;
    showPosition(*m_ui, index, count);
    if (index == -1) {
        m_item.clear();
        m_loader->cancel();
        m_patience.stop();
        showPageButtons(false, false);
        showPage({}, tr("No file is selected."));
        return;
    }
    m_item = m_dataSource->previewPanelPreviewItemAtIndex(index);
    const QString path = m_item.path(QUrl::FullyDecoded);
    const QString encoding = m_encodingName();
    m_output = m_outputOf ? m_outputOf(path) : PreviewOutput();
    if (m_loader->isLoading(path, encoding, m_output.path, m_isOutputWanted, m_output.original))
        return;
    m_loader->start(path, encoding, m_output.path, m_isOutputWanted, m_output.original);
    // What is shown of the same file stays while it is read once more.
    if (path == m_shownPath)
        m_patience.stop();
    else if (!m_patience.isActive())
        m_patience.start();
}

void PreviewPanel::showContent(const PreviewContent &content)
{
    m_patience.stop();
    showPageButtons(content.isOutput, content.isOutput || content.otherSize);
    QString sentence = previewSentence(content);
    if (sentence.isEmpty() && !m_text)
        sentence = tr("The preview is not installed.");
    if (sentence.isEmpty()) {
        showHeader(content.path);
        m_text->setContent(content);
        m_ui->pages->setCurrentWidget(m_text);
        m_text->setFocus();
    } else {
        showPage(content.path, sentence);
    }
    m_ui->previewNotice->setText(previewNotice(content));
    m_ui->previewNotice->setVisible(!m_ui->previewNotice->text().isEmpty());
    // Sizes are worth more than the date.
    m_ui->previewFooter->setElideMode(content.otherSize ? Qt::ElideRight : Qt::ElideMiddle);
    m_ui->previewFooter->setText(previewFooter(content));
    if (m_zoom->isZooming() && m_open)
        m_zoom->setPicture(grab());
}

QString PreviewPanel::shownText() const
{
    return m_text && m_ui->pages->currentWidget() == m_text ? m_text->shownText() : QString();
}

void PreviewPanel::showPage(const QString &path, const QString &sentence)
{
    showHeader(path);
    m_ui->previewSentence->setText(sentence);
    m_ui->pages->setCurrentWidget(m_ui->previewSentence);
    m_ui->previewNotice->hide();
    m_ui->previewNotice->clear();
    m_ui->previewFooter->clear();
    setFocus();
}

void PreviewPanel::showHeader(const QString &path)
{
    m_shownPath = path;
    m_ui->previewName->setText(PathString::lastComponent(path).toString());
    m_ui->previewFolder->setText(PathString::folder(path).toString());
    setWindowTitle(path.isEmpty() ? tr("Preview") : m_ui->previewName->text());
}

} // namespace brevant
