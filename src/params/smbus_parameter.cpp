#include "params/smbus_parameter.h"
#include "platform/text.h"

namespace zv {

clsBitString& BitStringList::Add(const std::string& text, const std::string& key)
{
    return Append(clsBitString { text }, key);
}

clsSMBusParameter& ParameterList::Add(const std::string& index, const std::string& key)
{
    clsSMBusParameter parameter;
    parameter.ParameterNumber = index;
    return Append(std::move(parameter), key);
}

clsSMBusParameter* ParameterList::FindByName(std::string_view name) const
{
    return findIf(
        [&](const clsSMBusParameter& p) { return platform::equalsIgnoreCase(p.ParameterName, name); });
}

clsNode& NodeList::Add(const std::string& key)
{
    return Append(clsNode {}, key);
}

bool NodeList::Copy(int sourceIndex, int destinationIndex)
{
    const clsNode* source = Item(sourceIndex);
    clsNode* destination = Item(destinationIndex);
    if (source == nullptr || destination == nullptr) {
        return false;
    }
    if (source == destination) {
        return true;
    }
    destination->NodeParameters.Clear();
    for (const auto& parameter : source->NodeParameters) {
        clsSMBusParameter copy = parameter;
        copy.value = DynamicValue();
        copy.NewValue = DynamicValue();
        destination->NodeParameters.Append(std::move(copy));
    }
    return true;
}

clsSMBusCommand& CommandList::Add(std::uint8_t dataType, std::uint8_t commandNumber, const std::string& key)
{
    return Append(clsSMBusCommand { dataType, commandNumber }, key);
}

} // namespace zv
