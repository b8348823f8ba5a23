// What every provider's record sets, commands and connections must do. A provider's suite instantiates it with a data
// source of its own.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace varnel {

/// A data source for the contract: an empty database.
struct ContractSource {
    std::string connection;           ///< its connection string
    std::shared_ptr<void> keepAlive;  ///< what must live as long as the database
};

using MakeContractSource = std::function<ContractSource()>;

/// What a provider's table t is made with, where that differs from the servers and from SQLite.
struct ContractTable {
    const char* create =
        "create table t (id integer not null primary key, name varchar(20), made datetime, price decimal(10,2))";
    bool hasKey = true;      ///< id is a key; else it only refuses Null
    bool hasUnicode = true;  ///< name takes every character; else those of code page 1252
};

struct ContractCase {
    const char* name;
    MakeContractSource make;
    ContractTable table = {};
};

class DataSourceContract : public testing::TestWithParam<ContractCase> {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Makes table t (id integer key, name text of 20, made date-time, price decimal(10,2)) with rows 1 to count.
    void MakeTable(int count);

    ContractSource source_;
};

}  // namespace varnel
