// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PlannedOutputs.h"

#include "engine/CompressorCommand.h"
#include "engine/OutputClaims.h"
#include "engine/modern/ModernEntry.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/OutputPath.h"
#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <map>
#include <utility>

#include <sys/stat.h>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

using Wrong = PlannedProblem::Kind;
using Problems = std::vector<PlannedProblem>;

constexpr qint64 bytesAtOnce = 1 << 20;
constexpr std::chrono::milliseconds tellEvery(100);

/// What the settings mean for all files.
struct PlanSettings {
    explicit PlanSettings(const SettingsStore &store);

    [[nodiscard]] Problems problemsOf(const FileKind *kind) const;

    const CompressorCommand command;
    const bool isModern;
    const bool hasSlash; ///< in the suffix
    bool isOddColumn = false;
    QString encodingName;
    TextEncoding encoding = TextEncoding::Utf8;
    bool isAnyByteValid = false;
};

/// Whether a text is a number to the compressors, Integer.parseInt() of Java being one of them.
bool isColumn(const QString &text, bool isModern)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && text == text.trimmed() && (!isModern || number >= 0);
}

PlanSettings::PlanSettings(const SettingsStore &store)
    : command(store), isModern(isModernChosen(store)),
      hasSlash(store.boolForKey(suffixSwitcherKeyString) &&
               store.stringForKey(suffixKeyString).value_or(QString()).contains(u'/')),
      encodingName(store.stringForKey(selectedEncodingKeyString).value_or(QString())),
      encoding(textEncodingNamed(encodingName))
{
    isOddColumn = store.boolForKey(lineBreakSwitcherKeyString) &&
                  !isColumn(store.stringForKey(lineBreakKeyString).value_or(QString()), isModern);
    // Modern compressors read these as UTF-8, Java as they are.
    isAnyByteValid = !isModern && encodingName.startsWith(u"iso-8859-"_s, Qt::CaseInsensitive);
}

/// What the settings alone say about files of that kind.
Problems PlanSettings::problemsOf(const FileKind *kind) const
{
    Problems problems;
    if (!kind)
        return {{.kind = Wrong::BadSetting, .isFatal = true, .words = u"it is of no kind"_s}};
    if (kind->family != KindFamily::Markup && isOddColumn)
        problems.push_back({.kind = Wrong::OddColumn, .isFatal = true});
    const QString words = isModern ? command.modernOptions(*kind).error
                          : command.arguments(PathString::withExtension(u"x", kind->extension), {}).isEmpty()
                              ? u"a switch of its compressor is neither true nor false"_s
                              : QString();
    if (problems.empty() && !words.isEmpty())
        problems.push_back({.kind = Wrong::BadSetting, .isFatal = true, .words = words});
    if (hasSlash)
        problems.push_back({.kind = Wrong::SlashInSuffix});
    return problems;
}

bool isAllowed(const QString &path, int what)
{
    return ::faccessat(AT_FDCWD, RawBytes::encoded(path).constData(), what, AT_EACCESS) == 0;
}

bool isLater(const timespec &a, const timespec &b)
{
    return std::pair(a.tv_sec, a.tv_nsec) > std::pair(b.tv_sec, b.tv_nsec);
}

/// The first byte that is not in the character set; nothing if all are, or for a text too long to be read.
std::optional<qint64> firstFault(const Descriptor &file, qint64 size, TextEncoding encoding,
                                 const std::stop_token &stop)
{
    if (size > FileBytes::longestText)
        return std::nullopt;
    QByteArray text;
    text.reserve(size);
    for (;;) {
        const std::optional<QByteArray> piece = FileBytes::read(file.number(), bytesAtOnce, text.size());
        if (!piece || stop.stop_requested())
            return std::nullopt;
        text += *piece;
        if (piece->size() < bytesAtOnce || text.size() > FileBytes::longestText)
            break;
    }
    if (encoding == TextEncoding::Utf8 && QByteArrayView(text).isValidUtf8())
        return std::nullopt;
    const std::optional<TextFault> fault = TextCodec(encoding).decode(text, [](QStringView) {});
    return fault ? std::optional(fault->position) : std::nullopt;
}

/// One walk over the list.
class Plan final {
public:
    Plan(const std::vector<QString> &sources, const SettingsStore &settings, const QString &classicFolder,
         const std::stop_token &stop)
        : m_store(settings), m_settings(settings), m_classicFolder(classicFolder), m_stop(stop),
          m_files(sources.size())
    {
        for (std::size_t row = 0; row < sources.size(); ++row)
            m_files[row].source = sources[row];
    }

