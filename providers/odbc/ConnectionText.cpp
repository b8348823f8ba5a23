#include "providers/odbc/ConnectionText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Error.h"
#include "platform/Wildcard.h"
#include "providers/odbc/SqlServerAddress.h"

namespace varnel::odbc {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

struct Stand {
    std::string_view named;  ///< the provider or driver of the stored string; * stands for any characters
    Family family;
};

constexpr Stand kProviders[] = {{"SQLOLEDB", Family::SqlServer},     {"SQLNCLI*", Family::SqlServer},
                                {"MSOLEDBSQL*", Family::SqlServer},  {"MSDAORA", Family::Oracle},
                                {"OraOLEDB.Oracle", Family::Oracle}, {"MSDASQL", Family::Other}};

constexpr Stand kDrivers[] = {{"SQL Server", Family::SqlServer},
                              {"SQL Native Client", Family::SqlServer},
                              {"SQL Server Native Client*", Family::SqlServer},
                              {"ODBC Driver * for SQL Server", Family::SqlServer},
                              {"FreeTDS", Family::SqlServer},
                              {"*libtdsodbc.so", Family::SqlServer},
                              {"Microsoft ODBC for Oracle", Family::Oracle},
                              {"Oracle*", Family::Oracle}};

/// One setting under all the keywords that users write for it, and under the one that a driver is told. An empty
/// keyword: the driver knows no such setting.
struct Keyword {
    std::initializer_list<std::string_view> stored;
    std::string_view freeTds, microsoft, oracle;
};

const Keyword kKeywords[] = {
    {{"User ID", "UID", "User", "Username"}, "UID", "UID", "UID"},
    {{"Password", "PWD"}, "PWD", "PWD", "PWD"},
    {{"Initial Catalog", "Database"}, "Database", "Database", ""},
    {{"Application Name", "APP"}, "APP", "APP", ""},
    {{"Workstation ID", "WSID"}, "WSID", "WSID", ""},
    {{"Current Language", "Language"}, "Language", "Language", ""},
    {{"Packet Size", "PacketSize"}, "PacketSize", "", ""},
    {{"ApplicationIntent", "Application Intent"}, "ApplicationIntent", "ApplicationIntent", ""},
    {{"AttachDbFilename", "Initial File Name"}, "AttachDbFilename", "AttachDbFileName", ""},
    {{"TDS_Version"}, "TDS_Version", "", ""},
    {{"Trust Server Certificate", "TrustServerCertificate"}, "", "TrustServerCertificate", ""},
};

constexpr std::string_view kMicrosoftDriver = "ODBC Driver * for SQL Server";

std::optional<Family> FamilyOf(std::span<const Stand> table, std::string_view name) {
    for (const Stand& stand : table) {
        if (MatchesWildcard(name, stand.named)) return stand.family;
    }
    return std::nullopt;
}

/// The string that MSDASQL keeps in Extended Properties; the whole string when there is none.
ConnectionString Unwrapped(const ConnectionString& stored) {
    const auto inner = stored.Find({"Extended Properties"});
    if (!inner || inner->find('=') == std::string::npos) return stored;
    std::string text = *inner;
    for (const auto& [keyword, value] : stored.Pairs()) {
        if (EqualNoCase(keyword, "Extended Properties") || EqualNoCase(keyword, "Provider")) continue;
        text += ";" + keyword + "={";
        for (const char c : value) text.append(c == '}' ? 2 : 1, c);
        text += "}";
    }
    return ConnectionString(std::move(text));
}

bool IsYes(std::string_view word) {
    constexpr std::string_view kYes[] = {"yes", "true", "1", "sspi"};
    return std::any_of(std::begin(kYes), std::end(kYes), [&](auto yes) { return EqualNoCase(yes, word); });
}

/// Writes pairs as the driver manager and all drivers read them: braced where a character has a meaning.
class TextWriter {
public:
    void Add(std::string_view keyword, std::string_view value) {
        if (!text_.empty()) text_ += ';';
        text_.append(keyword) += '=';
        if (!NeedsBraces(value)) {
            text_.append(value);
            return;
        }
        text_ += '{';
        for (const char c : value) text_.append(c == '}' ? 2 : 1, c);
        text_ += '}';
    }
    std::string Take() { return std::move(text_); }

private:
    static bool NeedsBraces(std::string_view value) {
        const bool blankEdges = TrimBlanks(value).size() != value.size();
        return blankEdges || value.find_first_of(";{}[]()=?*!@") != std::string_view::npos;
    }
    std::string text_;
};

const std::string* FindDriver(std::span<const std::string> drivers, std::string_view pattern) {
    const std::string* best = nullptr;
    for (const std::string& driver : drivers) {
        if (!MatchesWildcard(driver, pattern)) continue;
        const bool newer = best == nullptr || std::pair(driver.size(), driver) > std::pair(best->size(), *best);
        if (newer) best = &driver;
    }
    return best;
}

unsigned LoginSeconds(const ConnectionString& stored) {
    const std::string text = stored.Get({"Connect Timeout", "Connection Timeout", "Timeout", "Login Timeout"});
    unsigned seconds = 30;
    std::from_chars(text.data(), text.data() + text.size(), seconds);  // what is no number asks for nothing
    return seconds;
}

/// The driver that the stored string names, when it is registered here or is a file's name; else the best stand-in.
std::string SqlServerDriver(const ConnectionString& stored, std::span<const std::string> drivers) {
    std::string named = stored.Driver();
    if (!named.empty() && named.find(".so") != std::string::npos) return named;
    if (!named.empty()) {
        if (const std::string* same = FindDriver(drivers, named)) return *same;
    }
    for (const std::string_view pattern : {kMicrosoftDriver, std::string_view("FreeTDS*"), std::string_view("*TDS*")}) {
        if (const std::string* found = FindDriver(drivers, pattern)) return *found;
    }
    throw Error(ErrorKind::Connection, named,
                "No ODBC driver for SQL Server is registered on this machine. Install FreeTDS (Debian: tdsodbc) or "
                "Microsoft's ODBC driver; 'odbcinst -q -d' must then list it.");
}

void AddKeywords(TextWriter& writer, const ConnectionString& stored, std::string_view Keyword::*told) {
    for (const Keyword& keyword : kKeywords) {
        if ((keyword.*told).empty()) continue;
        const bool password = keyword.*told == "PWD";
        for (const std::string_view word : keyword.stored) {
            const auto value = stored.Find({word});
            if (!value || (value->empty() && !password)) continue;
            writer.Add(keyword.*told, *value);
            break;
        }
    }
}

[[noreturn]] void RefuseIntegratedSecurity(std::string_view server) {
    throw Error(ErrorKind::NotSupported, std::string(server),
                "The connection string asks for Windows' integrated security, and this machine has no Kerberos ticket "
                "cache. Put User ID and Password of a SQL Server log-in into the connection string, or run under an "
                "account with a ticket (kinit) and KRB5CCNAME set.");
}

ConnectionText TranslateSqlServer(const ConnectionString& stored, std::span<const std::string> drivers) {
    const std::string driver = SqlServerDriver(stored, drivers);
    const bool microsoft = MatchesWildcard(driver, kMicrosoftDriver);
    const std::string stated = stored.Get({"Data Source", "Server", "Address", "Addr", "Network Address"});
    const SqlServerAddress address = ReadSqlServerAddress(stated, stored.Get({"Port"}));
    const std::string database = stored.Get({"Initial Catalog", "Database"});
    const bool integrated = IsYes(stored.Get({"Integrated Security", "Trusted_Connection"}));
    if (integrated && getenv("KRB5CCNAME") == nullptr) RefuseIntegratedSecurity(address.host);

    ConnectionText result;
    TextWriter writer;
    writer.Add("Driver", driver);
    const std::string instance = address.instance.empty() ? "" : "\\" + address.instance;
    if (microsoft) {
        writer.Add("Server", address.host + instance + (address.port.empty() ? "" : "," + address.port));
    } else {
        writer.Add("Server", address.host + instance);
        if (instance.empty()) writer.Add("Port", address.port.empty() ? "1433" : address.port);
    }
    if (integrated) writer.Add("Trusted_Connection", "Yes");
    AddKeywords(writer, stored, microsoft ? &Keyword::microsoft : &Keyword::freeTds);
    const std::string encrypt = stored.Get({"Use Encryption for Data", "Encrypt"});
    if (microsoft && !encrypt.empty()) writer.Add("Encrypt", encrypt);
    if (!microsoft && IsYes(encrypt)) writer.Add("Encryption", "require");
    if (!microsoft) writer.Add("ClientCharset", "UTF-8");

    result.text = writer.Take();
    const std::string server = address.host + instance + (address.port.empty() ? "" : "," + address.port);
    result.place = database.empty() ? server : database + " on " + server;
    result.family = Family::SqlServer;
    return result;
}

ConnectionText TranslateOracle(const ConnectionString& stored, std::span<const std::string> drivers) {
    const std::string named = stored.Driver();
    const std::string* driver = named.empty() ? nullptr : FindDriver(drivers, named);
    if (driver == nullptr) driver = FindDriver(drivers, "*Oracle*");
    if (driver == nullptr)
        throw Error(ErrorKind::Connection, "Oracle",
                    "No ODBC driver for Oracle is registered on this machine. Install Oracle's Instant Client with its "
                    "ODBC package and register it; 'odbcinst -q -d' must then list a name with \"Oracle\" in it.");
    ConnectionText result;
    TextWriter writer;
    writer.Add("Driver", *driver);
    const std::string service = stored.Get({"Data Source", "Server", "ConnectString", "DBQ"});
    writer.Add("DBQ", service);
    if (IsYes(stored.Get({"OSAuthent", "Integrated Security"}))) {
        writer.Add("UID", "/");
    } else {
        AddKeywords(writer, stored, &Keyword::oracle);
    }
    result.text = writer.Take();
    result.place = service;
    result.family = Family::Oracle;
    return result;
}

/// A data source name or a driver that is nobody's stand-in: what stands there, in its order, OLE DB's words for the
/// common settings translated.
ConnectionText PassThrough(const ConnectionString& stored, std::span<const std::string> drivers) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kWords{
        {{"User ID", "UID"}, {"Password", "PWD"}, {"Initial Catalog", "DATABASE"}, {"Data Source", "DSN"}}};
    constexpr std::string_view kNotPassed[] = {
        "Provider", "Persist Security Info", "OLE DB Services", "Locale Identifier", "Prompt", "Window Handle", "Mode"};
    ConnectionText result;
    TextWriter writer;
    const bool hasDriver = !stored.Driver().empty();
    for (const auto& [keyword, value] : stored.Pairs()) {
        const std::string& word = keyword;
        if (std::any_of(std::begin(kNotPassed), std::end(kNotPassed), [&](auto no) { return EqualNoCase(no, word); }))
            continue;
        const auto known =
            std::find_if(kWords.begin(), kWords.end(), [&](const auto& pair) { return EqualNoCase(pair.first, word); });
        if (EqualNoCase(word, "Driver")) {
            const std::string* registered = FindDriver(drivers, stored.Driver());
            writer.Add("Driver", registered != nullptr ? *registered : stored.Driver());
        } else if (known == kWords.end() || (hasDriver && known->second == "DSN")) {
            writer.Add(word, value);
        } else {
            writer.Add(known->second, value);
        }
    }
    result.text = writer.Take();
    result.place = stored.Get({"DSN", "Data Source", "FILEDSN", "Server", "Servername", "Driver"});
    return result;
}

