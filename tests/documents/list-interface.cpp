// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints what a user can set, choose and press, as one JSON object: the settings and encodings, the kinds of
// files, and the menus and keys of the real window.
#include "AppFixture.h"

#include "queue/FileKind.h"
#include "queue/view/OpenPanel.h"
#include "settings/Encodings.h"

#include <QApplication>
#include <QFileDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenuBar>
#include <QMimeDatabase>
#include <QShortcut>

#include <cstdio>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

QString plain(QString text)
{
    return text.remove(u'&');
}

QJsonArray settings()
{
    const QJsonObject defaults = registeredDefaults();
    QJsonArray list;
    for (const SettingKey &setting : allSettingKeys)
        list.append(
            QJsonObject{{u"key"_s, QString(setting.key)}, {u"default"_s, defaults.value(setting.key)}});
    return list;
}

QJsonArray encodings()
{
    QJsonArray list;
    for (const Encoding &encoding : allEncodings)
        list.append(QString(encoding.name));
    return list;
}

/// With the media type that this system knows for each; empty if it knows none.
QJsonArray kinds(bool extra)
{
    QJsonArray list;
    for (const FileKind &kind : allFileKinds()) {
        if (kind.isExtra != extra)
            continue;
        const QMimeType type = QMimeDatabase().mimeTypeForFile(u"a."_s + kind.extension.toString(),
                                                               QMimeDatabase::MatchExtension);
        list.append(QJsonObject{{u"extension"_s, kind.extension.toString()},
                                {u"name"_s, QString(kind.name)},
                                {u"type"_s, type.isDefault() ? QString() : type.name()}});
    }
    return list;
}

void listMenu(const QList<QAction *> &actions, const QString &menu, QJsonArray &items)
{
    for (const QAction *action : actions) {
        if (action->isSeparator())
            continue;
        if (action->menu() != nullptr) {
            listMenu(action->menu()->actions(), plain(action->text()), items);
            continue;
        }
        items.append(QJsonObject{{u"menu"_s, menu},
                                 {u"text"_s, plain(action->text())},
                                 {u"key"_s, action->shortcut().toString()}});
    }
}

/// The keys that stand in no menu.
QJsonArray otherKeys(const QWidget &window)
{
    QJsonArray keys;
    for (const QShortcut *shortcut : window.findChildren<QShortcut *>())
        keys.append(shortcut->key().toString());
    const OpenPanel panel({});
    QFileDialog bare;
    bare.setOption(QFileDialog::DontUseNativeDialog);
    QStringList known; // to Qt's own dialogue
    for (const QAction *action : bare.findChildren<QAction *>())
        known.append(action->shortcut().toString());
    for (const QAction *action : panel.actions()) {
        if (const QString key = action->shortcut().toString(); !known.contains(key))
            keys.append(key);
    }
    return keys;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const AppFixture fixture;
    QJsonArray items;
    listMenu(fixture.window.menuBar()->actions(), {}, items);
    const QJsonObject all{{u"settings"_s, settings()}, {u"encodings"_s, encodings()},
                          {u"kinds"_s, kinds(false)},  {u"extraKinds"_s, kinds(true)},
                          {u"items"_s, items},         {u"keys"_s, otherKeys(fixture.window)}};
    const QByteArray text = QJsonDocument(all).toJson();
    return std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout) ==
                   static_cast<std::size_t>(text.size())
               ? 0
               : 1;
}
