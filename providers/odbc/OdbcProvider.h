// Every server database that has an ODBC driver, through unixODBC: SQL Server, Oracle and what a DSN names.
#pragma once

#include "ado/types/Provider.h"

namespace varnel {

class OdbcProvider : public Provider {
public:
    /// SQL Server's and Oracle's providers, MSDASQL, DSN, FILEDSN and any Driver; asked after the providers that have
    /// engines of their own.
    bool Accepts(const ConnectionString& text) const override;
    std::unique_ptr<ProviderSession> Open(const ConnectionString& text) const override;
};

}  // namespace varnel
