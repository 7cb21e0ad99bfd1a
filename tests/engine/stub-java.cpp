// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Stands in for the Java runtime where a failure must be forced. What it does is told by the first word of
// the source file: copy, fail, crash, silent, empty, flood, wait (until the file named next to it vanishes).
// Every call is appended to the file named by BREVANT_STUB_LOG: working folder and arguments, tab-separated.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

namespace {

void log(const std::vector<std::string> &arguments)
{
    const char *path = std::getenv("BREVANT_STUB_LOG");
    if (path == nullptr)
        return;
    std::string line = std::filesystem::current_path().string();
    for (const std::string &argument : arguments)
        line += '\t' + argument;
    std::ofstream(path, std::ios::app) << line + '\n';
}

int act(const std::string &source, const std::string &output)
{
    std::ifstream in(source);
    std::string mode;
    std::string operand;
    in >> mode >> operand;
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
    while (mode == "wait" && std::filesystem::exists(operand))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::ofstream out(output, std::ios::trunc);
    if (mode != "empty")
        out << "minified " << source;
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    log(arguments);
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "-o")
            return act(arguments[i - 1], arguments[i + 1]);
    }
    return 1;
}
