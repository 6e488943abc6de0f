#include <PallwickMacCore/Models/Date.h>

#include <chrono>

namespace pallwick {

Date Date::now() {
    using namespace std::chrono;
    constexpr sys_days reference = 2001y / January / 1;
    return {duration<double>(system_clock::now() - reference).count()};
}

}  // namespace pallwick
