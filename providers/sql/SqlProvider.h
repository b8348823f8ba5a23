// SQL over files: the provider of every data source that is a file or a folder. SQLite plans and executes.
// The data sources are Access databases, SQLite database files and FoxPro tables (the bytes of the file decide,
// whatever the string names), and folders of text files.
#pragma once

#include "ado/types/Provider.h"

namespace varnel {

class SqlProvider : public Provider {
public:
    bool Accepts(const ConnectionString& text) const override;
    /// Throws Error: a missing file, a file of another format.
    std::unique_ptr<ProviderSession> Open(const ConnectionString& text) const override;
};

}  // namespace varnel
