// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BuildCache.h"

#include "files/Descriptor.h"
#include "files/DurableFile.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <thread>

#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr QByteArrayView head("{\"version\": 1, \"files\": {\n");
constexpr QByteArrayView tail("\n}}\n");

constexpr qint64 mostBytes = 128'000'000;
constexpr qsizetype usualLine = 256; // bytes

/// Whether QDir::cleanPath() may change a path.
bool isToBeCleaned(const QByteArray &path)
{
    const char *const bytes = path.constData();
    unsigned char found = 0; // without a jump, for the compiler to take several bytes at once
    for (qsizetype i = 1; i < path.size(); ++i)
        found |= static_cast<unsigned char>((bytes[i - 1] == '/') & ((bytes[i] == '/') | (bytes[i] == '.')));
    return found != 0;
}

/// Waits for whoever writes in that folder, but not for ever: the file is replaced as a whole anyhow. Some
/// network file systems lock no folders.
void lockFolder(const Descriptor &folder)
{
    constexpr auto pause = std::chrono::milliseconds(10);
    constexpr int mostPauses = 1000;
    for (int i = 0;
         i < mostPauses && ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i)
        std::this_thread::sleep_for(pause);
}

} // namespace

BuildCache::BuildCache(const QString &folder) : m_folder(QDir::cleanPath(folder))
{
    QByteArray way;
    for (QByteArray above = m_folder.toUtf8(); above.size() > 1; above = folderOf(above)) {
        m_above.emplace_back(above + '/', way);
        way += "../";
    }
    read();
}

