#include <PallwickMacCore/Models/DecodingError.h>

#include <utility>

namespace pallwick {

namespace {

std::string sentence(const std::string& sourceName, const CodingPath& codingPath, const std::string& description) {
    std::string text;
    for (const std::string& part : {sourceName, printedForm(codingPath)}) {
        if (!part.empty()) {
            text.append(part).append(": ");
        }
    }
    return text + description;
}

}  // namespace

DecodingError::DecodingError(Kind kind, CodingPath codingPath, std::string description, std::string sourceName)
    : CoreError(sentence(sourceName, codingPath, description)),
      kind_(kind),
      codingPath_(std::move(codingPath)),
      description_(std::move(description)),
      sourceName_(std::move(sourceName)) {}

}  // namespace pallwick