Family FamilyOfString(const ConnectionString& stored, const ConnectionString& inner) {
    if (const auto family = FamilyOf(kProviders, stored.Provider()); family && *family != Family::Other) return *family;
    if (inner.Find({"DSN", "FILEDSN"})) return Family::Other;
    return FamilyOf(kDrivers, inner.Driver()).value_or(Family::Other);
}

}  // namespace

bool NamesOdbc(const ConnectionString& stored) {
    const std::string provider = stored.Provider();
    if (!provider.empty()) return FamilyOf(kProviders, provider).has_value();
    return !stored.Driver().empty() || stored.Find({"DSN", "FILEDSN"}).has_value();
}

ConnectionText TranslateConnection(const ConnectionString& stored, std::span<const std::string> drivers) {
    const ConnectionString inner = Unwrapped(stored);
    ConnectionText result;
    switch (FamilyOfString(stored, inner)) {
        case Family::SqlServer:
            result = TranslateSqlServer(inner, drivers);
            break;
        case Family::Oracle:
            result = TranslateOracle(inner, drivers);
            break;
        case Family::Other:
            result = PassThrough(inner, drivers);
            break;
    }
    result.loginSeconds = LoginSeconds(inner);
    const std::string provider = stored.Provider();
    result.nativeProvider = !provider.empty() && !EqualNoCase(provider, "MSDASQL");
    return result;
}

}  // namespace varnel::odbc
