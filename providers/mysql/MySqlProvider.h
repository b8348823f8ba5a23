// MySQL and MariaDB through their client library: rows are streamed, never held whole.
#pragma once

#include "ado/types/Provider.h"

namespace varnel {

class MySqlProvider : public Provider {
public:
    /// Any form of connection string that names a MySQL or MariaDB driver or provider.
    bool Accepts(const ConnectionString& text) const override;
    std::unique_ptr<ProviderSession> Open(const ConnectionString& text) const override;
};

}  // namespace varnel
