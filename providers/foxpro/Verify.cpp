#include "providers/foxpro/Verify.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/FieldReader.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::size_t kFptHeadBytes = 512, kMemoHead = 8;

/// How often a fault occurs, and where first.
struct Tally {
    std::uint64_t count = 0;
    RecordNumber first = 0;
    void Add(RecordNumber record) {
        if (count++ == 0) first = record;
    }
    std::string Words() const {
        const std::string where = "record " + std::to_string(first);
        return count == 1 ? " in " + where : " in " + std::to_string(count) + " records, the first of them " + where;
    }
};

/// Where the memos of an .fpt lie, to find those that lie upon one another.
class MemoPlaces {
public:
    explicit MemoPlaces(const ByteFile& file) : file_(file) {
        std::array<std::uint8_t, 8> head{};
        file_.Read(0, head);
        next_ = BigNumber(head, 4);
        blockBytes_ = BigNumber(std::span(head).subspan(6, 2), 2);
        if (blockBytes_ == 0) blockBytes_ = kFptHeadBytes;
    }

    void Add(std::uint64_t block) {
        std::array<std::uint8_t, kMemoHead> head{};
        const std::uint64_t at = block * blockBytes_;
        if (block == 0 || file_.Read(at, head) < head.size()) return;  // its value is a fault already
        places_.emplace_back(at, at + kMemoHead + BigNumber(std::span(head).subspan(4, 4), 4));
    }

    void Report(const std::string& name, std::vector<std::string>& findings) {
        std::sort(places_.begin(), places_.end());
        std::uint64_t overlaps = 0, end = 0;
        for (const auto& place : places_) {
            overlaps += place.first < end ? 1 : 0;
            end = std::max(end, place.second);
        }
        if (!places_.empty() && places_.front().first < kFptHeadBytes)
            findings.push_back("'" + name + "': a memo lies upon the head of the memo file");
        if (overlaps > 0) findings.push_back("'" + name + "': " + std::to_string(overlaps) + " memos lie upon others");
        if (end > next_ * blockBytes_) {
            findings.push_back("'" + name + "': the memo file's next free block, " + std::to_string(next_) +
                               ", is one in use");
        }
    }

private:
    const ByteFile& file_;
    std::uint64_t next_ = 0, blockBytes_ = 0;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> places_;  ///< first byte, byte behind the last
};

class TableLook {
public:
    explicit TableLook(std::string_view storedPath)
        : file_(DbfFile::Open(storedPath)),
          hold_(file_->HoldForReading()),
          header_(file_->Header()),
          reader_(header_, file_->Memo()) {
        if (file_->MemoBytes() != nullptr && header_.memo == MemoKind::Fpt) memos_.emplace(*file_->MemoBytes());
    }

    std::vector<std::string> Look(const RowsSeen& seen) {
        if (!file_->Damage().empty()) findings_.push_back(file_->Damage());
        LookAtHead();
        std::vector<std::uint8_t> block(std::max<std::size_t>(kBlockBytes / header_.recordBytes, 1) *
                                        header_.recordBytes);
        const RecordNumber last = file_->Records();
        for (RecordNumber first = 1; first <= last;) {
            const auto count =
                static_cast<std::size_t>(std::min<RecordNumber>(block.size() / header_.recordBytes, last - first + 1));
            file_->ReadRecords(first, count, block);
            for (std::size_t k = 0; k < count; ++k) {
                LookAtRecord(first + k, std::span<const std::uint8_t>(block).subspan(k * header_.recordBytes,
                                                                                     header_.recordBytes));
            }
            first += count;
            if (seen) seen(first - 1);
        }
        Report();
        return std::move(findings_);
    }

private:
    void LookAtHead() {
        std::size_t bits = 0, sum = 1;
        for (const DbfField& field : header_.fields) {
            bits += (field.nullBit != kNoBit ? 1u : 0u) + (field.varLengthBit != kNoBit ? 1u : 0u);
            sum += field.length;
        }
        if (header_.nullFlags) sum += header_.nullFlags->length;
        if (header_.nullFlags && header_.nullFlags->length != (bits + 7) / 8) {
            Say("has " + std::to_string(header_.nullFlags->length) + " bytes of null flags, its fields need " +
                std::to_string((bits + 7) / 8));
        }
        if (sum != header_.recordBytes) {
            Say("has records of " + std::to_string(header_.recordBytes) + " bytes, its fields make " +
                std::to_string(sum));
        }
        const bool isIndexed = header_.dialect == DbfDialect::VisualFoxPro && header_.HasIndex();
        const bool isContainer = (header_.tableFlags & kIsContainer) != 0;
        if (isIndexed && !FindCompanion(file_->StoredPath(), isContainer ? "dcx" : "cdx"))
            Say("says that it has an index, but there is none beside it");
    }

    void LookAtRecord(RecordNumber number, std::span<const std::uint8_t> record) {
        if (record[0] != kLiveFlag && record[0] != kDeletedFlag) oddFlags_.Add(number);
        const bool isLive = record[0] != kDeletedFlag;
        for (std::size_t k = 0; k < header_.fields.size(); ++k) {
            const DbfField& field = header_.fields[k];
            const CellFault fault = reader_.Read(field, record, value_);
            if (fault != CellFault::None && isLive) faults_[{k, fault}].Add(number);
            if (memos_ && KindOfField(field, header_.dialect) == FieldKind::Memo && fault == CellFault::None)
                memos_->Add(reader_.MemoBlock(field, record));
            const bool isGiven = field.autoIncrement && value_.Kind() == ValueKind::Integer;
            if (isGiven && value_.AsInteger() >= static_cast<std::int32_t>(field.nextValue)) given_[k].Add(number);
        }
    }

    void Report() {
        if (oddFlags_.count > 0) Say("has neither the mark of a live nor of a deleted record" + oddFlags_.Words());
        for (const auto& entry : faults_) {
            Say("column '" + header_.fields[entry.first.first].name +
                "': " + std::string(FaultWords(entry.first.second)) + entry.second.Words());
        }
        for (const auto& entry : given_) {
            const DbfField& field = header_.fields[entry.first];
            Say("column '" + field.name + "': the next value to be given, " + std::to_string(field.nextValue) +
                ", is not above the value" + entry.second.Words());
        }
        if (memos_) memos_->Report(file_->Name(), findings_);
    }

    void Say(const std::string& words) { findings_.push_back("'" + file_->Name() + "' " + words); }

    std::shared_ptr<DbfFile> file_;
    std::unique_ptr<DbfFile::Hold> hold_;
    const DbfHeader& header_;
    FieldReader reader_;
    Value value_;
    std::optional<MemoPlaces> memos_;
    Tally oddFlags_;
    std::map<std::pair<std::size_t, CellFault>, Tally> faults_;
    std::map<std::size_t, Tally> given_;
    std::vector<std::string> findings_;
};

}  // namespace

std::vector<std::string> VerifyTable(std::string_view storedPath, const RowsSeen& seen) {
    return TableLook(storedPath).Look(seen);
}

}  // namespace varnel::foxpro
