// The system tables against each other: objects, rights, relationships.
#pragma once

#include <map>
#include <memory>

#include "providers/access/Schema.h"
#include "providers/access/VerifyContext.h"

namespace varnel::access {

void VerifyCatalog(VerifyContext& context, Schema& schema);
/// Relationships as the definitions of the tables have them; tables: all of them, by page.
void VerifyRelationships(VerifyContext& context,
                         const std::map<PageNumber, std::shared_ptr<const TableDefinition>>& tables);

}  // namespace varnel::access
