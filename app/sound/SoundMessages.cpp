// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound/SoundMessages.h"

#include <QtGlobal>

#include <array>
#include <atomic>
#include <string_view>

#include <pthread.h>

namespace brevant::SoundMessages {

namespace {

thread_local bool isHidden = false;
std::atomic<QtMessageHandler> nextHandler = nullptr;

/// Qt's messages on a failing connection come from here too, and have no category of their own to turn off.
bool isThreadOfSoundLibrary()
{
    std::array<char, 16> name{};
    return ::pthread_getname_np(::pthread_self(), name.data(), name.size()) == 0 &&
           std::string_view(name.data()) == "threaded-ml";
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg || !(isHidden || isThreadOfSoundLibrary()))
        nextHandler.load()(type, context, text);
}

bool install()
{
    // In two steps, so that ours never runs without knowing the next one.
    nextHandler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handleMessage);
    return true;
}

} // namespace

void hideThoseOfThisThread()
{
    isHidden = true;
    [[maybe_unused]] static const bool installed = install();
}

} // namespace brevant::SoundMessages
