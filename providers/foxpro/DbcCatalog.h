// What a container lists: its tables, their columns, and whatever else hangs on them. A container is a table itself;
// the id of an object is the number of its record.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/foxpro/DbcProperties.h"
#include "providers/foxpro/DbfHeader.h"
#include "providers/foxpro/KeyTerm.h"
#include "providers/foxpro/MemoReader.h"

namespace varnel::foxpro {

struct DbcObject {
    RecordNumber record = 0;
    std::uint32_t id = 0;          ///< as stored
    std::uint32_t parent = 0;      ///< id of the object that it belongs to
    std::string type;              ///< "Table", "Field", "Index", "Relation" ... as stored
    std::string name;              ///< UTF-8, without trailing blanks
    std::uint32_t properties = 0;  ///< memo block, 0 for none
    bool isDeleted = false;
};

class DbcCatalog {
public:
    /// Called with a visitor, gives it all records of the container.
    using GiveRecords = std::function<void(const std::function<void(const KeyRecord&)>&)>;

    /// header: of the container. memo: may be null. Throws Error{Corrupt} when it has not the fields of a container,
    /// Error{Io}.
    DbcCatalog(const DbfHeader& header, const GiveRecords& giveRecords, const MemoReader* memo);

    /// In the order of the records, deleted ones included.
    const std::vector<DbcObject>& Objects() const { return objects_; }
    /// Throws Error{Corrupt} when the memo is damaged.
    std::vector<DbcProperty> PropertiesOf(const DbcObject& object) const;
    /// Live tables in the order of the records.
    std::vector<const DbcObject*> Tables() const;
    /// By its name, else with blanks for underscores and the reverse, else by the stem of its file; case does not
    /// matter. Null when there is none.
    const DbcObject* FindTable(std::string_view name) const;
    /// The table's file relative to the container's folder, as stored; "" when it has none.
    std::string PathOf(const DbcObject& table) const;
    /// The long names of the table's columns in physical order.
    std::vector<std::string> ColumnsOf(const DbcObject& table) const;

private:
    const MemoReader* memo_;
    std::vector<DbcObject> objects_;
};

/// "sub\orders.dbf" gives "orders".
std::string_view StemOf(std::string_view path);

}  // namespace varnel::foxpro
