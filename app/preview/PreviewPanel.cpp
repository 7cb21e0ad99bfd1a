// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPanel.h"

#include "app/preview/PreviewLoader.h"
#include "app/preview/PreviewPlace.h"
#include "app/preview/PreviewText.h"
#include "app/preview/ZoomWindow.h"
#include "files/PathString.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr std::chrono::milliseconds patience{150};
constexpr QSize firstSize{660, 480};
constexpr QSize smallestSize{320, 200};

} // namespace

PreviewPanel::PreviewPanel(std::function<QString()> encodingName, QWidget *parent)
    : QWidget(parent, Qt::Tool), m_encodingName(std::move(encodingName)), m_loader(new PreviewLoader(this)),
      m_zoom(new ZoomWindow(this)), m_patience(this)
{
    setObjectName(u"previewPanel"_s);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(smallestSize);
    m_patience.setObjectName(u"previewPatience"_s);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    setUpContents();
    connect(&m_patience, &QTimer::timeout, this, &PreviewPanel::showLoading);
    connect(m_loader, &PreviewLoader::loaded, this, &PreviewPanel::showContent);
    connect(m_zoom, &ZoomWindow::finished, this, &PreviewPanel::endZoom);
}

PreviewPanel::~PreviewPanel() = default;

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
    place(from);
    if (!from.isEmpty() && ZoomWindow::isAllowed(*this))
        m_zoom->zoom(grab(), from, restingPlace());
    else
        showNow();
}

void PreviewPanel::orderOut()
{
    if (!m_open)
        return;
    m_open = false;
    m_patience.stop();
    m_loader->cancel();
    if (const QRect to = sourceFrame(); !to.isEmpty() && ZoomWindow::isAllowed(*this))
        m_zoom->zoom(grab(), restingPlace(), to);
    else
        m_zoom->hide();
    hide();
    Q_EMIT didClose();
}

void PreviewPanel::place(const QRect &row)
{
    const QWidget *const window = parentWidget() ? parentWidget()->window() : nullptr;
    if (!m_placed) {
        m_placed = true;
        const QRect area = (window ? window : this)->screen()->availableGeometry();
        const QRect beside = window && window->isVisible() ? window->frameGeometry() : area;
        // The panel's own frame is not known before it has been shown, but is most likely its neighbour's.
        const QSize edges = window ? window->frameGeometry().size() - window->size() : QSize(0, 0);
        const QRect frame = previewPlace(beside, row, firstSize + edges, area);
        resize(frame.size() - edges);
        move(frame.topLeft());
        return;
    }
    const QScreen *found = QGuiApplication::screenAt(frameGeometry().center());
    const QRect area = (found ? found : screen())->availableGeometry();
    const QRect frame = keptWithin(frameGeometry(), area);
    if (frame != frameGeometry()) {
        resize(size() - (frameGeometry().size() - frame.size()));
        move(frame.topLeft());
    }
}

/// Where the window without its frame is, or will be.
QRect PreviewPanel::restingPlace() const
{
    if (frameGeometry() != geometry() || !parentWidget())
        return geometry();
    const QWidget *const neighbour = parentWidget()->window();
    return geometry().translated(neighbour->geometry().topLeft() - neighbour->frameGeometry().topLeft());
}

void PreviewPanel::showNow()
{
    show();
    activateWindow();
}

void PreviewPanel::endZoom()
{
    // The picture of the opened panel goes when the panel itself has been painted.
    if (m_open)
        showNow();
    else
        m_zoom->hide();
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

int PreviewPanel::itemCount() const
{
    return m_open && m_dataSource ? m_dataSource->numberOfPreviewItemsInPreviewPanel() : 0;
}

int PreviewPanel::nearestIndex(int count) const
{
    if (m_index < 0)
        return 0;
    // It is most often where it was.
    if (m_index < count && m_dataSource->previewPanelPreviewItemAtIndex(m_index) == m_item)
        return m_index;
    for (int index = 0; index < count; ++index) {
        if (m_dataSource->previewPanelPreviewItemAtIndex(index) == m_item)
            return index;
    }
    return std::min(m_index, count - 1);
}

void PreviewPanel::reloadData()
{
    if (!m_open)
        return;
    const int count = itemCount();
    showItem(count > 0 ? nearestIndex(count) : -1, count);
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
    const bool isOneOfSeveral = count > 1;
    m_counter->setText(isOneOfSeveral ? tr("%1 of %2").arg(index + 1).arg(count) : QString());
    for (QWidget *widget : std::initializer_list<QWidget *>{m_counter, m_previous, m_next})
        widget->setVisible(isOneOfSeveral);
    m_previous->setEnabled(index > 0);
    m_next->setEnabled(index + 1 < count);
    if (index == -1) {
        m_item.clear();
        m_loader->cancel();
        m_patience.stop();
        showPage({}, tr("No file is selected."));
        return;
    }
    m_item = m_dataSource->previewPanelPreviewItemAtIndex(index);
    const QString path = m_item.path(QUrl::FullyDecoded);
    const QString encoding = m_encodingName();
    if (m_loader->isLoading(path, encoding))
        return;
    m_loader->start(path, encoding);
    // What is shown of the same file stays while it is read once more.
    if (path == m_shownPath)
        m_patience.stop();
    else if (!m_patience.isActive())
        m_patience.start();
}

void PreviewPanel::showContent(const PreviewContent &content)
{
    m_patience.stop();
    QString sentence = previewSentence(content);
    if (sentence.isEmpty() && !m_text)
        sentence = tr("The preview is not installed.");
    if (sentence.isEmpty()) {
        showHeader(content.path);
        m_text->setContent(content);
        m_text->editor()->setAccessibleName(tr("Text of %1").arg(m_name->text()));
        m_pages->setCurrentWidget(m_text->widget());
        m_text->widget()->setFocus();
    } else {
        showPage(content.path, sentence);
    }
    m_notice->setText(previewNotice(content));
    m_notice->setVisible(!m_notice->text().isEmpty());
    m_footer->setText(previewFooter(content));
    if (m_zoom->isZooming() && m_open)
        m_zoom->setPicture(grab());
}

QString PreviewPanel::shownText() const
{
    return m_text && m_pages->currentWidget() == m_text->widget() ? m_text->shownText() : QString();
}

void PreviewPanel::showLoading()
{
    showPage(m_item.path(QUrl::FullyDecoded), tr("Loading…"));
}

void PreviewPanel::showPage(const QString &path, const QString &sentence)
{
    showHeader(path);
    m_sentence->setText(sentence);
    m_pages->setCurrentWidget(m_sentence);
    m_notice->hide();
    m_notice->clear();
    m_footer->clear();
    setFocus();
}

void PreviewPanel::showHeader(const QString &path)
{
    m_shownPath = path;
    m_name->setText(PathString::lastComponent(path).toString());
    m_folder->setText(PathString::folder(path).toString());
    setWindowTitle(path.isEmpty() ? tr("Preview") : m_name->text());
}

} // namespace brevant
