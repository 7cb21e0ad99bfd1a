// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Stands in for the compressors. With -jar it is the Java runtime, with the bad habits of what runs in it:
// the output is emptied first and written in pieces, what cannot be written is passed over in silence, and an
// output whose name holds a ":" goes to the source; the output is the source in parentheses. Otherwise it is
// a filter, whose result is its text in parentheses, without blanks and line feeds.
//
// FAULT_MODE: "hang" goes on for ever (the runtime over an empty output), "flood" prints 100 MB of messages
// first, "nothing" writes nothing, "fail" ends with status 1 before writing. A filter alone: "pour" writes
// 100 MB, "crash" ends by a signal after half of its result, "deaf" ends with status 1 before it reads.
// FAULT_DELAY: microseconds between one step and the next.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

void rest()
{
    if (const char *const delay = std::getenv("FAULT_DELAY"))
        ::usleep(static_cast<useconds_t>(std::atoi(delay)));
}

bool readAll(int file, std::string &text)
{
    std::vector<char> buffer(65536);
    ssize_t size = 0;
    while ((size = ::read(file, buffer.data(), buffer.size())) > 0)
        text.append(buffer.data(), static_cast<std::size_t>(size));
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

void writeMuch(int file)
{
    const std::string line(1'000'000, 'x');
    for (int i = 0; i < 100; ++i)
        writeAll(file, line);
}

[[noreturn]] void hang()
{
    for (;;)
        ::pause();
}

int minify(const std::string &source, const std::string &output, std::string_view mode)
{
    std::string text("(");
    const int input = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
    if (input < 0 || !readAll(input, text))
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
    if (mode == "hang")
        hang();
    rest();
    writeAll(file, std::string_view(text).substr(0, text.size() / 2));
    rest();
    writeAll(file, std::string_view(text).substr(text.size() / 2));
    rest();
    return 0;
}

int filter(bool makesMap, std::string_view mode)
{
    std::string text("(");
    if (mode == "deaf" || !readAll(STDIN_FILENO, text) || mode == "fail")
        return 1;
    std::erase_if(text, [](char character) { return character == ' ' || character == '\n'; });
    text += ')';
    if (makesMap)
        text += "\n/*# sourceMappingURL=data:application/json;base64,e30= */"; // {}
    text += '\n';
    rest();
    if (mode == "nothing")
        return 0;
    if (mode == "hang")
        hang();
    if (mode == "pour")
        writeMuch(STDOUT_FILENO);
    writeAll(STDOUT_FILENO, std::string_view(text).substr(0, text.size() / 2));
    if (mode == "crash")
        ::raise(SIGKILL);
    rest();
    writeAll(STDOUT_FILENO, std::string_view(text).substr(text.size() / 2));
    rest();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const char *const asked = std::getenv("FAULT_MODE");
    const std::string_view mode(asked == nullptr ? "" : asked);
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool isJava = std::ranges::count(arguments, "-jar") > 0;
    if (mode == "flood")
        writeMuch(isJava ? STDOUT_FILENO : STDERR_FILENO);
    if (!isJava)
        return filter(std::ranges::count(arguments, "--sourcemap=inline") > 0, mode);
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "-o")
            return minify(arguments[i - 1], arguments[i + 1], mode);
    }
    return 1;
}
