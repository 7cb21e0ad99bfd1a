// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

class QWindow;

namespace brevant {

/// The address of a file, with every byte escaped that has a meaning of its own in an address. A relative
/// path counts from the working folder.
[[nodiscard]] QUrl fileUrl(const QString &path);

/// The path that the address of a file of this machine stands for; nothing for any other address.
[[nodiscard]] std::optional<QString> localPath(const QUrl &url);

/// The paths of those among the addresses that have one.
[[nodiscard]] QStringList localPaths(const QList<QUrl> &urls);

/// Escapes what no address may hold: blanks, control characters, the characters of "<>#%{}|\^[]` and all that
/// is not ASCII, each byte of its UTF-8 as a percent sign and two hexadecimal digits. The characters with a
/// meaning in addresses, the ampersand and the comma among them, stay.
[[nodiscard]] QByteArray percentEscaped(const QString &text);

/// The address that opens a new mail to `address` with a subject that names both versions.
[[nodiscard]] QUrl feedbackMailUrl(const QString &address, const QString &version,
                                   const QString &systemVersion);

/// Name and version of the running system, and of its kernel.
[[nodiscard]] QString operatingSystemVersionString();

/// What the desktop does for us: opening addresses and showing files in the file manager.
class Workspace final {
public:
    /// Opens an address and tells whether somebody took it.
    using UrlOpener = std::function<bool(const QUrl &)>;

    /// The file manager is asked on `bus`. Without an opener, the desktop's own programs open addresses.
    explicit Workspace(const QDBusConnection &bus, UrlOpener opener = {});

    /// Opens an address in the program the user has chosen for it. False if there is none.
    [[nodiscard]] bool openUrl(const QUrl &url) const;

    /// Asks the file manager to show the file selected in its folder. The call does not wait; if the file
    /// manager cannot be asked, refuses or does not answer, the file's folder is opened.
    void selectFile(const QString &path);

    /// How long selectFile() gives the file manager, which may have to be started first.
    void setAnswerTimeout(std::chrono::milliseconds timeout) { m_answerTimeout = timeout; }

private:
    void openFolderOf(const QString &path) const;

    QDBusConnection m_bus;
    UrlOpener m_opener;
    std::chrono::milliseconds m_answerTimeout = std::chrono::seconds(5);
    QObject m_questions; ///< parent of what waits for an answer
};

/// Whether the user has asked the desktop for less motion: GNOME's switch for animations, or KDE's animation
/// speed at "instant", as the desktop portal tells them. False if the portal is not running or does not
/// answer at once.
[[nodiscard]] bool isMotionReduced(const QDBusConnection &bus = QDBusConnection::sessionBus());

/// The right to come to the front that this process was started with: "activation-token" (Wayland) and
/// "desktop-startup-id" (X11), each if there is one. To be called before there is a QApplication, which takes
/// both out of the environment. The keys are those of the interface in app/ApplicationService.h.
[[nodiscard]] QVariantMap activationFromEnvironment();

/// Makes a visible window the active one with the right that another process was given. Does nothing without
/// it, or on another display.
void activate(QWindow &window, const QVariantMap &platformData);

} // namespace brevant
