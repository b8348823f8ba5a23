// The values of one run of a prepared statement, in buffers that are used again for every row.
#pragma once

#include <mysql.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Value.h"

namespace varnel::mysql {

class MySqlParameters {
public:
    explicit MySqlParameters(std::size_t count) : cells_(count), binds_(count) {}

    std::size_t Count() const { return cells_.size(); }
    /// Takes over what the values are: numbers and moments by kind, exact numbers and GUIDs as their text. The texts
    /// and bytes of values are not copied and must stay until the statement was executed. Throws Error{Conversion} for
    /// a Failure and for a number that is no finite one.
    void Take(std::span<const Value* const> values);
    MYSQL_BIND* Binds() { return binds_.data(); }
    /// The bytes of a text, byte or exact number parameter; empty for the other kinds.
    std::string_view Content(std::size_t k) const { return cells_[k].content; }

private:
    struct Cell {
        std::int64_t integer = 0;
        double real = 0;
        float single = 0;
        MYSQL_TIME moment{};
        std::string text;
        std::string_view content;
        unsigned long length = 0;
    };
    static void TakeMoment(DateTime moment, Cell& cell, MYSQL_BIND& bind);
    static void TakeContent(std::string_view content, enum_field_types type, Cell& cell, MYSQL_BIND& bind);
    static void TakeValue(const Value& value, Cell& cell, MYSQL_BIND& bind);

    std::vector<Cell> cells_;
    std::vector<MYSQL_BIND> binds_;
};

}  // namespace varnel::mysql
