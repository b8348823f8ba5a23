#include "tests/providers_foxpro/DbfBuilder.h"

namespace varnel::foxpro {

std::string LittleBytes(std::uint64_t number, std::size_t count) {
    std::string bytes;
    for (std::size_t k = 0; k < count; ++k) bytes += static_cast<char>(number >> (8 * k));
    return bytes;
}

std::string BigBytes(std::uint64_t number, std::size_t count) {
    const std::string bytes = LittleBytes(number, count);
    return {bytes.rbegin(), bytes.rend()};
}

DbfBuilder& DbfBuilder::Field(std::string_view name, char type, int length, int decimals, int flags) {
    const bool isLevel7 = version_ == 0x8C, isLevel2 = version_ == 0x02;
    std::string descriptor(isLevel7 ? 48 : isLevel2 ? 16 : 32, '\0');
    descriptor.replace(0, name.size(), name);
    const std::size_t typeAt = isLevel7 ? 32 : 11, lengthAt = isLevel7 ? 33 : isLevel2 ? 12 : 16;
    descriptor[typeAt] = type;
    descriptor[lengthAt] = static_cast<char>(length);
    descriptor[isLevel2 ? 15 : lengthAt + 1] = static_cast<char>(decimals);
    if (!isLevel7 && !isLevel2) descriptor[18] = static_cast<char>(flags);
    descriptors_ += descriptor;
    fieldBytes_ += static_cast<unsigned>(length);
    return *this;
}

DbfBuilder& DbfBuilder::Row(std::string_view cells, char flag) {
    std::string row = flag + std::string(cells);
    row.resize(recordBytes_ != 0 ? recordBytes_ : fieldBytes_, ' ');
    rows_ += row;
    ++count_;
    return *this;
}

std::string DbfBuilder::Build() const {
    if (version_ == 0x02) return BuildDBase2();
    const bool isVisual = version_ >= 0x30 && version_ <= 0x32;
    std::string head(version_ == 0x8C ? 68 : 32, '\0');
    const std::string behind = "\x0D" + std::string(isVisual ? 263 : 0, '\0');
    head[0] = static_cast<char>(version_);
    head.replace(4, 4, LittleBytes(claimed_ != ~0u ? claimed_ : count_, 4));
    head.replace(8, 2, LittleBytes(head.size() + descriptors_.size() + behind.size(), 2));
    head.replace(10, 2, LittleBytes(recordBytes_ != 0 ? recordBytes_ : fieldBytes_, 2));
    head[29] = static_cast<char>(mark_);
    return head + descriptors_ + behind + rows_ + tail_;
}

std::string DbfBuilder::BuildDBase2() const {
    std::string head =
        "\x02" + LittleBytes(count_, 2) + std::string(3, '\0') + LittleBytes(fieldBytes_, 2) + descriptors_ + "\x0D";
    head.resize(521);
    return head + rows_ + std::string(300, '\x1A');
}

}  // namespace varnel::foxpro
