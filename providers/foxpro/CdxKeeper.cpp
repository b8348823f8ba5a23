#include "providers/foxpro/CdxKeeper.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"
#include "providers/foxpro/CdxBuilder.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/TableIndex.h"

namespace varnel::foxpro {
namespace {

/// Of changes that wait, of all tags together.
constexpr std::size_t kMostWaitingBytes = std::size_t{4} << 20;

}  // namespace

CdxKeeper::CdxKeeper(DbfFile& table, const std::string& indexPath)
    : table_(table),
      header_(table.Header()),
      fields_(KeyFieldsOf(table, header_)),
      number_(table.Files().Attach(indexPath)),
      file_(table.Files(), number_, indexPath) {
    OpenTags();
    CompareWithRecords();
}

void CdxKeeper::Resumed() {
    file_.Forget();
    ForgetTrees();
    if (known_ == Now()) return;
    known_.reset();
    OpenTags();
    CompareWithRecords();
}

CdxKeeper::Known CdxKeeper::Now() {
    return {file_.UpdateCounter(), file_.Pages(), table_.Records()};
}

void CdxKeeper::OpenTags() {
    tags_.clear();
    for (std::size_t k = 0; k < file_.Tags().size(); ++k) {
        TagKeys keys(file_.Tags()[k], header_, fields_, "'" + table_.Name() + "' cannot be changed: ");
        const KeyShape shape = keys.Shape();
        const bool mustBeDistinct = keys.IsCandidate();
        tags_.push_back({std::move(keys), CdxTree(file_, k, shape), KeyBatch(shape.length, mustBeDistinct), {}, {}});
    }
}

void CdxKeeper::CompareWithRecords() {
    for (std::size_t k = 0; k < tags_.size(); ++k) {
        const std::string difference = DifferenceOf(file_, k, tags_[k].keys, table_);
        if (difference.empty()) continue;
        throw Error(ErrorKind::NotSupported, table_.Name(),
                    "'" + table_.Name() + "' cannot be changed: index tag " + file_.Tags()[k].name +
                        " does not match the table: " + difference + ".");
    }
}

void CdxKeeper::ReadKeys(RecordNumber number, std::span<const std::uint8_t> record, Key Tag::*key) {
    for (Tag& tag : tags_) {
        Key& of = tag.*key;
        of.exists = tag.keys.KeyOf({record, number}, of.bytes);
        if (!of.exists) of.bytes.clear();
    }
}

void CdxKeeper::BeforeAppend(RecordNumber number, std::span<const std::uint8_t> record) {
    for (Tag& tag : tags_) tag.before.exists = false, tag.before.bytes.clear();
    ReadKeys(number, record, &Tag::after);
    Change(static_cast<std::uint32_t>(number));
}

void CdxKeeper::BeforeUpdate(RecordNumber number, std::span<const std::uint8_t> before,
                             std::span<const std::uint8_t> after) {
    ReadKeys(number, before, &Tag::before);
    ReadKeys(number, after, &Tag::after);
    Change(static_cast<std::uint32_t>(number));
}

void CdxKeeper::BeforeDelete(RecordNumber number, std::span<const std::uint8_t> record) {
    const bool isFiltered =
        std::any_of(tags_.begin(), tags_.end(), [](const Tag& tag) { return tag.keys.IsFiltered(); });
    if (!isFiltered) return;  // the record keeps its keys
    deletedRecord_.assign(record.begin(), record.end());
    deletedRecord_[0] = kDeletedFlag;
    BeforeUpdate(number, record, deletedRecord_);
}

void CdxKeeper::Change(std::uint32_t number) {
    if (isHalfBuilt_) Rebuild(true);
    std::size_t waiting = 0;
    for (const Tag& tag : tags_) waiting += tag.batch.Bytes();
    if (waiting > kMostWaitingBytes) ApplyBatches();
    for (std::size_t k = 0; k < tags_.size(); ++k) RequireDistinct(tags_[k], number, file_.Tags()[k].name);
    for (Tag& tag : tags_) {
        if (tag.keys.IsUnique()) ChangeUnique(tag, number);
    }
    for (Tag& tag : tags_) {
        if (tag.keys.IsUnique() || tag.before == tag.after) continue;
        if (tag.before.exists) tag.batch.Remove(tag.before.bytes, number);
        if (tag.after.exists) tag.batch.Insert(tag.after.bytes, number);
    }
}

void CdxKeeper::RequireDistinct(Tag& tag, std::uint32_t number, const std::string& name) {
    if (!tag.keys.IsCandidate() || !tag.after.exists || tag.before == tag.after) return;
    std::optional<std::uint32_t> holder;
    if (!tag.batch.FindHolder(tag.after.bytes, holder)) holder = tag.tree.FindRecord(tag.after.bytes);
    file_.Trim();
    if (!holder || *holder == number) return;
    throw Error(
        ErrorKind::Constraint, table_.Name(),
        "Uniqueness of index " + name + " is violated: record " + std::to_string(*holder) + " has the same key.");
}

/// Of a unique tag, which has the first record of each key only. When a record gives up its key the next one that has
/// it is not known, so that the tag is built anew; so it is when a later tag fails.
void CdxKeeper::ChangeUnique(Tag& tag, std::uint32_t number) {
    if (tag.before == tag.after) return;
    const bool mustRebuild = std::exchange(mustRebuild_, true);
    const bool wasThere = tag.before.exists && tag.tree.Remove(tag.before.bytes, number);
    if (tag.after.exists) {
        const auto holder = tag.tree.FindRecord(tag.after.bytes);
        if (holder && *holder > number) tag.tree.Remove(tag.after.bytes, *holder);
        if (!holder || *holder > number) tag.tree.Insert(tag.after.bytes, number);
    }
    file_.Trim();
    mustRebuild_ = mustRebuild || wasThere;
}

void CdxKeeper::ApplyBatches() {
    for (Tag& tag : tags_) tag.batch.ApplyTo(tag.tree, file_);
}

void CdxKeeper::Emptied() {
    Rebuild(false);
}

void CdxKeeper::Commit() {
    if (mustRebuild_) {
        Rebuild(true);
    } else {
        ApplyBatches();
        file_.Flush();
    }
    known_ = Now();
}

void CdxKeeper::Rebuild(bool withRecords) {
    mustRebuild_ = isHalfBuilt_ = true;  // until it is done
    std::vector<KeyShape> shapes;
    for (const Tag& tag : tags_) shapes.push_back(tag.keys.Shape());
    std::vector<std::uint8_t> key;
    BuildCdx(table_.Files(), number_, file_.Tags(), shapes, file_.UpdateCounter() + 1,
             [&](std::size_t at, KeySorter& sorter) {
                 if (!withRecords) return;
                 VisitRecords(table_, [&](const KeyRecord& record) {
                     if (tags_[at].keys.KeyOf(record, key)) sorter.Add(key, static_cast<std::uint32_t>(record.number));
                 });
             });
    file_.Forget();
    ForgetTrees();
    mustRebuild_ = isHalfBuilt_ = false;
}

void CdxKeeper::ForgetTrees() {
    for (Tag& tag : tags_) {
        tag.tree.Forget();
        tag.batch.Clear();
    }
}

/// What is in memory is dropped when the keeper resumes; what is known of the last commit point still holds.
void CdxKeeper::RolledBack() {
    mustRebuild_ = isHalfBuilt_ = false;
}

std::unique_ptr<IndexKeeper> OpenIndexKeeper(DbfFile& table) {
    const auto path = FindStructuralIndex(table);
    if (!path) return nullptr;
    return std::make_unique<CdxKeeper>(table, *path);
}

}  // namespace varnel::foxpro
