#include "providers/ProviderList.h"

#include "providers/mysql/MySqlProvider.h"
#include "providers/sql/SqlProvider.h"

namespace varnel {

std::vector<const Provider*> AllProviders() {
    static const MySqlProvider mysql;
    static const SqlProvider sql;
    return {&mysql, &sql};
}

}  // namespace varnel
