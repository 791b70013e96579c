#include "host/blocks/ValueJson.h"

#include "host/base/Json.h"

namespace zelm::host {

void addValue(Json& object, const std::string& name, const Value& value)
{
    if (const int* whole = std::get_if<int>(&value)) {
        object[name] = *whole;
    } else if (const float* real = std::get_if<float>(&value)) {
        addNumber(object, name, shortest(*real));
    } else if (const std::string* text = std::get_if<std::string>(&value)) {
        object[name] = *text;
    } else {
        object[name] = nullptr;
        object[name + "Reason"] = "unset";
    }
}

} // namespace zelm::host
