// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Stands in for the Java runtime where a failure must be forced. What it does is told by the first word of
// the source file: copy, fail, crash, silent, empty, flood, wait (until the file named next to it vanishes),
// slow (with pauses in its writing); cut, delete, replace, overwrite and grow, which do that to the source or
// the output and end with the status next to them, minus the number of a signal; orphan, which kills its
// parent, empties the source once the file named next to it has vanished, and ends; hollow, which empties the
// source first and waits for that. Every call is appended to
// the file named by BREVANT_STUB_LOG: working folder and arguments, tab-separated.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

void append(const std::string &line)
{
    if (const char *path = std::getenv("BREVANT_STUB_LOG"))
        std::ofstream(path, std::ios::app) << line + '\n';
}

void log(const std::vector<std::string> &arguments)
{
    std::string line = std::filesystem::current_path().string();
    for (const std::string &argument : arguments)
        line += '\t' + argument;
    append(line);
}

/// Ends as a compressor that has just damaged something does.
int endWith(const std::string &status)
{
    const int number = std::atoi(status.c_str());
    return number < 0 ? std::raise(-number) : number;
}

void write(const std::string &path, const std::string &text)
{
    std::ofstream(path, std::ios::trunc) << text;
}

void pause()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void waitUntilGone(const std::string &flag)
{
    while (std::filesystem::exists(flag))
        pause();
}

void orphan(const std::string &source, const std::string &flag)
{
    ::kill(::getppid(), SIGKILL);
    waitUntilGone(flag);
    write(source, {});
}

/// What a compressor does to its source; whether `mode` is one of these.
bool damage(const std::string &mode, const std::string &source, const std::string &output)
{
    if (mode == "cut")
        std::filesystem::resize_file(output, 2);
    else if (mode == "delete")
        std::filesystem::remove(source);
    else if (mode == "replace") {
        write(source + ".new", "newer work");
        std::filesystem::rename(source + ".new", source);
    } else if (mode == "overwrite")
        write(source, "minified");
    else if (mode == "grow")
        write(output, std::string(1'000'000, 'x'));
    else
        return false;
    return true;
}

int act(const std::string &source, const std::string &output)
{
    std::ifstream in(source);
    std::string mode;
    std::string operand;
    in >> mode >> operand;
    in.close();
    if (damage(mode, source, output))
        return endWith(operand);
    if (mode == "orphan" || (mode == "once" && std::filesystem::exists(operand))) {
        orphan(source, operand);
        return 0;
    }
    if (mode == "hollow") {
        write(source, {});
        waitUntilGone(operand);
        return 0;
    }
    if (mode == "fail")
        return 3;
    if (mode == "crash")
        std::raise(SIGKILL);
    if (mode == "silent")
        return 0;
    if (mode == "flood") {
        for (int i = 0; i < 200'000; ++i)
            std::cerr << "a line of much output\n";
    }
    if (mode == "wait")
        waitUntilGone(operand);
    std::ofstream out(output, std::ios::trunc);
    if (mode == "empty")
        return 0;
    if (mode == "slow")
        pause();
    out << "minified ";
    if (mode == "slow") {
        out.flush();
        pause();
    }
    out << source;
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    log(arguments);
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments[i] != "-o")
            continue;
        const int status = act(arguments[i - 1], arguments[i + 1]);
        if (std::getenv("BREVANT_STUB_ENDS") != nullptr)
            append("ended\t" + arguments[i - 1]);
        return status;
    }
    return 1;
}
