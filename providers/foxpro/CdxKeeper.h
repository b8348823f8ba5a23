// Keeps a compound index in step with its table, entry by entry.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "providers/foxpro/CdxFile.h"
#include "providers/foxpro/CdxTree.h"
#include "providers/foxpro/IndexKeeper.h"
#include "providers/foxpro/KeyBatch.h"
#include "providers/foxpro/KeyExpression.h"

namespace varnel::foxpro {

class CdxKeeper : public IndexKeeper {
public:
    /// table: outlives this. Compares every tag with the records first; throws Error{NotSupported} naming table, tag
    /// and reason when one cannot be kept.
    CdxKeeper(DbfFile& table, const std::string& indexPath);

    void Resumed() override;
    void BeforeAppend(RecordNumber number, std::span<const std::uint8_t> record) override;
    void BeforeUpdate(RecordNumber number, std::span<const std::uint8_t> before,
                      std::span<const std::uint8_t> after) override;
    void BeforeDelete(RecordNumber number, std::span<const std::uint8_t> record) override;
    void Emptied() override;
    void Commit() override;
    void RolledBack() override;

private:
    struct Key {
        bool exists = false;
        std::vector<std::uint8_t> bytes;
        bool operator==(const Key&) const = default;
    };
    struct Tag {
        TagKeys keys;
        CdxTree tree;
        KeyBatch batch;     // not of a unique tag, whose changes depend on what the tree holds
        Key before, after;  // of the change at hand
    };

    void OpenTags();
    void CompareWithRecords();
    void ReadKeys(RecordNumber number, std::span<const std::uint8_t> record, Key Tag::*key);
    void Change(std::uint32_t number);
    void RequireDistinct(Tag& tag, std::uint32_t number, const std::string& name);
    void ChangeUnique(Tag& tag, std::uint32_t number);
    void ApplyBatches();
    void Rebuild(bool withRecords);
    void ForgetTrees();

    DbfFile& table_;
    DbfHeader header_;
    FindKeyField fields_;
    JournaledFiles::Number number_;
    CdxFile file_;
    std::vector<Tag> tags_;
    std::vector<std::uint8_t> deletedRecord_;
    /// What the index and the table were like when they last were known to match.
    struct Known {
        std::uint32_t updateCounter = 0, pages = 0;
        RecordNumber records = 0;
        bool operator==(const Known&) const = default;
    };
    Known Now();
    std::optional<Known> known_;
    bool mustRebuild_ = false;  // the trees in memory are no basis for the next commit point
    bool isHalfBuilt_ = false;  // a rebuild failed: the file holds no trees
};

}  // namespace varnel::foxpro
