#include "providers/foxpro/TableIndex.h"

#include <algorithm>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbcPaths.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kBlockBytes = 64 * 1024;

/// The long names of the table's columns, folded; empty for a free table, and when its container cannot be found.
std::vector<std::string> LongNames(const std::string& dbfPath, const DbfHeader& header) {
    std::vector<std::string> names;
    if (header.IsFree()) return names;
    const std::string path = ResolvedPath(FolderOf(dbfPath), header.backLink);
    if (!FileExists(path)) return names;
    const auto found = OpenContainer(path)->FindFile(dbfPath);
    if (!found || found->columnNames.size() != header.fields.size()) return names;
    for (const std::string& name : found->columnNames) names.push_back(FoldCase(name));
    return names;
}

/// Of one entry; the sum over all entries is the same in whatever order they come.
std::uint64_t Fingerprint(KeyBytes key, std::uint32_t record) {
    std::uint64_t hash = 0xCBF2'9CE4'8422'2325 ^ record;
    for (const std::uint8_t byte : key) hash = (hash ^ byte) * 0x0000'0100'0000'01B3;
    hash ^= hash >> 29;
    hash *= 0xBF58'476D'1CE4'E5B9;
    return hash ^ hash >> 32;
}

struct Tally {
    std::uint64_t entries = 0, sum = 0;
    void Add(KeyBytes key, std::uint32_t record) { ++entries, sum += Fingerprint(key, record); }
    bool operator==(const Tally&) const = default;
};

Tally TallyOfTree(const CdxFile& file, const CdxTag& tag, KeyShape shape) {
    Tally tally;
    for (CdxWalk walk(file, tag.root, shape); walk.Next();) tally.Add(walk.Key(), walk.Record());
    return tally;
}

/// The first record whose entry is missing, in words.
std::string MissingEntry(CdxFile& file, std::size_t tag, TagKeys& keys, DbfFile& table) {
    CdxTree tree(file, tag, keys.Shape());
    std::vector<std::uint8_t> key;
    RecordNumber missing = 0;
    VisitRecords(table, [&](const KeyRecord& record) {
        if (missing != 0 || !keys.KeyOf(record, key)) return;
        const auto number = static_cast<std::uint32_t>(record.number);
        if (!(keys.IsUnique() ? tree.FindRecord(key).has_value() : tree.Has(key, number))) missing = record.number;
        file.Trim();
    });
    if (missing != 0) return "the key of record " + std::to_string(missing) + " is not in it";
    return "it holds keys that no record has";
}

/// Of a unique tag: every entry is some record's, keys are distinct, and every record's key is there.
std::string DifferenceOfUnique(CdxFile& file, std::size_t tag, TagKeys& keys, DbfFile& table) {
    std::vector<std::uint8_t> key, last, bytes(table.Header().recordBytes);
    for (CdxWalk walk(file, file.Tags()[tag].root, keys.Shape()); walk.Next();) {
        const std::uint32_t number = walk.Record();
        if (number == 0 || number > table.Records()) return "it holds keys that no record has";
        table.ReadRecords(number, 1, bytes);
        const bool isKept = keys.KeyOf({bytes, number}, key);
        if (!isKept || !std::equal(key.begin(), key.end(), walk.Key().begin(), walk.Key().end()) || key == last) {
            return "the key of record " + std::to_string(number) + " is another one";
        }
        last = key;
    }
    const std::string missing = MissingEntry(file, tag, keys, table);
    return missing.starts_with("it holds") ? "" : missing;
}

std::string FaultOfTag(CdxFile& file, std::size_t tag, const FindKeyField& fields, const DbfHeader& header,
                       DbfFile& table) {
    TagKeys keys(file.Tags()[tag], header, fields);
    std::string fault = FaultInTree(file, file.Tags()[tag].root, keys.Shape());
    return fault.empty() ? DifferenceOf(file, tag, keys, table) : fault;
}

/// Positions of the fields of "customer+number"; empty when a part is no field.
std::vector<std::size_t> FieldsNamed(std::string_view keyText, const DbfHeader& header, const FindKeyField& find) {
    std::vector<std::size_t> positions;
    while (!keyText.empty()) {
        const std::size_t plus = std::min(keyText.find('+'), keyText.size());
        const DbfField* field = find(TrimBlanks(keyText.substr(0, plus)));
        if (field == nullptr) return {};
        positions.push_back(static_cast<std::size_t>(field - header.fields.data()));
        keyText.remove_prefix(std::min(plus + 1, keyText.size()));
    }
    return positions;
}

}  // namespace

