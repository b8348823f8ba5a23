#include "providers/foxpro/DbcProperties.h"

#include "platform/ByteView.h"
#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kHeadBytes = 7;

}  // namespace

std::vector<DbcProperty> ParseDbcProperties(std::span<const std::uint8_t> memo) {
    const ByteView view(memo, "properties of a container");
    std::vector<DbcProperty> properties;
    for (std::size_t at = 0; at < memo.size();) {
        const std::uint32_t bytes = view.U32(at);
        if (bytes < kHeadBytes || view.U16(at + 4) != 1) {
            throw Error(ErrorKind::Corrupt, "", "The container has a property of impossible length.");
        }
        const auto value = view.Part(at + kHeadBytes, bytes - kHeadBytes);
        properties.push_back({view.U8(at + 6), std::string(value.begin(), value.end())});
        at += bytes;
    }
    return properties;
}

std::string EncodeDbcProperties(std::span<const DbcProperty> properties) {
    std::string memo;
    for (const DbcProperty& property : properties) {
        const std::size_t bytes = kHeadBytes + property.value.size();
        for (const unsigned shift : {0U, 8U, 16U, 24U}) memo += static_cast<char>(bytes >> shift);
        memo += {1, 0, static_cast<char>(property.id)};
        memo += property.value;
    }
    return memo;
}

std::optional<std::string> TextProperty(std::span<const DbcProperty> properties, std::uint8_t id) {
    for (const DbcProperty& property : properties) {
        if (property.id == id) return property.value.substr(0, property.value.find('\0'));
    }
    return std::nullopt;
}

}  // namespace varnel::foxpro
