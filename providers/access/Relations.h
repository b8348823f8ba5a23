// The enforced relationships of a table, as its logical indexes name them. What would leave a row without the row that
// it refers to is refused; nothing is cascaded.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "providers/access/FilePages.h"
#include "providers/access/RowView.h"
#include "providers/access/Schema.h"

namespace varnel::access {

class Relations {
public:
    /// All of these outlive the object. Throws Error{Corrupt} when a relationship leads nowhere.
    Relations(Schema& database, FilePages& pages, const TableDefinition& table);

    /// Throws Error{Constraint} when a row that the new one refers to is missing. old: what it was before; null for a
    /// row that is added.
    void CheckReferences(RowView& row, RowView* old);
    /// Throws Error{Constraint} when other rows refer to the old one and would not find the new one. row: null when it
    /// is deleted.
    void CheckReferred(RowView& old, RowView* row);
    /// The same for all rows of the table at once.
    void CheckNoneReferred();

private:
    struct Link {
        std::string name;
        bool refers = false;  ///< this table's rows refer to the partner's; else it is the other way round
        std::vector<const Column*> columns;  ///< of this table
        std::shared_ptr<const TableDefinition> partner;
        const RealIndex* partnerIndex = nullptr;  ///< null: the partner has none
    };
    void AddLink(const LogicalIndex& stored);
    std::shared_ptr<const TableDefinition> Partner(PageNumber id) const;
    /// Nothing when one of the columns is null: then nothing is referred to.
    std::optional<std::string> PartnerKey(const Link& link, RowView& row) const;
    bool PartnerHas(const Link& link, const std::string& key);
    bool IsOwnReference(const Link& link, RowView& row, const std::string& key) const;
    [[noreturn]] void ThrowReferred(const Link& link) const;
    [[noreturn]] void ThrowBroken(const std::string& name) const;

    Schema& database_;
    FilePages& pages_;
    const TableDefinition& table_;
    std::vector<Link> links_;
};

}  // namespace varnel::access
