// What a program without arrays makes of the benchmark's table through the same driver, written straight on ODBC:
//     odbc_yardstick write TABLE ROWS    one prepared INSERT, its parameters bound once, executed once for each row;
//                                        every row its own transaction (the driver's autocommit)
//     odbc_yardstick read TABLE ROWS     one SELECT, SQLFetch for each row, SQLGetData for each of its values
// The connection string is expected in the environment as YARDSTICK. The rows to write are made on the spot.
#include <sql.h>
#include <sqlext.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench/BenchData.h"

namespace varnel {
namespace {

constexpr std::size_t kRoom = 168;

/// One column as both directions move it.
struct Form {
    SQLSMALLINT transferType, sqlType;
    SQLULEN size;
    SQLSMALLINT digits;
};
constexpr Form kInteger{SQL_C_SBIGINT, SQL_INTEGER, 10, 0};
constexpr Form kMoment{SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 26, 6};
constexpr std::array<Form, 10> kForms{{kInteger,
                                       kInteger,
                                       {SQL_C_SBIGINT, SQL_BIGINT, 19, 0},
                                       {SQL_C_CHAR, SQL_DECIMAL, 38, 2},
                                       {SQL_C_CHAR, SQL_DECIMAL, 38, 4},
                                       {SQL_C_CHAR, SQL_WVARCHAR, 12, 0},
                                       {SQL_C_CHAR, SQL_WVARCHAR, 40, 0},
                                       {SQL_C_CHAR, SQL_WVARCHAR, 30, 0},
                                       kMoment,
                                       kMoment}};

struct Cell {
    alignas(8) std::array<char, kRoom> room{};
    SQLLEN length = 0;

    void Set(std::int64_t number) {
        std::memcpy(room.data(), &number, sizeof number);
        length = sizeof number;
    }
    void Set(const std::string& text) {
        std::memcpy(room.data(), text.data(), text.size());
        length = static_cast<SQLLEN>(text.size());
    }
    void SetHundredths(std::int64_t number) {
        length = std::snprintf(room.data(), kRoom, "%lld.%02lld", static_cast<long long>(number / 100),
                               static_cast<long long>(number % 100));
    }
    void Set(DateTime moment) {
        const CivilTime civil = ToCivil(moment);
        const SQL_TIMESTAMP_STRUCT stamp{static_cast<SQLSMALLINT>(civil.year),
                                         static_cast<SQLUSMALLINT>(civil.month),
                                         static_cast<SQLUSMALLINT>(civil.day),
                                         static_cast<SQLUSMALLINT>(civil.hour),
                                         static_cast<SQLUSMALLINT>(civil.minute),
                                         static_cast<SQLUSMALLINT>(civil.second),
                                         0};
        std::memcpy(room.data(), &stamp, sizeof stamp);
        length = sizeof stamp;
    }
};
using Row = std::array<Cell, kForms.size()>;

void SetRow(Row& row, int id) {
    const BenchRow made = MakeBenchRow(id);
    row[0].Set(made.id);
    row[1].Set(made.quantity);
    row[2].Set(made.counter);
    row[3].SetHundredths(made.price);
    row[4].SetHundredths(made.rate);
    row[5].Set(made.code);
    row[6].Set(made.name);
    row[7].Set(made.place);
    row[8].Set(made.made);
    row[9].Set(made.changed);
}

void Check(SQLRETURN outcome, SQLSMALLINT sort, SQLHANDLE handle) {
    if (SQL_SUCCEEDED(outcome)) return;
    std::array<SQLCHAR, 6> state{};
    std::array<SQLCHAR, 1024> text{};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRec(sort, handle, 1, state.data(), &native, text.data(), text.size(), &length);
    std::fprintf(stderr, "odbc_yardstick: %s\n", reinterpret_cast<const char*>(text.data()));
    std::exit(1);
}

SQLCHAR* Characters(std::string& text) {
    return reinterpret_cast<SQLCHAR*>(text.data());
}

SQLHDBC LogIn(std::string connection) {
    SQLHENV environment = nullptr;
    SQLHDBC link = nullptr;
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &link);
    Check(SQLDriverConnect(link, nullptr, Characters(connection), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
          SQL_HANDLE_DBC, link);
    return link;
}

void Write(SQLHSTMT statement, const std::string& table, int rows) {
    std::string insert = "INSERT INTO " + table + " (" + BenchColumnList() + ") VALUES (?,?,?,?,?,?,?,?,?,?)";
    Check(SQLPrepare(statement, Characters(insert), SQL_NTS), SQL_HANDLE_STMT, statement);
    Row row;
    for (std::size_t k = 0; k < row.size(); ++k) {
        const Form& form = kForms[k];
        Check(SQLBindParameter(statement, static_cast<SQLUSMALLINT>(k + 1), SQL_PARAM_INPUT, form.transferType,
                               form.sqlType, form.size, form.digits, row[k].room.data(), kRoom, &row[k].length),
              SQL_HANDLE_STMT, statement);
    }
    for (int id = 1; id <= rows; ++id) {
        SetRow(row, id);
        Check(SQLExecute(statement), SQL_HANDLE_STMT, statement);
    }
}

void Read(SQLHSTMT statement, const std::string& table, int rows) {
    std::string select = "SELECT " + BenchColumnList() + " FROM " + table;
    Check(SQLExecDirect(statement, Characters(select), SQL_NTS), SQL_HANDLE_STMT, statement);
    Row row;
    int read = 0;
    for (; SQL_SUCCEEDED(SQLFetch(statement)); ++read) {
        for (std::size_t k = 0; k < row.size(); ++k) {
            Check(SQLGetData(statement, static_cast<SQLUSMALLINT>(k + 1), kForms[k].transferType, row[k].room.data(),
                             kRoom, &row[k].length),
                  SQL_HANDLE_STMT, statement);
        }
    }
    if (read == rows) return;
    std::fprintf(stderr, "odbc_yardstick: %d rows read, %d expected\n", read, rows);
    std::exit(1);
}

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    using namespace varnel;
    const char* connection = std::getenv("YARDSTICK");
    if (argc != 4 || connection == nullptr) {
        std::fprintf(stderr, "usage: YARDSTICK=CONNECTION odbc_yardstick write|read TABLE ROWS\n");
        return 2;
    }
    SQLHDBC link = LogIn(connection);
    SQLHSTMT statement = nullptr;
    Check(SQLAllocHandle(SQL_HANDLE_STMT, link, &statement), SQL_HANDLE_DBC, link);
    (argv[1] == std::string("write") ? Write : Read)(statement, argv[2], std::stoi(argv[3]));
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    SQLDisconnect(link);
    return 0;
}
