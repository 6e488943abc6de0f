#include "SourceText.h"

#include <cctype>
#include <regex>

namespace pallwick::test {

namespace {

/// Walks over a source once and blanks what is no code.
class Blanker {
public:
    explicit Blanker(std::string_view source) : source_(source), code_(source) {}

    std::string run() {
        while (at_ < source_.size()) {
            if (startsWith("//")) {
                blankUntil("\n", 0);
            } else if (startsWith("/*")) {
                blankUntil("*/", 2);
            } else if (startsWith("R\"") && !followsIdentifier()) {
                blankRawString();
            } else if (source_[at_] == '"' && !onIncludeLine()) {
                blankQuoted('"');
            } else if (source_[at_] == '\'' && !followsIdentifier()) {
                blankQuoted('\'');
            } else {
                ++at_;
            }
        }
        return code_;
    }

private:
    [[nodiscard]] bool startsWith(std::string_view token) const { return source_.substr(at_).starts_with(token); }

    /// In 1'000 the mark separates digits.
    [[nodiscard]] bool followsIdentifier() const {
        return at_ > 0 && std::isalnum(static_cast<unsigned char>(source_[at_ - 1])) != 0;
    }

    [[nodiscard]] bool onIncludeLine() const {
        const std::size_t lineStart = source_.rfind('\n', at_) + 1;
        return includedFile(source_.substr(lineStart, source_.find('\n', at_) - lineStart)).has_value();
    }

    void blankTo(std::size_t end) {
        for (; at_ < end && at_ < source_.size(); ++at_) {
            if (source_[at_] != '\n') {
                code_[at_] = ' ';
            }
        }
    }

    void blankUntil(std::string_view token, std::size_t extra) {
        const std::size_t found = source_.find(token, at_ + extra);
        blankTo(found == std::string_view::npos ? source_.size() : found + extra);
    }

    void blankRawString() {
        const std::size_t open = source_.find('(', at_);
        const std::string delimiter = ")" + std::string(source_.substr(at_ + 2, open - at_ - 2)) + "\"";
        const std::size_t close = source_.find(delimiter, open);
        blankTo(close == std::string_view::npos ? source_.size() : close + delimiter.size());
    }

    void blankQuoted(char quote) {
        std::size_t end = at_ + 1;
        while (end < source_.size() && source_[end] != quote && source_[end] != '\n') {
            end += source_[end] == '\\' ? 2U : 1U;
        }
        blankTo(end + 1);
    }

    std::string_view source_;
    std::string code_;
    std::size_t at_ = 0;
};

}  // namespace

std::vector<std::string> codeLines(std::string_view source) {
    const std::string code = Blanker(source).run();
    std::vector<std::string> lines(1);
    for (const char c : code) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back().push_back(c);
        }
    }
    return lines;
}

std::optional<std::string> includedFile(std::string_view line) {
    static const std::regex directive(R"(^\s*#\s*include\s*[<"]([^>"]*)[>"].*)");
    std::match_results<std::string_view::const_iterator> match;
    if (!std::regex_match(line.begin(), line.end(), match, directive)) {
        return std::nullopt;
    }
    return match[1].str();
}

}  // namespace pallwick::test
