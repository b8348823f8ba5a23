#include "providers/ProviderList.h"

#include "providers/mysql/MySqlProvider.h"
#include "providers/odbc/OdbcProvider.h"
#include "providers/sql/SqlProvider.h"

namespace varnel {

std::vector<const Provider*> AllProviders() {
    static const MySqlProvider mysql;
    static const SqlProvider sql;
    static const OdbcProvider odbc;
    return {&mysql, &sql, &odbc};
}

}  // namespace varnel
