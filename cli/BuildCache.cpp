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
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <string_view>
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

/// Between the name of an output and what is known of it, and between two parts of that.
constexpr QByteArrayView colon("\": [\"");
constexpr QByteArrayView comma("\", \"");
constexpr QByteArrayView closing("\"]");

/// A text as it stands between quotes in JSON, where it holds characters that are not to stand there.
QByteArray escaped(const QByteArray &utf8)
{
    const QJsonArray array{QString::fromUtf8(utf8)};
    return QJsonDocument(array).toJson(QJsonDocument::Compact).chopped(2).sliced(2);
}

/// Whether QDir::cleanPath() may change a path.
bool isToBeCleaned(const QByteArray &path)
{
    const char *const bytes = path.constData();
    unsigned char found = 0; // without a jump, for the compiler to take several bytes at once
    for (qsizetype i = 1; i < path.size(); ++i)
        found |= static_cast<unsigned char>((bytes[i - 1] == '/') & ((bytes[i] == '/') | (bytes[i] == '.')));
    return found != 0;
}

bool isToBeEscaped(const QByteArray &text)
{
    unsigned char found = 0;
    for (const char byte : text)
        found |= static_cast<unsigned char>((static_cast<unsigned char>(byte) < ' ') | (byte == '"') |
                                            (byte == '\\'));
    return found != 0;
}

/// Much faster than QByteArrayView::indexOf() for what begins with a rare character; -1 if it is not there.
qsizetype find(QByteArrayView text, QByteArrayView what)
{
    const auto viewOf = [](QByteArrayView bytes) {
        return std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size()));
    };
    const std::size_t at = viewOf(text).find(viewOf(what));
    return at == std::string_view::npos ? -1 : static_cast<qsizetype>(at);
}

/// Takes the parts of a line, one after the other.
class Parts final {
public:
    explicit Parts(QByteArrayView line)
    {
        if (const qsizetype start = find(line, colon); start >= 0 && line.endsWith(closing))
            m_rest = line.sliced(start + colon.size()).chopped(closing.size());
    }

    /// The next one; null behind the last.
    [[nodiscard]] QByteArrayView next()
    {
        const qsizetype end = find(m_rest, comma);
        const QByteArrayView part = end < 0 ? m_rest : m_rest.first(end);
        m_rest = end < 0 ? QByteArrayView() : m_rest.sliced(end + comma.size());
        return part;
    }

private:
    QByteArrayView m_rest;
};

/// A file beside an output, or the output itself.
QByteArray copyOf(const QByteArray &output, const QString &extension)
{
    return extension.isEmpty() ? output : output + '.' + extension.toLatin1();
}

/// Reads the extension of a copy, if one stands before a file, off the beginning of a part.
QString takeExtension(QByteArrayView &part)
{
    for (const QByteArrayView known : {"gz ", "br ", "map "}) {
        if (part.startsWith(known)) {
            part = part.sliced(known.size());
            return QString::fromLatin1(known.chopped(1));
        }
    }
    return {};
}

std::optional<std::pair<QString, RecordedFile>> fileFrom(QByteArrayView part)
{
    const QString extension = takeExtension(part);
    std::optional<RecordedFile> file = RecordedFile::fromText(part);
    return file ? std::optional(std::pair(extension, *file)) : std::nullopt;
}

/// Whether source, output and copies look as these parts say; else it has to be asked what they hold.
bool lookLike(Parts parts, const QByteArray &source, const QByteArray &output)
{
    int count = 0;
    for (QByteArrayView part = parts.next(); !part.isNull(); part = parts.next(), ++count) {
        const QString extension = takeExtension(part);
        if (extension.isEmpty() != (count < 2) ||
            !RecordedFile::looksLikeText(part, count == 0 ? source : copyOf(output, extension)))
            return false;
    }
    return count >= 2;
}

