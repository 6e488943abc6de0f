#include "SourceRules.h"

#include "SourceText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <regex>

namespace pallwick::test {

namespace {

struct Layer {
    std::string_view prefix;
    int height;
};

// The first prefix that fits counts.
constexpr std::array layers{Layer{"PallwickMacCore/", 0},
                            Layer{"PallwickMac/Backdrop/", 1},
                            Layer{"PallwickMac/Platform/", 2},
                            Layer{"PallwickMac/Services/", 3},
                            Layer{"PallwickMac/App/PallwickMacApp.", 6},
                            Layer{"PallwickMac/App/main.", 6},
                            Layer{"PallwickMac/App/", 4},
                            Layer{"PallwickMac/Views/", 5}};

bool isCore(std::string_view path) {
    return path.starts_with("PallwickMacCore/");
}

bool isBackdrop(std::string_view path) {
    return path.starts_with("PallwickMac/Backdrop/");
}

bool isProgram(std::string_view path) {
    return isCore(path) || path.starts_with("PallwickMac/");
}

bool isFactory(std::string_view path) {
    return path == "PallwickMac/Platform/PlatformFactory.cpp";
}

bool isBenchmark(std::string_view path) {
    return path.starts_with("bench/");
}

bool isHeader(std::string_view path) {
    return path.ends_with(".h");
}

bool isQt(std::string_view included) {
    return included.starts_with("Q") || included.starts_with("qpa/") ||
           (included.starts_with("q") && included.ends_with(".h"));
}

/// Its headers alone have names without a folder and without a suffix.
bool isStandardLibrary(std::string_view included) {
    return included.find_first_of("/.") == std::string_view::npos && !isQt(included);
}

bool isX(std::string_view included) {
    return included.starts_with("xcb/") || included.starts_with("X11/") ||
           included.starts_with("PallwickMac/Platform/X11/");
}

bool isJsonLibrary(std::string_view included) {
    return included.starts_with("nlohmann/");
}

/// Whether `included` lies in a folder of its own beneath the platform interface.
bool isBackend(std::string_view included) {
    constexpr std::string_view interfaceFolder = "PallwickMac/Platform/";
    return included.starts_with(interfaceFolder) &&
           included.substr(interfaceFolder.size()).find('/') != std::string_view::npos;
}

bool includesRelatively(const std::string& line) {
    static const std::regex relative(R"(^\s*#\s*include\s*(".*\.h"|.*\.\./).*)");
    return std::regex_match(line, relative);
}

bool hasCondition(const std::string& line) {
    static const std::regex condition(R"(^\s*#\s*(if|ifdef|ifndef|elif|else|endif)\b.*)");
    return std::regex_match(line, condition);
}

bool asksForAnInclusiveEdge(const std::string& line) {
    static const std::regex edge(R"((\.|->)\s*(right|bottom)\s*\(\s*\))");
    return std::regex_search(line, edge);
}

constexpr std::array rules{
    SourceRule{"CoreStandsAlone", "The core includes neither the toolkit nor a window system nor the application.",
               [](std::string_view path, std::string_view included) {
                   return isCore(path) && (isQt(included) || isX(included) || included.starts_with("PallwickMac/"));
               },
               nullptr},
    SourceRule{"BackdropStandsAlone", "The blur is made of the standard library, pixels in and pixels out.",
               [](std::string_view path, std::string_view included) {
                   return isBackdrop(path) && !isBackdrop(included) && !isStandardLibrary(included);
               },
               nullptr},
    SourceRule{"IncludesPointDown", "A file includes its own layer and lower ones.",
               [](std::string_view path, std::string_view included) {
                   const std::optional<int> own = layerOf(path);
                   const std::optional<int> other = layerOf(included);
                   return own && other && *other > *own;
               },
               nullptr},
    SourceRule{"WindowSystemStaysInItsFolder", "Only the X11 folder and the factory know the X window system.",
               [](std::string_view path, std::string_view included) {
                   return isProgram(path) && isX(included) && !path.starts_with("PallwickMac/Platform/X11/") &&
                          !isFactory(path);
               },
               nullptr},
    SourceRule{"BackendsAreReachedThroughTheFactory", "Above the platform only its interface is known.",
               [](std::string_view path, std::string_view included) {
                   return isProgram(path) && !path.starts_with("PallwickMac/Platform/") && isBackend(included);
               },
               nullptr},
    SourceRule{"FakeIsForTests", "Only tests use the fake desktop.",
               [](std::string_view path, std::string_view included) {
                   return included.starts_with("PallwickMac/Platform/Fake/") && !path.starts_with("tests/") &&
                          !path.starts_with("PallwickMac/Platform/Fake/");
               },
               nullptr},
    SourceRule{
        "ProgramIncludesByFullPath", "A file of the program is included by its full path, so that rules see it.",
        nullptr,
        [](std::string_view path, const std::string& line) { return isProgram(path) && includesRelatively(line); }},
    SourceRule{"JsonLibraryStaysInSources",
               "The JSON library is the core's private matter; a benchmark compares with it.",
               [](std::string_view path, std::string_view included) {
                   return isJsonLibrary(included) && (isHeader(path) || !isCore(path)) && !isBenchmark(path);
               },
               nullptr},
    SourceRule{"NoConditionalCode", "A difference between platforms is a file, chosen by the factory.", nullptr,
               [](std::string_view path, const std::string& line) { return !isFactory(path) && hasCondition(line); }},
    SourceRule{"RectanglesAreHalfOpen", "The toolkit's right() and bottom() are one less than where a rectangle ends.",
               nullptr, [](std::string_view, const std::string& line) { return asksForAnInclusiveEdge(line); }},
};

}  // namespace

std::span<const SourceRule> sourceRules() {
    return rules;
}

std::optional<int> layerOf(std::string_view path) {
    const auto* layer = std::ranges::find_if(layers, [path](const Layer& l) { return path.starts_with(l.prefix); });
    return layer == layers.end() ? std::nullopt : std::optional(layer->height);
}

std::vector<std::size_t> offendingLines(const SourceRule& rule, const SourceFile& file) {
    std::vector<std::size_t> offending;
    std::size_t number = 0;
    for (const std::string& line : codeLines(file.text)) {
        ++number;
        const std::optional<std::string> included = includedFile(line);
        const bool badInclude = included && rule.forbidsInclude != nullptr && rule.forbidsInclude(file.path, *included);
        const bool badLine = rule.forbidsLine != nullptr && rule.forbidsLine(file.path, line);
        if (badInclude || badLine) {
            offending.push_back(number);
        }
    }
    return offending;
}

}  // namespace pallwick::test
