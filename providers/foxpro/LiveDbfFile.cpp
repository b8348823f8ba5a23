#include "providers/foxpro/LiveDbfFile.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"

namespace varnel::foxpro {
namespace {

std::string LastName(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\:");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

bool HasMemoField(const DbfHeader& header) {
    return std::any_of(header.fields.begin(), header.fields.end(),
                       [&](const DbfField& field) { return KindOfField(field, header.dialect) == FieldKind::Memo; });
}

std::string_view MemoExtension(const DbfHeader& header) {
    if ((header.tableFlags & kIsContainer) != 0 && header.dialect == DbfDialect::VisualFoxPro) return "dct";
    if (header.memo == MemoKind::Smt) return "smt";
    return header.memo == MemoKind::Fpt ? "fpt" : "dbt";
}

bool SameLayout(const DbfHeader& a, const DbfHeader& b) {
    const auto same = [](const DbfField& x, const DbfField& y) {
        return x.name == y.name && x.type == y.type && x.length == y.length && x.offset == y.offset &&
               x.nullBit == y.nullBit && x.varLengthBit == y.varLengthBit;
    };
    return a.headerBytes == b.headerBytes && a.recordBytes == b.recordBytes && a.version == b.version &&
           std::equal(a.fields.begin(), a.fields.end(), b.fields.begin(), b.fields.end(), same);
}

using OpenFiles = std::map<std::pair<std::uint64_t, std::uint64_t>, std::weak_ptr<DbfFile>>;

/// The files that the process has open, by device and inode.
OpenFiles& FilesOfProcess() {
    static OpenFiles files;
    return files;
}

}  // namespace

std::shared_ptr<DbfFile> DbfFile::Open(std::string_view storedPath, int codePageWhenNoneStated) {
    const std::optional<FileState> state = StateOfPath(storedPath);
    OpenFiles& files = FilesOfProcess();
    std::erase_if(files, [](const auto& entry) { return entry.second.expired(); });
    if (state) {
        const auto found = files.find({state->device, state->inode});
        if (found != files.end()) return found->second.lock();
    }
    auto file = std::make_shared<LiveDbfFile>(std::string(storedPath), codePageWhenNoneStated);
    if (state) files[{state->device, state->inode}] = file;
    return file;
}

std::optional<std::string> FindCompanion(std::string_view storedPath, std::string_view extension) {
    const std::size_t separator = storedPath.find_last_of("/\\:");
    const std::size_t dot = storedPath.rfind('.');
    const bool hasDot = dot != std::string_view::npos && (separator == std::string_view::npos || dot > separator);
    std::string path(storedPath.substr(0, hasDot ? dot : storedPath.size()));
    path.append(".").append(extension);
    return FileExists(path) ? std::optional(path) : std::nullopt;
}

/// Holds of the process nest; the file is read anew with the first.
class LiveDbfFile::ReadHold : public DbfFile::Hold {
public:
    explicit ReadHold(std::shared_ptr<LiveDbfFile> file)
        : file_(std::move(file)), hold_(file_->files_->HoldForReading()) {
        file_->Refresh();
    }

private:
    std::shared_ptr<LiveDbfFile> file_;
    std::unique_ptr<JournaledFiles::Hold> hold_;
};

class LiveDbfFile::WriteHold : public DbfFile::Hold {
public:
    explicit WriteHold(std::shared_ptr<LiveDbfFile> file)
        : file_(std::move(file)), hold_(file_->files_->HoldForWriting()) {
        file_->Refresh();
        file_->CheckWritable();
        if (file_->writers_ == 0) file_->OpenKeeper();
        ++file_->writers_;
    }
    ~WriteHold() override {
        if (--file_->writers_ == 0) file_->EndWriting();
    }

private:
    std::shared_ptr<LiveDbfFile> file_;
    std::unique_ptr<JournaledFiles::Hold> hold_;
};

LiveDbfFile::LiveDbfFile(std::string storedPath, int codePageWhenNoneStated)
    : path_(std::move(storedPath)),
      name_(LastName(path_)),
      codePageWhenNoneStated_(codePageWhenNoneStated),
      files_(OpenJournaledFiles(path_, false)),
      records_(*files_) {}

std::unique_ptr<DbfFile::Hold> LiveDbfFile::HoldForReading() {
    return std::make_unique<ReadHold>(std::static_pointer_cast<LiveDbfFile>(shared_from_this()));
}

std::unique_ptr<DbfFile::Hold> LiveDbfFile::HoldForWriting() {
    return std::make_unique<WriteHold>(std::static_pointer_cast<LiveDbfFile>(shared_from_this()));
}

void LiveDbfFile::ReadRecords(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) {
    records_.Read(first, count, into);
}

void LiveDbfFile::Refresh() {
    if (generation_ == files_->Generation()) return;
    Load();
    generation_ = files_->Generation();
}

void LiveDbfFile::Load() {
    const std::uint64_t fileBytes = files_->Size(0);
    std::vector<std::uint8_t> head(static_cast<std::size_t>(std::min<std::uint64_t>(fileBytes, kMaxHeaderBytes)));
    head.resize(files_->Read(0, 0, head));
    DbfHeader header = ReadDbfHeader(ByteView(head, name_), fileBytes, name_, codePageWhenNoneStated_);
    if (generation_ && !SameLayout(header, header_)) {
        throw Error(ErrorKind::Corrupt, name_, "'" + name_ + "' has other fields now than when it was opened");
    }
    head.resize(std::min<std::size_t>(head.size(), header.headerBytes));
    header_ = std::move(header);
    head_ = std::move(head);
    const std::uint64_t whole = (fileBytes - header_.headerBytes) / header_.recordBytes;
    records_.Reset(header_.headerBytes, header_.recordBytes, std::min(header_.records, whole));
    LookForDamage(fileBytes);
    const bool wantsMemos = header_.memo != MemoKind::None && HasMemoField(header_);
    const auto path = wantsMemos && !memo_ ? FindCompanion(path_, MemoExtension(header_)) : std::nullopt;
    if (path) memo_.emplace(*files_, files_->Attach(*path), header_.memo, LastName(*path));
    if (memo_) memo_->Reset();
    writer_ = std::make_unique<RecordWriter>(header_, memo_ ? &*memo_ : nullptr, name_);
    changed_ = false;
}

/// What stands behind the last record is an end mark, padding, or records of which the head knows nothing.
void LiveDbfFile::LookForDamage(std::uint64_t fileBytes) {
    damage_.clear();
    const std::uint64_t whole = (fileBytes - header_.headerBytes) / header_.recordBytes;
    const auto records = [](std::uint64_t count) { return std::to_string(count) + " records"; };
    if (header_.records > whole) {
        damage_ = "'" + name_ + "' is damaged: its head says " + records(header_.records) + ", the file holds " +
                  records(whole);
    } else if (header_.records < whole) {
        std::array<std::uint8_t, 1> flag{};
        files_->Read(0, records_.EndOfRecords(), flag);
        if (flag[0] != kLiveFlag && flag[0] != kDeletedFlag) return;
        damage_ = "'" + name_ + "' is damaged: its head says " + records(header_.records) +
                  ", but records follow behind them (room for " + std::to_string(whole - header_.records) + ")";
    }
}

void LiveDbfFile::EndWriting() {
    if (changed_) {
        generation_.reset();
        if (keeper_) keeper_->RolledBack();
    }
}

/// The keeper stays between write holds: comparing the index with all records once is enough.
void LiveDbfFile::OpenKeeper() {
    if (keeper_) return keeper_->Resumed();
    keeper_ = OpenIndexKeeper(*this);
}

}  // namespace varnel::foxpro