FindKeyField KeyFieldsOf(DbfFile& table, const DbfHeader& header) {
    const auto page = std::make_shared<CodePage>(header.codePage);
    return [names = LongNames(table.StoredPath(), header), &header, page](std::string_view name) -> const DbfField* {
        std::string utf8;
        if (page->DecodeSome(utf8, name) != name.size()) return nullptr;
        const auto found = std::find(names.begin(), names.end(), FoldCase(utf8));
        if (found != names.end()) return &header.fields[static_cast<std::size_t>(found - names.begin())];
        return header.FindField(utf8);
    };
}

std::vector<std::size_t> KeyFieldsOfTag(DbfFile& table, std::string_view tag) {
    const auto hold = table.HoldForReading();
    const auto path = tag.empty() ? std::nullopt : FindStructuralIndex(table);
    if (!path) return {};
    const auto files = OpenJournaledFiles(*path, true);
    const auto fileHold = files->HoldForReading();
    const CdxFile file(*files, 0, *path);
    const DbfHeader& header = table.Header();
    const FindKeyField find = KeyFieldsOf(table, header);
    for (const CdxTag& one : file.Tags())
        if (EqualNoCase(one.name, tag)) return FieldsNamed(one.keyText, header, find);
    return {};
}

std::optional<std::string> FindStructuralIndex(DbfFile& table) {
    const DbfHeader& header = table.Header();
    if (!header.HasIndex()) return std::nullopt;  // in dBASE files the flag may mean an index of another format
    return FindCompanion(table.StoredPath(), (header.tableFlags & kIsContainer) != 0 ? "dcx" : "cdx");
}

void VisitRecords(DbfFile& table, const std::function<void(const KeyRecord&)>& visit) {
    const std::size_t recordBytes = table.Header().recordBytes;
    const RecordNumber records = table.Records();
    const std::size_t step = std::max<std::size_t>(1, kBlockBytes / recordBytes);
    std::vector<std::uint8_t> block(step * recordBytes);
    for (RecordNumber first = 1; first <= records; first += step) {
        const auto count = static_cast<std::size_t>(std::min<RecordNumber>(step, records - first + 1));
        const std::span<std::uint8_t> bytes(block.data(), count * recordBytes);
        table.ReadRecords(first, count, bytes);
        for (std::size_t k = 0; k < count; ++k) visit({bytes.subspan(k * recordBytes, recordBytes), first + k});
    }
}

std::string DifferenceOf(CdxFile& file, std::size_t tag, TagKeys& keys, DbfFile& table) {
    if (keys.IsUnique()) return DifferenceOfUnique(file, tag, keys, table);
    Tally fromRecords;
    std::vector<std::uint8_t> key;
    VisitRecords(table, [&](const KeyRecord& record) {
        if (keys.KeyOf(record, key)) fromRecords.Add(key, static_cast<std::uint32_t>(record.number));
    });
    if (TallyOfTree(file, file.Tags()[tag], keys.Shape()) == fromRecords) return "";
    return MissingEntry(file, tag, keys, table);
}

std::vector<std::string> CheckIndex(DbfFile& table, std::vector<std::string>* unchecked) {
    const auto hold = table.HoldForReading();
    std::vector<std::string> faults;
    const auto path = FindStructuralIndex(table);
    if (!path) {
        const bool speaksOfIt = table.Header().dialect == DbfDialect::VisualFoxPro && table.Header().HasIndex();
        if (speaksOfIt) faults.push_back("'" + table.Name() + "' speaks of an index that is not there.");
        return faults;
    }
    const auto note = [&](const auto& step) {
        try {
            step();
        } catch (const Error& error) {
            const bool unknown = error.kind == ErrorKind::NotSupported && unchecked != nullptr;
            (unknown ? *unchecked : faults).push_back("Index of '" + table.Name() + "': " + error.what());
        }
    };
    note([&] {
        const DbfHeader header = table.Header();
        const FindKeyField fields = KeyFieldsOf(table, header);
        const auto files = OpenJournaledFiles(*path, true);  // nothing of this process is pending beside it
        const auto fileHold = files->HoldForReading();
        CdxFile file(*files, 0, *path);
        for (std::size_t k = 0; k < file.Tags().size(); ++k) {
            note([&] {
                const std::string fault = FaultOfTag(file, k, fields, header, table);
                if (!fault.empty()) {
                    faults.push_back("Index of '" + table.Name() + "', tag " + file.Tags()[k].name + ": " + fault +
                                     ".");
                }
            });
        }
    });
    return faults;
}

}  // namespace varnel::foxpro
