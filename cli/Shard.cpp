// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Shard.h"

#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QStringList>

#include <algorithm>
#include <queue>
#include <tuple>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

struct SizedFile {
    qint64 size = 0; ///< in bytes; 0 for one that is gone
    QByteArray path;
    std::size_t index = 0; ///< in the list
};

std::vector<SizedFile> largestFirst(const std::vector<QString> &files, const QString &folder)
{
    const QString start = PathString::join(folder, {});
    std::vector<SizedFile> sized;
    for (const QString &file : files) {
        const QByteArray path = RawBytes::encoded(file);
        const auto status = statusOf(path);
        const bool isBelow = file.startsWith(start);
        sized.push_back({status ? status->st_size : 0,
                         isBelow ? RawBytes::encoded(file.sliced(start.size())) : path, sized.size()});
    }
    std::ranges::sort(sized, [](const SizedFile &a, const SizedFile &b) {
        return std::tie(b.size, a.path) < std::tie(a.size, b.path);
    });
    return sized;
}

} // namespace

bool readShard(const QString &text, Shard &shard)
{
    const auto readNumber = [](const QString &digits, int &number) {
        const bool isNumber =
            std::ranges::all_of(digits, [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
        number = isNumber ? digits.toInt() : 0;
        return number > 0;
    };
    const QStringList numbers = text.split(u'/');
    return numbers.size() == 2 && readNumber(numbers[0], shard.number) &&
           readNumber(numbers[1], shard.count) && shard.number <= shard.count;
}

std::vector<QString> filesOfShard(const std::vector<QString> &files, const Shard &shard,
                                  const QString &folder)
{
    // The next file, the largest of those left, goes to the part with the fewest bytes, then the fewest
    // files.
    using Part = std::tuple<qint64, qint64, int>; // bytes, files, number
    std::priority_queue<Part, std::vector<Part>, std::greater<>> parts;
    for (int number = 1; number <= shard.count && number <= static_cast<int>(files.size()); ++number)
        parts.emplace(0, 0, number);
    std::vector<bool> isTaken(files.size(), false);
    for (const SizedFile &file : largestFirst(files, folder)) {
        const auto [bytes, count, number] = parts.top();
        isTaken[file.index] = number == shard.number;
        parts.pop();
        parts.emplace(bytes + file.size, count + 1, number);
    }
    std::vector<QString> taken;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (isTaken[i])
            taken.push_back(files[i]);
    }
    return taken;
}

} // namespace brevant
