#pragma once

#include <PallwickMacCore/Models/CodingPath.h>
#include <PallwickMacCore/Models/CoreError.h>

#include <string>

namespace pallwick {

/// A value that JSON cannot hold, and where it is.
class EncodingError : public CoreError {
public:
    EncodingError(CodingPath codingPath, std::string description);

    /// The way to the offending value; empty where it is the root.
    [[nodiscard]] const CodingPath& codingPath() const { return codingPath_; }

    /// What was expected, without the path.
    [[nodiscard]] const std::string& description() const { return description_; }

private:
    CodingPath codingPath_;
    std::string description_;
};

}  // namespace pallwick
