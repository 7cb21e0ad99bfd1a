// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Application.h"
#include "queue/view/BVImageView.h"
#include "queue/view/BVTableView.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUrl>

#include <functional>

using namespace Qt::StringLiterals;

/// Writes down what is asked of the sound at the end of a run, and plays nothing.
class RecordingSound final : public brevant::DoneSound {
public:
    std::function<void(const QString &call)> onCall;

    bool load(const QString &path = u":/Done.aif"_s) override
    {
        note(u"load"_s);
        return DoneSound::load(path);
    }
    void play() override { note(u"play"_s); }

private:
    void note(const QString &call) const
    {
        if (onCall)
            onCall(call);
    }
};

struct FixtureFolder {
    QTemporaryDir folder;
    QList<QUrl> opened;
};

/// The whole window program but for its main(), on settings and files of its own, with a stub for Java,
/// without a session bus unless one is given, and with addresses written down instead of opened.
struct AppFixture : FixtureFolder, brevant::Application {
    explicit AppFixture(const QDBusConnection &bus = QDBusConnection(u"no bus"_s));
    ~AppFixture();

    /// Makes a file in the fixture's folder; `text` tells the stub what to do.
    QString file(const QString &name, const QByteArray &text = "copy") const;

    /// Drops paths on the list.
    bool drop(const QStringList &paths);

    /// Drops as many new files, f0.css and so on.
    void fill(int count, const QByteArray &text = "copy");

    /// What is to be seen: buttons shown, menu items enabled, status line, badge.
    [[nodiscard]] QString state() const;

    [[nodiscard]] QString status() const { return window.ui().progressTextField->text(); }
    [[nodiscard]] QStringList javaCalls() const;

    RecordingSound *sound = nullptr; ///< in the place of the program's own
    brevant::BVTableView *table = nullptr;
};
