// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Stands in for the Java runtime and its compressors, with their bad habits: the output is emptied first and
// written in pieces, what cannot be written is passed over in silence, and an output whose name holds a ":"
// goes to the source. The output is the source in parentheses.
//
// FAULT_JAVA: "hang" goes on for ever over an empty output, "flood" prints 100 MB first, "nothing" writes
// nothing, "fail" ends with status 1 before writing. FAULT_JAVA_DELAY: microseconds between one step and the
// next.
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

void rest()
{
    if (const char *const delay = std::getenv("FAULT_JAVA_DELAY"))
        ::usleep(static_cast<useconds_t>(std::atoi(delay)));
}

bool readAll(const std::string &path, std::string &text)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    std::vector<char> buffer(65536);
    ssize_t size = 0;
    while ((size = ::read(file, buffer.data(), buffer.size())) > 0)
        text.append(buffer.data(), static_cast<std::size_t>(size));
    ::close(file);
    return size == 0;
}

void writeAll(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t size = ::write(file, text.data(), text.size());
        if (size <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(size));
    }
}

int minify(const std::string &source, const std::string &output, std::string_view mode)
{
    std::string text("(");
    if (!readAll(source, text))
        return 1;
    text += ')';
    rest();
    if (mode == "nothing")
        return 0;
    if (mode == "fail")
        return 1;
    const bool toSource = output.find(':', output.rfind('/') + 1) != std::string::npos;
    const std::string &target = toSource ? source : output;
    const int file = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0)
        return 1;
    while (mode == "hang")
        ::pause();
    rest();
    writeAll(file, std::string_view(text).substr(0, text.size() / 2));
    rest();
    writeAll(file, std::string_view(text).substr(text.size() / 2));
    rest();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const char *const asked = std::getenv("FAULT_JAVA");
    const std::string_view mode(asked == nullptr ? "" : asked);
    if (mode == "flood") {
        const std::string line(1'000'000, 'x');
        for (int i = 0; i < 100; ++i)
            writeAll(STDOUT_FILENO, line);
    }
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "-o")
            return minify(arguments[i - 1], arguments[i + 1], mode);
    }
    return 1;
}