QByteArray lineFrom(const QByteArray &name, QByteArrayView source, QByteArrayView recipe,
                    const RecordedFiles &files)
{
    QByteArray line = QByteArray("\"").append(name).append(colon).append(source).append(comma).append(recipe);
    for (const auto &[extension, file] : files) {
        line.append(comma);
        if (!extension.isEmpty())
            line += extension.toLatin1() + ' ';
        line += file.text();
    }
    return line.append(closing);
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
        if (const qsizetype middle = find(line, colon); middle > 0 && line.startsWith('"'))
            m_lines.insert(line.sliced(1, middle - 1), line);
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
    const QByteArray name =
        above == m_above.end()
            ? path
            : QByteArray(above->second).append(QByteArrayView(path).sliced(above->first.size()));
    return isToBeEscaped(name) ? escaped(name) : name;
}

QString BuildCache::path() const
{
    return PathString::join(m_folder, QString(fileName));
}

/// What is known of an output; empty if nothing is.
QByteArrayView BuildCache::lineOf(const QByteArray &name) const
{
    const auto changed = m_changed.constFind(name);
    return changed == m_changed.constEnd() ? m_lines.value(name) : QByteArrayView(*changed);
}

bool BuildCache::isUpToDate(const MadeOutput &wanted)
{
    const QByteArray sourcePath = RawBytes::encoded(wanted.source);
    const QByteArray outputPath = RawBytes::encoded(wanted.output);
    const QByteArray name = nameOf(outputPath);
    const QByteArray source = nameOf(sourcePath);
    Parts parts(lineOf(name));
    if (parts.next() != source || parts.next() != wanted.recipe)
        return false;
    if (lookLike(parts, sourcePath, outputPath))
        return true;
    RecordedFiles files;
    for (QByteArrayView part = parts.next(); !part.isNull(); part = parts.next()) {
        const auto recorded = fileFrom(part);
        if (!recorded || recorded->first.isEmpty() != (files.size() < 2))
            return false;
        const auto &[extension, file] = *recorded;
        auto same = file.ifUnchanged(files.empty() ? sourcePath : copyOf(outputPath, extension));
        if (!same)
            return false;
        files.emplace_back(extension, *std::move(same));
    }
    if (files.size() < 2)
        return false;
    m_changed.insert(name, lineFrom(name, source, wanted.recipe, files));
    return true;
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
        if (const auto file = RecordedFile::statusOf(copyOf(RawBytes::encoded(made.output), extension)))
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
            const QByteArray path = copyOf(output, extension);
            const auto read = isKnown ? RecordedFile::of(path) : std::nullopt;
            const auto now = RecordedFile::statusOf(path);
            isKnown = read && now && now->looksLike(file); // and nobody else has changed it meanwhile
            file = read.value_or(file);
        }
        if (!isKnown)
            continue;
        files.insert(files.begin(), std::pair(QString(), *source));
        const QByteArray name = nameOf(output);
        m_changed.insert(name,
                         lineFrom(name, nameOf(RawBytes::encoded(wanted.source)), wanted.recipe, files));
    }
}

QStringList BuildCache::ownFiles(const QString &source, const QString &output) const
{
    QStringList own;
    const QByteArray outputPath = RawBytes::encoded(output);
    Parts parts(lineOf(nameOf(outputPath)));
    if (parts.next() != nameOf(RawBytes::encoded(source)))
        return own;
    for (int part = 0; part < 2; ++part) // recipe and source
        static_cast<void>(parts.next());
    for (auto file = fileFrom(parts.next()); file; file = fileFrom(parts.next())) {
        const QByteArray path = copyOf(outputPath, file->first);
        if (file->second.ifUnchanged(path))
            own.append(RawBytes::decoded(path));
    }
    return own;
}

QByteArray BuildCache::hashOf(const QString &path)
{
    const QByteArray bytes = RawBytes::encoded(path);
    const QByteArray name = nameOf(bytes);
    Parts parts(lineOf(name));
    for (int part = 0; part < 2; ++part)
        static_cast<void>(parts.next());
    const auto known = fileFrom(parts.next());
    std::optional<RecordedFile> file = known ? known->second.ifUnchanged(bytes) : std::nullopt;
    if (!file)
        file = RecordedFile::of(bytes);
    if (!file)
        return {};
    if (!RawBytes::areIn(path) && (!known || !known->second.looksLike(*file)))
        m_changed.insert(name, lineFrom(name, {}, {}, {{QString(), *file}}));
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