    void findOutputs();
    void findCollisions();
    void tellChecked(const PlanReceiver &tell);

    [[nodiscard]] const std::vector<PlannedFile> &files() const { return m_files; }

private:
    struct Marks {
        QStringList source;
        QStringList output;
    };

    [[nodiscard]] QString foundByCompressor(const QString &output) const;
    void check(PlannedFile &file);
    void checkSource(PlannedFile &file);
    void checkOutput(PlannedFile &file);
    void compareOutput(std::size_t row, const Marks &marks, const MarkedFiles &sources, MarkedFiles &outputs);
    void tellSameOutputs();

    const SettingsStore &m_store;
    const PlanSettings m_settings;
    const QString m_classicFolder;
    const std::stop_token m_stop;
    std::vector<PlannedFile> m_files;
    std::vector<int> m_sameBefore;                  ///< for each row, the one before with its output, or -1
    std::map<QString, bool> m_writable;             ///< folders
    std::map<const FileKind *, Problems> m_ofKinds; ///< what the settings say about them
};

void Plan::findOutputs()
{
    OutputPath outputPath(m_store);
    for (PlannedFile &file : m_files) {
        if (m_stop.stop_requested())
            return;
        const FileKind *const kind = m_settings.isModern ? anyKindOf(file.source) : kindOf(file.source);
        if (!m_ofKinds.contains(kind))
            m_ofKinds[kind] = m_settings.problemsOf(kind);
        file.problems = m_ofKinds[kind];
        const std::optional<QString> output = outputPath.next(file.source);
        file.output = output ? foundByCompressor(*output) : QString();
        if (RawBytes::areIn(file.source))
            file.problems.push_back({.kind = Wrong::NotUtf8Path, .isFatal = true});
        if (!output)
            file.problems.push_back({.kind = Wrong::NoOutput, .isFatal = true});
        else if (!m_settings.isModern && isTakenForPattern(file.source, *output))
            file.problems.push_back({.kind = Wrong::ColonInOutput, .isFatal = true});
    }
}

QString Plan::foundByCompressor(const QString &output) const
{
    const bool isRelative = !m_settings.isModern && !output.startsWith(u'/');
    return isRelative ? PathString::join(m_classicFolder, output) : output;
}

void Plan::findCollisions()
{
    std::vector<Marks> marks(m_files.size());
    MarkedFiles sources(m_files.size());
    FileMarks::Reader marksOfSource;
    FileMarks::Reader marksOfOutput;
    for (std::size_t row = 0; row < m_files.size() && !m_stop.stop_requested(); ++row) {
        const PlannedFile &file = m_files[row];
        marks[row].source = marksOfSource.all(file.source);
        if (!file.output.isNull())
            marks[row].output = marksOfOutput.all(file.output);
        sources.add(file.source, marks[row].source, static_cast<int>(row));
    }
    MarkedFiles outputs(m_files.size());
    m_sameBefore.assign(m_files.size(), -1);
    for (std::size_t row = 0; row < m_files.size() && !m_stop.stop_requested(); ++row) {
        if (!m_files[row].output.isNull())
            compareOutput(row, marks[row], sources, outputs);
    }
    tellSameOutputs();
}

void Plan::compareOutput(std::size_t row, const Marks &marks, const MarkedFiles &sources,
                         MarkedFiles &outputs)
{
    PlannedFile &file = m_files[row];
    const auto isOwn = [&marks](const QString &mark) { return marks.source.contains(mark); };
    if (std::ranges::any_of(marks.output, isOwn))
        file.problems.push_back({.kind = Wrong::ReplacesItself});
    const int replaced = sources.find(marks.output, marks.source);
    if (replaced >= 0) {
        file.problems.push_back({.kind = Wrong::ReplacesSource, .row = replaced});
        m_files[static_cast<std::size_t>(replaced)].problems.push_back(
            {.kind = Wrong::ReplacedByOther, .row = static_cast<int>(row)});
    }
    m_sameBefore[row] = outputs.findInAnyCase(file.output, marks.output);
    outputs.addInAnyCase(file.output, marks.output, static_cast<int>(row));
}

