#include "host/array.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <variant>

// In the order of hxClass.
class hxArray {
public:
    using Content = std::variant<double, std::u16string, std::vector<hxArrayPtr>>;

    explicit hxArray(Content initial) : content(std::move(initial)) {}

    Content content;
};

namespace {

struct GatewayTable {
    std::mutex mutex;
    std::map<std::string, hxGateway> gateways;
};

GatewayTable& gatewayTable()
{
    static GatewayTable table;
    return table;
}

hxGateway findGateway(const std::string& name)
{
    GatewayTable& table = gatewayTable();
    const std::lock_guard lock(table.mutex);
    const auto entry = table.gateways.find(name);
    if (entry == table.gateways.end()) {
        throw std::invalid_argument("no gateway is registered under the name " + name);
    }
    return entry->second;
}

} // namespace

void hxArrayDeleter::operator()(hxArray* array) const noexcept
{
    hxDestroyArray(array);
}

hxClass hxGetClass(const hxArray* array)
{
    return static_cast<hxClass>(array->content.index());
}

bool hxIsChar(const hxArray* array)
{
    return hxGetClass(array) == hxClass::character;
}

std::u16string get_ustring(const hxArray* array)
{
    if (!hxIsChar(array)) {
        throw std::invalid_argument("get_ustring: the array is not of the character class");
    }
    return std::get<std::u16string>(array->content);
}

double hxGetScalar(const hxArray* array)
{
    if (hxGetClass(array) != hxClass::floating) {
        throw std::invalid_argument("hxGetScalar: the array is not of the double class");
    }
    return std::get<double>(array->content);
}

hxArray* hxCreateDoubleScalar(double value)
{
    return new hxArray(value);
}

hxArray* hxCreateString(std::u16string_view text)
{
    return new hxArray(std::u16string(text));
}

hxArray* hxCreateCell(std::vector<hxArrayPtr> elements)
{
    return new hxArray(std::move(elements));
}

void hxDestroyArray(hxArray* array) noexcept
{
    delete array;
}

void hxRegisterGateway(const std::string& name, hxGateway gateway)
{
    GatewayTable& table = gatewayTable();
    const std::lock_guard lock(table.mutex);
    table.gateways[name] = gateway;
}

std::vector<hxArrayPtr> hxCallGateway(const std::string& name, int outputCount, const std::vector<hxArrayPtr>& inputs)
{
    const hxGateway gateway = findGateway(name);
    std::vector<hxArray*> arguments;
    arguments.reserve(inputs.size());
    for (const hxArrayPtr& input : inputs) {
        arguments.push_back(input.get());
    }
    std::vector<hxArray*> slots(static_cast<std::size_t>(std::max(outputCount, 1)), nullptr);
    const auto collect = [&slots] {
        std::vector<hxArrayPtr> outputs;
        outputs.reserve(slots.size());
        for (hxArray* slot : slots) {
            outputs.emplace_back(slot);
        }
        return outputs;
    };
    try {
        gateway(outputCount, slots.data(), static_cast<int>(arguments.size()), arguments.data());
    } catch (...) {
        collect();
        throw;
    }
    return collect();
}
