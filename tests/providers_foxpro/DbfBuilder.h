// Makes the bytes of .dbf files for tests, right or wrong ones.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::foxpro {

class DbfBuilder {
public:
    explicit DbfBuilder(int version = 0x30) : version_(version) {}

    DbfBuilder& Field(std::string_view name, char type, int length, int decimals = 0, int flags = 0);
    /// cells: all fields' bytes one after the other, filled with blanks.
    DbfBuilder& Row(std::string_view cells, char flag = ' ');
    DbfBuilder& Claims(unsigned records) { return claimed_ = records, *this; }
    DbfBuilder& RecordBytes(unsigned bytes) { return recordBytes_ = bytes, *this; }
    DbfBuilder& Mark(int codePageMark) { return mark_ = codePageMark, *this; }
    /// Behind the last record; an end mark unless called.
    DbfBuilder& Tail(std::string_view bytes) { return tail_ = bytes, *this; }
    std::string Build() const;

private:
    std::string BuildDBase2() const;

    int version_;
    int mark_ = 0;
    std::string descriptors_, rows_, tail_ = "\x1A";
    unsigned fieldBytes_ = 1, recordBytes_ = 0, claimed_ = ~0u, count_ = 0;
};

std::string LittleBytes(std::uint64_t number, std::size_t count);
std::string BigBytes(std::uint64_t number, std::size_t count);

}  // namespace varnel::foxpro
