// Cells of a streamed row: where the client library puts them, and how they become values. A cell keeps its buffer for
// the whole query; a text longer than that buffer goes straight into the value.
#pragma once

#include <mysql.h>

#include <cstdint>
#include <string_view>
#include <vector>

#include "ado/types/Value.h"
#include "providers/mysql/MySqlTypes.h"

namespace varnel::mysql {

/// Reads the server's decimal text exactly. False when it needs more than 38 digits (trailing zeros after the point do
/// not count) or is no number.
bool ReadServerDecimal(std::string_view text, Decimal& number);

class CellDecoder {
public:
    CellDecoder(const MySqlColumn& column, bool zeroDateToMinimum);

    /// Fills in where the library is to put this cell. The decoder must stay where it is from now on.
    void Bind(MYSQL_BIND& bind);
    /// The cell of the row just fetched. A cell that no value can hold becomes a Failure that says why. Returns false
    /// when the library could not hand the rest of a long cell over.
    bool Decode(MYSQL_STMT* statement, unsigned column, Value& value);
    /// Bytes of this cell on the wire, for bounding the unread rest.
    std::uint64_t WireBytes() const { return isNull_ ? 0 : length_; }

private:
    std::string_view Buffered() const { return {buffer_.data(), length_}; }
    void DecodeUnsigned(Value& value) const;
    void DecodeDecimal(Value& value) const;
    void DecodeMoment(Value& value) const;
    void DecodeTime(Value& value) const;
    bool DecodeLong(MYSQL_STMT* statement, unsigned column, Value& value);

    std::vector<char> buffer_;
    std::string name_;
    std::int64_t integer_ = 0;
    double real_ = 0;
    float single_ = 0;
    MYSQL_TIME moment_{};
    unsigned long length_ = 0;
    my_bool isNull_ = 0;
    my_bool cut_ = 0;
    CellForm form_;
    bool zeroDateToMinimum_;
};

}  // namespace varnel::mysql
