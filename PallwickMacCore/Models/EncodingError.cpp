#include <PallwickMacCore/Models/EncodingError.h>

#include <utility>

namespace pallwick {

EncodingError::EncodingError(CodingPath codingPath, std::string description)
    : CoreError(codingPath.empty() ? description : printedForm(codingPath) + ": " + description),
      codingPath_(std::move(codingPath)),
      description_(std::move(description)) {}

}  // namespace pallwick
