// Rows of made-up sessions for the repository's three tables: some as they should be, some odd, some nonsense.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace varnel {

/// SQL literals of the values of rows, per table: "(1, 'Orders', Null, ...)", every column of ours in its order.
struct RandomRows {
    std::vector<std::string> sessions, vrtabs, columns;
};

/// Sessions 1 to count. Numbers of tables are distinct within a session; some columns belong to no table.
RandomRows MakeRandomSessions(std::mt19937& random, int count);

}  // namespace varnel
