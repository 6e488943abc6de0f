#pragma once

#include <PallwickMacCore/Models/CodingPath.h>
#include <PallwickMacCore/Models/CoreError.h>

#include <string>

namespace pallwick {

/// A text that is not what a reader expected, and where in it.
class DecodingError : public CoreError {
public:
    enum class Kind {
        /// A required member is missing; the path ends with its key.
        keyNotFound,
        /// There is null, or an array's end, where a value is required.
        valueNotFound,
        /// The value has another JSON type.
        typeMismatch,
        /// The text is not JSON, or the value has the right type but not a meaning.
        dataCorrupted,
    };

    /// `sourceName` names what was read, such as a file; it may be empty.
    DecodingError(Kind kind, CodingPath codingPath, std::string description, std::string sourceName);

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The way to the offending value; empty where it is the whole text.
    [[nodiscard]] const CodingPath& codingPath() const { return codingPath_; }

    /// What was expected, without the source and the path. Never quotes text from the source: an error is shown on
    /// screen, and the text may be a window's title.
    [[nodiscard]] const std::string& description() const { return description_; }

    [[nodiscard]] const std::string& sourceName() const { return sourceName_; }

private:
    Kind kind_;
    CodingPath codingPath_;
    std::string description_;
    std::string sourceName_;
};

}  // namespace pallwick