/// Of several with one output each names the last, whose output stays; that names the one before.
void Plan::tellSameOutputs()
{
    std::map<int, int> last; // by a row that is no more the last itself
    for (int row = static_cast<int>(m_files.size()) - 1; row >= 0; --row) {
        const auto at = static_cast<std::size_t>(row);
        const int before = m_sameBefore[at];
        const auto later = last.find(row);
        const int end = later == last.end() ? row : later->second;
        if (before >= 0)
            last.emplace(before, end);
        if (const int other = end == row ? before : end; other >= 0)
            m_files[at].problems.push_back({.kind = Wrong::SameOutput, .row = other});
    }
}

void Plan::tellChecked(const PlanReceiver &tell)
{
    auto told = std::chrono::steady_clock::now();
    std::size_t first = 0;
    for (std::size_t row = 0; row < m_files.size(); ++row) {
        check(m_files[row]);
        if (m_stop.stop_requested())
            return;
        const auto now = std::chrono::steady_clock::now();
        if (now - told < tellEvery && row + 1 < m_files.size())
            continue;
        const auto from = m_files.begin() + static_cast<std::ptrdiff_t>(first);
        const auto to = m_files.begin() + static_cast<std::ptrdiff_t>(row) + 1;
        tell(static_cast<int>(first), {std::make_move_iterator(from), std::make_move_iterator(to)});
        first = row + 1;
        told = now;
    }
}

void Plan::check(PlannedFile &file)
{
    checkSource(file);
    if (!file.output.isNull())
        checkOutput(file);
    std::ranges::stable_sort(file.problems, {}, [](const PlannedProblem &problem) {
        return problem.isFatal ? 0 : problem.isNote() ? 2 : 1;
    });
    file.isChecked = true;
}

void Plan::checkSource(PlannedFile &file)
{
    const Descriptor source = openRegularFile(RawBytes::encoded(file.source));
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0) {
        const QString why = errno == EINVAL ? u"Not a regular file"_s : qt_error_string(errno);
        file.problems.push_back({.kind = Wrong::CannotBeRead, .isFatal = true, .words = why});
        return;
    }
    file.size = status.st_size;
    const bool isSource = std::ranges::any_of(file.problems, [](const PlannedProblem &problem) {
        return problem.kind == Wrong::ReplacesItself || problem.kind == Wrong::ReplacesSource;
    });
    if (const auto output = statusOf(RawBytes::encoded(file.output));
        !isSource && output && S_ISREG(output->st_mode) && isLater(output->st_mtim, status.st_mtim))
        file.problems.push_back({.kind = Wrong::OutputIsNewer});
    if (m_settings.isAnyByteValid)
        return;
    if (const auto fault = firstFault(source, file.size, m_settings.encoding, m_stop))
        file.problems.push_back({.kind = Wrong::NotValid,
                                 .isFatal = m_settings.isModern,
                                 .byte = *fault,
                                 .words = m_settings.encodingName});
}

void Plan::checkOutput(PlannedFile &file)
{
    const std::optional<struct stat> status = statusOf(RawBytes::encoded(file.output));
    const bool isInto = status && (!m_settings.isModern || isWrittenInto(file.output));
    if (isInto) {
        if (!S_ISREG(status->st_mode) || !isAllowed(file.output, W_OK))
            file.problems.push_back({.kind = Wrong::OutputNotWritable, .isFatal = true});
        return;
    }
    QString folder = PathString::folder(file.output).toString();
    if (const FileKind *const kind = kindOf(file.source);
        !m_settings.isModern && kind && kind->family == KindFamily::Markup) {
        while (!folder.isEmpty() && !isAllowed(folder, F_OK)) // htmlcompressor makes it
            folder = PathString::folder(folder).toString();
    }
    auto known = m_writable.find(folder);
    if (known == m_writable.end())
        known = m_writable.emplace(folder, isAllowed(folder, W_OK | X_OK)).first;
    if (!known->second)
        file.problems.push_back({.kind = Wrong::FolderNotWritable, .isFatal = true});
}

} // namespace

PlannedFile::State PlannedFile::state() const
{
    if (std::ranges::any_of(problems, &PlannedProblem::isFatal))
        return State::WillFail;
    if (!std::ranges::all_of(problems, &PlannedProblem::isNote))
        return State::TakeCare;
    return isChecked ? State::Ready : State::Checking;
}

void planOutputs(const std::vector<QString> &sources, const SettingsStore &settings,
                 const QString &classicFolder, const std::stop_token &stop, const PlanReceiver &tell)
{
    Plan plan(sources, settings, classicFolder, stop);
    plan.findOutputs();
    if (stop.stop_requested())
        return;
    tell(0, plan.files());
    plan.findCollisions();
    if (!stop.stop_requested())
        plan.tellChecked(tell);
}

} // namespace brevant
