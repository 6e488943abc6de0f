#include <PallwickMacCore/Models/CodingPath.h>
#include <PallwickMacCore/Models/StatusText.h>

namespace pallwick {

std::string printedForm(const CodingPath& path) {
    std::string text;
    for (const CodingKey& step : path) {
        if (const std::size_t* index = std::get_if<std::size_t>(&step)) {
            text.append("[").append(std::to_string(*index)).append("]");
        } else {
            text.append(text.empty() ? "" : ".").append(shownText(std::get<std::string>(step)));
        }
    }
    return text;
}

}  // namespace pallwick
