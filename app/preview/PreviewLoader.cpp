// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewLoader.h"

#include "app/preview/PreviewPages.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace brevant {

namespace {

constexpr int mostThreads = 4; ///< at once: three may hang and the next file is still read
constexpr std::chrono::milliseconds farewell{100}; ///< how long the end waits for threads that do not hang

struct Request {
    quint64 number = 0;
    QString path;
    QString encoding;
    QString output;
    bool isOutputWanted = false;
    QString original;
};

} // namespace

/// What the threads share with the loader; outlives it if one of them hangs.
struct PreviewLoader::Shared {
    std::atomic<quint64> wanted = 0; ///< the number of the latest request
    std::mutex mutex;                ///< guards all that follows
    std::condition_variable ended;
    PreviewLoader *loader = nullptr;
    std::optional<Request> pending;
    int threads = 0;

    /// With the lock held, so that the loader is still there.
    void deliver(const PreviewContent &content, quint64 number) const
    {
        QMetaObject::invokeMethod(
            loader, [to = loader, content, number] { to->deliver(content, number); }, Qt::QueuedConnection);
    }
};

PreviewLoader::PreviewLoader(QObject *parent) : QObject(parent), m_shared(std::make_shared<Shared>())
{
    m_shared->loader = this;
}

PreviewLoader::~PreviewLoader()
{
    std::unique_lock lock(m_shared->mutex);
    ++m_shared->wanted;
    m_shared->loader = nullptr;
    m_shared->pending.reset();
    // Threads that hang are left alone.
    m_shared->ended.wait_for(lock, farewell, [this] { return m_shared->threads == 0; });
}

void PreviewLoader::start(const QString &path, const QString &encoding, const QString &output,
                          bool isOutputWanted, const QString &original)
{
    m_loading.emplace(path, encoding, output, isOutputWanted, original);
    const std::lock_guard lock(m_shared->mutex);
    m_shared->pending = Request{++m_shared->wanted, path, encoding, output, isOutputWanted, original};
    if (m_shared->threads == mostThreads)
        return;
    try {
        std::thread([shared = m_shared] { work(shared); }).detach();
        ++m_shared->threads;
    } catch (const std::system_error &error) {
        PreviewContent content;
        content.path = path;
        content.encoding = encoding;
        content.state = PreviewContent::State::Unreadable;
        content.reason = QString::fromStdString(error.code().message());
        m_shared->deliver(content, std::exchange(m_shared->pending, std::nullopt)->number);
    }
}

void PreviewLoader::cancel()
{
    m_loading.reset();
    const std::lock_guard lock(m_shared->mutex);
    ++m_shared->wanted;
    m_shared->pending.reset();
}

void PreviewLoader::work(const std::shared_ptr<Shared> &shared)
{
    std::unique_lock lock(shared->mutex);
    while (const auto request = std::exchange(shared->pending, std::nullopt)) {
        lock.unlock();
        const auto cancelled = [&] { return shared->wanted != request->number; };
        auto content = readPreviewPage(request->path, request->original, request->output,
                                       request->isOutputWanted, request->encoding, cancelled);
        lock.lock();
        if (content && !cancelled() && shared->loader)
            shared->deliver(*content, request->number);
    }
    --shared->threads;
    shared->ended.notify_all();
}

void PreviewLoader::deliver(const PreviewContent &content, quint64 number)
{
    if (number != m_shared->wanted)
        return;
    m_loading.reset();
    Q_EMIT loaded(content);
}

} // namespace brevant
