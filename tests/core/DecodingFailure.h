#pragma once

#include <PallwickMacCore/Models/JsonCoding.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace pallwick::test {

/// What a refused text was refused for, in a form that tests compare.
struct DecodingFailure {
    DecodingError::Kind kind;
    std::string path;

    friend bool operator==(const DecodingFailure&, const DecodingFailure&) = default;

    friend std::ostream& operator<<(std::ostream& stream, const DecodingFailure& failure) {
        return stream << "kind " << static_cast<int>(failure.kind) << " at '" << failure.path << "'";
    }
};

/// The error that reading `text` as a `Value` ends with; a test failure where it succeeds.
template <typename Value>
DecodingError decodingError(std::string_view text) {
    try {
        static_cast<void>(decode<Value>(text, "presets.json"));
    } catch (const DecodingError& error) {
        return error;
    }
    ADD_FAILURE() << "decoded: " << text;
    return {DecodingError::Kind::dataCorrupted, {std::string("nothing was refused")}, "", ""};
}

template <typename Value>
DecodingFailure decodingFailure(std::string_view text) {
    const DecodingError error = decodingError<Value>(text);
    return {error.kind(), printedForm(error.codingPath())};
}

}  // namespace pallwick::test
