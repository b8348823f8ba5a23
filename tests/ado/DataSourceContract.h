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
    std::string name;                 ///< for the test's name
    std::string connection;           ///< its connection string
    std::shared_ptr<void> keepAlive;  ///< what must live as long as the database
};

using MakeContractSource = std::function<ContractSource()>;

struct ContractCase {
    const char* name;
    MakeContractSource make;
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