/// Reads the file and finds its lines. One that somebody else may have put there is not to be replaced.
void BuildCache::read()
{
    m_text.clear();
    m_lines.clear();
    const Descriptor file = openFile(RawBytes::encoded(path()), O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    QString reason;
    m_isOurs = false;
    if (!file.isOpen() && errno == ENOENT)
        m_isOurs = true;
    else if (!file.isOpen())
        reason = errno == ELOOP ? u"it is a link"_s : qt_error_string(errno);
    else if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        reason = u"it is no file"_s;
    else if (status.st_uid != ::geteuid())
        reason = u"it belongs to another user"_s;
    else
        reason = readLines(file, status.st_size);
    m_mode = file.isOpen() ? status.st_mode : 0600;
    m_error = reason.isEmpty() ? QString() : u"%1 is not used: %2"_s.arg(path(), reason);
}

/// Why that cannot be read; empty if it can.
QString BuildCache::readLines(const Descriptor &file, qint64 size)
{
    m_isOurs = true;
    if (size > mostBytes)
        return u"it is too large"_s;
    const std::optional<QByteArray> text = FileBytes::readAll(file.number());
    if (!text)
        return qt_error_string(errno);
    if (!text->startsWith(head))
        return u"it is damaged, or of another version of Brevant"_s;
    m_text = *text;
    m_lines.reserve(m_text.size() / usualLine);
    const QByteArrayView all(m_text);
    for (qsizetype start = head.size(); start < all.size();) {
        const qsizetype end = all.indexOf('\n', start);
        QByteArrayView line = all.sliced(start, (end < 0 ? all.size() : end) - start);
        start += line.size() + 1;
        if (line.endsWith(','))
            line.chop(1);
        if (const QByteArrayView name = CacheLine::nameIn(line); !name.isEmpty())
            m_lines.insert(name, line);
    }
    return {};
}

/// A path as the file names it.
QByteArray BuildCache::nameOf(QByteArray path) const
{
    if (isToBeCleaned(path))
        path = RawBytes::encoded(QDir::cleanPath(RawBytes::decoded(path)));
    const auto above =
        std::ranges::find_if(m_above, [&path](const auto &folder) { return path.startsWith(folder.first); });
    if (above != m_above.end())
        path = path.sliced(above->first.size());
    if (above != m_above.end() && !above->second.isEmpty())
        path.prepend(above->second);
    return CacheLine::quoted(path);
}

/// The path from its folder on, by which most paths are named; empty if it is not spelt as one below.
QByteArrayView BuildCache::usualNameOf(const QByteArray &path) const
{
    const bool isBelow = !m_above.empty() && path.startsWith(m_above.front().first);
    return isBelow ? QByteArrayView(path).sliced(m_above.front().first.size()) : QByteArrayView();
}

bool BuildCache::isNameOf(QByteArrayView name, const QByteArray &path) const
{
    return !name.isEmpty() && (name == usualNameOf(path) || name == nameOf(path));
}

QString BuildCache::path() const
{
    return PathString::join(m_folder, QString(fileName));
}

/// What is known of the file at a path; empty if nothing is.
QByteArrayView BuildCache::lineOf(const QByteArray &path) const
{
    const QByteArrayView usual = m_changed.isEmpty() ? m_lines.value(usualNameOf(path)) : QByteArrayView();
    if (!usual.isEmpty())
        return usual;
    const QByteArray name = nameOf(path);
    const auto changed = m_changed.constFind(name);
    return changed == m_changed.constEnd() ? m_lines.value(name) : QByteArrayView(*changed);
}

bool BuildCache::isUpToDate(const MadeOutput &wanted)
{
    const QByteArray sourcePath = RawBytes::encoded(wanted.source);
    const QByteArray outputPath = RawBytes::encoded(wanted.output);
    CacheLine::Parts parts(lineOf(outputPath));
    if (!isNameOf(parts.next(), sourcePath) || parts.next() != wanted.recipe)
        return false;
    if (CacheLine::looksUnchanged(parts, sourcePath, outputPath))
        return true;
    RecordedFiles files;
    bool isNewKnowledge = false;
    for (QByteArrayView part = parts.next(); !part.isNull(); part = parts.next()) {
        const auto recorded = CacheLine::fileFrom(part);
        if (!recorded || recorded->first.isEmpty() != (files.size() < 2))
            return false;
        const auto &[extension, file] = *recorded;
        auto same = file.ifUnchanged(files.empty() ? sourcePath : CacheLine::pathOf(outputPath, extension));
        if (!same)
            return false;
        isNewKnowledge |= !same->looksLike(file);
        files.emplace_back(extension, *std::move(same));
    }
    if (isNewKnowledge) {
        const QByteArray name = nameOf(outputPath);
        m_changed.insert(name, CacheLine::from(name, nameOf(sourcePath), wanted.recipe, files));
    }
    return files.size() >= 2;
}

void BuildCache::begin(const MadeOutput &wanted)
{
    m_begun.insert(wanted.output, {wanted, RecordedFile::of(RawBytes::encoded(wanted.source)), {}});
}

void BuildCache::made(const MadeOutput &made)
{
    Begun begun = m_begun.take(made.output);
    if (begun.wanted != made)
        return;
    for (const QString &extension : QStringList{QString()} + made.copies) {
        if (const auto file =
                RecordedFile::statusOf(CacheLine::pathOf(RawBytes::encoded(made.output), extension)))
            begun.files.emplace_back(extension, *file);
    }
    m_made.push_back(std::move(begun));
}

/// Reads what has been made, which is late enough now for its times to tell of changes later on.
void BuildCache::settle()
{
    for (auto &[wanted, source, files] : std::exchange(m_made, {})) {
        const QByteArray output = RawBytes::encoded(wanted.output);
        bool isKnown = source && !files.empty() && files.front().first.isEmpty();
        for (auto &[extension, file] : files) {
            const QByteArray path = CacheLine::pathOf(output, extension);
            const auto read = isKnown ? RecordedFile::of(path) : std::nullopt;
            const auto now = RecordedFile::statusOf(path);
            isKnown = read && now && now->looksLike(file); // and nobody else has changed it meanwhile
            file = read.value_or(file);
        }
        if (!isKnown)
            continue;
        files.insert(files.begin(), std::pair(QString(), *source));
        const QByteArray name = nameOf(output);
        m_changed.insert(
            name, CacheLine::from(name, nameOf(RawBytes::encoded(wanted.source)), wanted.recipe, files));
    }
}

QStringList BuildCache::ownFiles(const QString &source, const QString &output) const
{
    QStringList own;
    const QByteArray outputPath = RawBytes::encoded(output);
    CacheLine::Parts parts(lineOf(outputPath));
    if (!isNameOf(parts.next(), RawBytes::encoded(source)))
        return own;
    for (int part = 0; part < 2; ++part) // recipe and source
        static_cast<void>(parts.next());
    for (auto file = CacheLine::fileFrom(parts.next()); file; file = CacheLine::fileFrom(parts.next())) {
        const QByteArray path = CacheLine::pathOf(outputPath, file->first);
        if (file->second.ifUnchanged(path))
            own.append(RawBytes::decoded(path));
    }
    return own;
}

QByteArray BuildCache::hashOf(const QString &path)
{
    const QByteArray bytes = RawBytes::encoded(path);
    CacheLine::Parts parts(lineOf(bytes));
    for (int part = 0; part < 2; ++part)
        static_cast<void>(parts.next());
    const auto known = CacheLine::fileFrom(parts.next());
    std::optional<RecordedFile> file = known ? known->second.ifUnchanged(bytes) : std::nullopt;
    if (!file)
        file = RecordedFile::of(bytes);
    if (!file)
        return {};
    const QByteArray name = nameOf(bytes);
    if (!RawBytes::areIn(path) && (!known || !known->second.looksLike(*file)))
        m_changed.insert(name, CacheLine::from(name, {}, {}, {{QString(), *file}}));
    return file->hash;
}

/// Whether it is JSON, and the output is still there.
bool BuildCache::isOfUse(QByteArrayView line) const
{
    const QJsonObject object = QJsonDocument::fromJson('{' + line.toByteArray() + '}').object();
    if (object.size() != 1)
        return false;
    const QString name = object.begin().key();
    const QString path = name.startsWith(u'/') ? name : QDir::cleanPath(PathString::join(m_folder, name));
    return RecordedFile::statusOf(RawBytes::encoded(path)).has_value();
}

QString BuildCache::save()
{
    settle();
    if (m_changed.isEmpty())
        return {};
    const Descriptor folder = openFile(RawBytes::encoded(m_folder), O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen() && errno == ENOENT) // nor are there any outputs then
        return {};
    lockFolder(folder);
    read();
    if (!m_isOurs)
        return {};
    QByteArrayList lines = m_changed.values();
    for (const auto &[name, line] : m_lines.asKeyValueRange()) {
        if (!m_changed.contains(name.toByteArray()) && isOfUse(line))
            lines.append(line.toByteArray());
    }
    std::ranges::sort(lines);
    const QByteArray text = head.toByteArray().append(lines.join(",\n")).append(tail);
    struct stat like {};
    like.st_mode = m_mode;
    like.st_mtim = {0, UTIME_NOW};
    DurableFile file(path(), like); // anew, as a link that is put there meanwhile may lead anywhere
    if (text.size() > mostBytes)
        return u"%1 would be too large"_s.arg(path());
    if (!file.write(text) || !file.commit())
        return u"%1 cannot be written: %2"_s.arg(path(), file.errorText());
    m_changed.clear();
    read();
    return {};
}

} // namespace brevant
