// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// brevant-markup TYPE [OPTION…]: minifies markup from standard input to standard output, by the library
// minify.so beside this program. A program of its own, because the library starts Go's runtime, which takes
// over signals and never leaves the process.
//
// TYPE is text/html, application/x-httpd-php or image/svg+xml. Nothing is written where the library refuses
// the text, or its own result; the reason is on standard error then. Exit status: 0 done, 1 refused, 2 wrong
// usage, 3 the library cannot be used.

#include "engine/markup/Drawing.h"
#include "engine/markup/MarkupPage.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

using brevant::markup::Drawing;
using brevant::markup::MarkupPage;
using brevant::markup::Place;

namespace {

// The interface of @tdewolff/minify 2.24.8, as build/linux-amd64/minify.h in the package declares it.
struct MinifyOptions {
    const char *mediatype;
    const char *data;
    std::int32_t cssPrecision;
    std::int32_t cssVersion;
    bool htmlKeepComments;
    bool htmlKeepConditionalComments;
    bool htmlKeepDefaultAttrvals;
    bool htmlKeepDocumentTags;
    bool htmlKeepEndTags;
    bool htmlKeepQuotes;
    bool htmlKeepSpecialComments;
    bool htmlKeepWhitespace;
    bool jsKeepVarNames;
    std::int32_t jsPrecision;
    std::int32_t jsVersion;
    bool jsonKeepNumbers;
    std::int32_t jsonPrecision;
    bool svgKeepComments;
    std::int32_t svgPrecision;
    bool xmlKeepWhitespace;
};

struct MinifyResult {
    char *error;
    char *data;
};

struct Library {
    void (*minify)(MinifyOptions *, MinifyResult *) = nullptr;
    void (*freeText)(void *) = nullptr;
};

enum ExitStatus { Done = 0, Refused = 1, WrongUsage = 2, NoLibrary = 3 };

void complain(std::string_view text)
{
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

std::optional<Library> loadLibrary()
{
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    void *const handle = ::dlopen((self.parent_path() / "minify.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    Library library;
    if (handle != nullptr) {
        library.minify = reinterpret_cast<decltype(library.minify)>(::dlsym(handle, "Minify"));
        library.freeText = reinterpret_cast<decltype(library.freeText)>(::dlsym(handle, "FreeCString"));
    }
    if (library.minify == nullptr || library.freeText == nullptr) {
        complain(::dlerror());
        return std::nullopt;
    }
    return library;
}

/// Sets the options that a word of the command line stands for; false if it stands for none.
bool readOption(std::string_view word, MinifyOptions &options)
{
    if (word == "--keep-whitespace")
        options.htmlKeepWhitespace = options.xmlKeepWhitespace = true;
    else if (word == "--keep-comments")
        options.htmlKeepComments = options.svgKeepComments = true;
    else if (word == "--keep-names")
        options.jsKeepVarNames = true;
    else
        return false;
    return true;
}

constexpr std::string_view phpType = "application/x-httpd-php";
constexpr std::string_view drawingType = "image/svg+xml";

std::optional<MinifyOptions> optionsFrom(int argc, char *argv[])
{
    constexpr std::string_view types[] = {"text/html", phpType, drawingType};
    MinifyOptions options{};
    // What may be left out by the standard is kept: style sheets, scripts and other programs look for it.
    options.htmlKeepSpecialComments = true;
    options.htmlKeepDocumentTags = options.htmlKeepEndTags = true;
    options.htmlKeepQuotes = options.htmlKeepDefaultAttrvals = true;
    for (const std::string_view type : types) {
        if (argc > 1 && type == argv[1])
            options.mediatype = argv[1];
    }
    if (options.mediatype == nullptr)
        return std::nullopt;
    for (int i = 2; i < argc; ++i) {
        if (!readOption(argv[i], options))
            return std::nullopt;
    }
    return options;
}

/// Where the first NUL is, or a reference to one, which the library resolves.
std::size_t firstNul(const std::string &text)
{
    const std::size_t sign = text.find('\0');
    for (std::size_t at = text.find("&#"); at < sign; at = text.find("&#", at + 1)) {
        std::size_t digit = at + 2;
        const bool isHex = digit < text.size() && (text[digit] == 'x' || text[digit] == 'X');
        digit += isHex ? 1 : 0;
        const std::size_t end = text.find_first_not_of('0', digit);
        const std::string_view digits = isHex ? "0123456789abcdefABCDEF" : "0123456789";
        const bool isNumber = end < text.size() && digits.find(text[end]) != std::string_view::npos;
        if (digit < text.size() && text[digit] == '0' && !isNumber)
            return at;
    }
    return sign;
}

/// All of standard input; nothing if it cannot be read.
std::optional<std::string> readAll()
{
    constexpr std::size_t piece = 1 << 16;
    std::string text;
    std::size_t size = 0;
    while (true) {
        text.resize(size + piece);
        const ssize_t count = ::read(STDIN_FILENO, text.data() + size, piece);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        size += static_cast<std::size_t>(count);
        if (count == 0)
            break;
    }
    text.resize(size);
    return text;
}

/// Prints "LINE:COLUMN: TEXT" of an error that the library words as "TEXT on line LINE and column COLUMN",
/// followed by an excerpt with a mark. Of an error in an inline script or style the library adds up the
/// columns even if it is not on the first line there; the mark is right, unless the excerpt is cut at its
/// beginning.
void complainOf(const std::string &error, const MarkupPage *page)
{
    static const std::regex form(R"(^(.*) on line (\d+) and column (\d+)\n *(\d+): (\.\.\.)?[^\n]*\n( *)\^)");
    constexpr std::size_t margin = 7; // of the excerpt: "    1: "
    std::smatch match;
    if (!std::regex_search(error, match, form)) {
        complain(error);
        return;
    }
    const bool isMarkRight = match[4] != "1" && !match[5].matched;
    const std::size_t marked = static_cast<std::size_t>(match[6].length()) + 1 - margin;
    Place place{std::stoul(match[2].str()), isMarkRight ? marked : std::stoul(match[3].str())};
    if (page != nullptr)
        place = page->inSource(place);
    complain(std::to_string(place.line) + ':' + std::to_string(place.column) + ": " + match[1].str());
}

/// The minified text; nothing, with the reason on standard error, if the library refuses it.
std::optional<std::string> minified(const Library &library, MinifyOptions options, const std::string &text,
                                    const MarkupPage *page = nullptr)
{
    if (text.empty())
        return text; // which the library takes for an error
    MinifyResult result{};
    options.data = text.c_str();
    library.minify(&options, &result);
    std::optional<std::string> output;
    if (result.error != nullptr)
        complainOf(result.error, page);
    else if (result.data != nullptr)
        output = result.data;
    library.freeText(result.error);
    library.freeText(result.data);
    return output;
}

/// The minified text, which the library does not refuse either.
std::optional<std::string> minifiedTwice(const Library &library, const MinifyOptions &options,
                                         const std::string &text, const MarkupPage *page = nullptr)
{
    std::optional<std::string> output = minified(library, options, text, page);
    if (!output || minified(library, options, *output))
        return output;
    complain("the result is not valid, which would break the page");
    return std::nullopt;
}

/// Each gives the result for the text of its type; nothing, with the reason on standard error, if the text is
/// refused.
std::optional<std::string> minifiedPage(const Library &library, MinifyOptions options,
                                        const std::string &text, MarkupPage::Language language)
{
    const MarkupPage page(text, language);
    if (page.keepsSpaces())
        options.htmlKeepWhitespace = true;
    std::optional<std::string> output = minifiedTwice(library, options, page.text(), &page);
    if (output && !(output = page.restored(*output)))
        complain(language == MarkupPage::Language::Php
                     ? "PHP code would not stay as it is, which may break the page"
                     : "a part of the page would be lost");
    return output;
}

std::optional<std::string> minifiedDrawing(const Library &library, const MinifyOptions &options,
                                           const std::string &text)
{
    const Drawing drawing(text);
    if (const std::string_view reason = drawing.refusal(); !reason.empty()) {
        complain(reason);
        return std::nullopt;
    }
    std::optional<std::string> output = minifiedTwice(library, options, drawing.text());
    if (output && !(output = drawing.restored(*output)))
        complain("a text or script would not stay as it is, which may break the drawing");
    return output;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::optional<MinifyOptions> options = optionsFrom(argc, argv);
    if (!options) {
        complain("usage: brevant-markup text/html|application/x-httpd-php|image/svg+xml [--keep-whitespace] "
                 "[--keep-comments] [--keep-names]");
        return WrongUsage;
    }
    const std::optional<std::string> text = readAll();
    if (!text) {
        complain(std::strerror(errno));
        return Refused;
    }
    // The library would take it for the end of the text.
    if (const std::size_t at = firstNul(*text); at != std::string::npos) {
        complain("the text holds a NUL at byte " + std::to_string(at));
        return Refused;
    }
    const std::optional<Library> library = loadLibrary();
    if (!library)
        return NoLibrary;
    const std::optional<std::string> output =
        options->mediatype == drawingType
            ? minifiedDrawing(*library, *options, *text)
            : minifiedPage(*library, *options, *text,
                           options->mediatype == phpType ? MarkupPage::Language::Php
                                                         : MarkupPage::Language::Html);
    if (!output)
        return Refused;
    const bool isWritten = std::fwrite(output->data(), 1, output->size(), stdout) == output->size();
    if (!isWritten || std::fflush(stdout) != 0) {
        complain(std::strerror(errno));
        return Refused;
    }
    // Without the end of the library's runtime, which has threads.
    std::_Exit(Done);
}
