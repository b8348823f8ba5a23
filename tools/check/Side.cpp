#include "tools/check/Side.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "tools/repository/OpenRepository.h"

namespace varnel::admin {
namespace {

constexpr std::string_view kFileProviders[] = {"sqlite", "microsoft.jet", "microsoft.ace", "vfpoledb"};
constexpr std::string_view kFileDrivers[] = {"sqlite",           "microsoft access", "microsoft text",
                                             "microsoft visual", "microsoft foxpro", "microsoft dbase"};
constexpr std::string_view kPlaceKeys[] = {"Data Source", "DBQ", "Database", "SourceDB", "DefaultDir"};

template <std::size_t N>
bool BeginsLikeOneOf(const std::string& name, const std::string_view (&words)[N]) {
    const std::string lower = AsciiLower(name);
    return std::any_of(std::begin(words), std::end(words), [&](auto word) { return lower.starts_with(word); });
}

template <std::size_t N>
bool IsOneOf(const std::string& name, const std::string_view (&words)[N]) {
    return std::any_of(std::begin(words), std::end(words), [&](auto word) { return EqualNoCase(name, word); });
}

/// The string with another Mode and, unless path is empty, another place.
std::string Rewritten(const std::string& connection, const std::string& path, std::string_view mode) {
    const ConnectionString original(connection);
    std::string text;
    for (const auto& [key, value] : original.Pairs()) {
        if (EqualNoCase(key, "Mode")) continue;
        const bool replaced = !path.empty() && IsOneOf(key, kPlaceKeys);
        text += key + "=" + QuotedValue(replaced ? path : value) + ";";
    }
    return text + "Mode=" + std::string(mode);
}

bool IsMissingOrEmpty(const std::string& path) {
    const auto state = StateOfPath(path);
    return !state || (state->size == 0 && !FolderExists(path));
}

bool HasJournal(const FilePlace& place) {
    if (place.path.empty()) return false;
    const auto journal = StateOfPath(place.path + "-journal");
    return journal && journal->size > 0;
}

}  // namespace

FilePlace PlaceOf(const std::string& connection) {
    const ConnectionString text(connection);
    FilePlace place;
    place.isSqlite = AsciiLower(text.Provider() + text.Driver()).starts_with("sqlite");
    place.isFiles = BeginsLikeOneOf(text.Provider(), kFileProviders) || BeginsLikeOneOf(text.Driver(), kFileDrivers);
    if (place.isFiles) place.path = text.Get({"Data Source", "DBQ", "Database", "SourceDB", "DefaultDir"});
    place.makesMissing = EqualNoCase(text.Get({"Mode"}), "ReadWriteCreate");
    return place;
}

std::string RemedyFor(const Error& error, bool isFiles) {
    const std::string text = AsciiLower(error.what());
    if (error.kind == ErrorKind::Syntax) return "correct the connection string";
    const auto says = [&](std::string_view words) { return text.find(words) != std::string::npos; };
    if (says("can't open lib") || says("data source name not found") || says("provider cannot be found") ||
        says("no odbc driver"))
        return "install the driver; odbcinst -q -d lists those that are there";
    if (isFiles)
        return "correct the path, put the file or folder there, or make the drives/ or shares/ folder beside the "
               "program a link to where it lies";
    return "correct server, user and password in the connection string, and see that the server can be reached from "
           "this machine";
}

void Side::Move(const std::string& path) {
    connection_ = Rewritten(connection_, path, "Read");
}

bool Side::FindPlace(Findings& found) {
    try {
        place_ = PlaceOf(connection_);
        isMade_ = place_.isFiles && place_.makesMissing && !place_.path.empty() && IsMissingOrEmpty(place_.path);
        reading_ = place_.isFiles ? Rewritten(connection_, "", "Read") : connection_;
    } catch (const Error& error) {
        found.Fault("", "the " + word_ + " cannot be opened: " + error.what(), RemedyFor(error, true));
        return false;
    }
    return true;
}

bool Side::Open(Findings& found) {
    if (!FindPlace(found)) return false;
    if (isMade_) {
        const std::string refusal = WhyNotWritable(place_.path);
        if (refusal.empty()) return true;
        found.Fault("", "the " + word_ + " does not exist and cannot be made: " + refusal,
                    "make the folder, or correct the path in the connection string");
        return false;
    }
    try {
        if (HasJournal(place_)) {
            found.Warning("",
                          "the " + word_ + " has an unfinished change ('" + place_.path +
                              "-journal'), which whoever opens it completes or takes back; so it is not looked at",
                          "wait until no session writes to it; when none does, the next run sets it right");
            return false;
        }
        link_.Open(reading_);
    } catch (const Error& error) {
        found.Fault("", "the " + word_ + " cannot be opened: " + ConnectionString(connection_).Redact(error.what()),
                    RemedyFor(error, place_.isFiles));
        return false;
    }
    return true;
}

bool Side::IsSqlite() const {
    const bool isFile = place_.isFiles && !place_.path.empty() && FileExists(place_.path);
    return isFile ? RepositoryFormOf(place_.path) == RepositoryForm::Sqlite : place_.isSqlite;
}

std::vector<std::string> Side::TableNames() const {
    std::vector<std::string> names;
    try {
        for (const TableInfo& table : link_.Tables()) names.push_back(table.name);
    } catch (const Error&) {  // then there is nothing to compare with
        names.clear();
    }
    return names;
}

std::vector<ColumnInfo> Side::ColumnsOf(const std::string& query) const {
    Recordset rows;
    rows.Open(query, link_);
    std::vector<ColumnInfo> columns;
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
        const Field& field = rows.Fields(k);
        ColumnInfo& column = columns.emplace_back();
        column.name = field.Name();
        column.type = field.Type();
        column.definedSize = field.DefinedSize();
        column.precision = field.Precision();
        column.numericScale = field.NumericScale();
    }
    rows.Close();
    return columns;
}

double Side::NumberOf(const std::string& query) const {
    Recordset rows;
    rows.Open(query, link_);
    const double number = ToDouble(rows.Fields(0).GetValue());
    rows.Close();
    return number;
}

}  // namespace varnel::admin
