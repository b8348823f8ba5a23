#include "providers/mysql/MySqlOptions.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Error.h"
#include "platform/StoredPath.h"

namespace varnel::mysql {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

enum class Key : std::uint8_t {
    Host,
    DataSource,
    Location,
    Port,
    Socket,
    Database,
    User,
    Password,
    CharacterSet,
    Option,
    InitStatement,
    ConnectSeconds,
    NoBigInt,
    Compress,
    ZeroDate,
    TlsCa,
    TlsCaFolder,
    TlsCertificate,
    TlsKey,
    TlsCipher,
    TlsVersion,
    TlsMode,
    TlsVerify,
    TlsRequired,
    Count
};

struct KeyWord {
    std::string_view word;
    Key key;
};

/// Every keyword understood; all others are ignored.
constexpr KeyWord kKeyWords[] = {
    {"SERVER", Key::Host},
    {"HOST", Key::Host},
    {"Servername", Key::Host},
    {"Data Source", Key::DataSource},  // the server, but the database for MySQLProv
    {"Location", Key::Location},       // the server, for MySQLProv only
    {"PORT", Key::Port},
    {"SOCKET", Key::Socket},
    {"DATABASE", Key::Database},
    {"DB", Key::Database},
    {"Initial Catalog", Key::Database},
    {"UID", Key::User},
    {"USER", Key::User},
    {"User ID", Key::User},
    {"Username", Key::User},
    {"PWD", Key::Password},
    {"PASSWORD", Key::Password},
    {"CHARSET", Key::CharacterSet},
    {"OPTION", Key::Option},
    {"OPTIONS", Key::Option},
    {"STMT", Key::InitStatement},
    {"INITSTMT", Key::InitStatement},
    {"CONN_TIMEOUT", Key::ConnectSeconds},
    {"Connect Timeout", Key::ConnectSeconds},
    {"Connection Timeout", Key::ConnectSeconds},
    {"NO_BIGINT", Key::NoBigInt},
    {"COMPRESSED_PROTO", Key::Compress},
    {"ZERO_DATE_TO_MIN", Key::ZeroDate},
    {"SSLCA", Key::TlsCa},
    {"SSLCAPATH", Key::TlsCaFolder},
    {"SSLCERT", Key::TlsCertificate},
    {"SSLKEY", Key::TlsKey},
    {"SSLCIPHER", Key::TlsCipher},
    {"TLSVERSION", Key::TlsVersion},
    {"TLS_VERSIONS", Key::TlsVersion},
    {"SSLMODE", Key::TlsMode},
    {"SSLVERIFY", Key::TlsVerify},
    {"FORCETLS", Key::TlsRequired},
};

/// The flags of OPTION that mean something here; the others steer drivers in ways that this program has no use for.
constexpr std::uint64_t kOptionCompress = 2048;
constexpr std::uint64_t kOptionNoBigInt = 16384;
constexpr std::uint64_t kOptionZeroDateToMinimum = 16777216;

struct TlsMode {
    std::string_view word;
    bool required;
    bool
        verifyChain;  ///< the certificate comes from a known authority; the library checks that whenever SSLCA is given
    bool verifyName;  ///< and is the named server's
};
/// PREFERRED asks for nothing: the client library encrypts on demand only.
constexpr TlsMode kTlsModes[] = {{"DISABLED", false, false, false},
                                 {"PREFERRED", false, false, false},
                                 {"REQUIRED", true, false, false},
                                 {"VERIFY_CA", true, true, false},
                                 {"VERIFY_IDENTITY", true, true, true}};

constexpr std::string_view kDriverFiles[] = {"libmaodbc", "maodbc", "libmyodbc", "myodbc"};
constexpr std::string_view kDriverNames[] = {"mysql", "mariadb"};

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool IsMySqlDriver(std::string_view driver) {
    std::string name = AsciiLower(TrimBlanks(driver));
    const auto names = [&name](std::string_view start) { return StartsWith(name, start); };
    for (const auto start : kDriverNames)
        if (names(start)) return true;
    if (const auto slash = name.find_last_of("/\\"); slash != std::string::npos) name.erase(0, slash + 1);
    for (const auto start : kDriverFiles)
        if (names(start)) return true;
    return false;
}

bool IsMySqlProv(const ConnectionString& text) {
    return StartsWith(AsciiLower(text.Provider()), "mysqlprov");
}

std::optional<ConnectionString> ExtendedProperties(const ConnectionString& text) {
    auto inner = text.Find({"Extended Properties"});
    if (!inner || inner->find('=') == std::string::npos) return std::nullopt;
    return ConnectionString(std::move(*inner));
}

/// The last value of every key, read from the pairs outside, then from those of Extended Properties.
class KeyValues {
public:
    explicit KeyValues(const ConnectionString& text) {
        Take(text.Pairs());
        if (const auto inner = ExtendedProperties(text)) Take(inner->Pairs());
    }
    bool Has(Key key) const { return !Text(key).empty(); }
    const std::string& Text(Key key) const { return values_[static_cast<std::size_t>(key)]; }
    std::string& Text(Key key) { return values_[static_cast<std::size_t>(key)]; }
    bool Flag(Key key) const { return Has(key) && Text(key) != "0" && !EqualNoCase(Text(key), "no"); }

private:
    void Take(const Pairs& pairs) {
        for (const auto& [word, value] : pairs)
            for (const auto& known : kKeyWords)
                if (EqualNoCase(known.word, word)) Text(known.key) = value;
    }
    std::array<std::string, static_cast<std::size_t>(Key::Count)> values_;
};

unsigned ReadNumber(std::string_view text, std::string_view what, unsigned least, unsigned most) {
    unsigned number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc() || end != text.data() + text.size() || number < least || number > most)
        throw Error(ErrorKind::Syntax, "",
                    std::string(what) + " in the connection string is not a number from " + std::to_string(least) +
                        " to " + std::to_string(most) + ".");
    return number;
}

/// "host", "host:port", "[::1]:port" or a bare IPv6 address.
void ReadServer(std::string server, MySqlOptions& options) {
    const auto bracket = server.find(']');
    const auto colon = server.rfind(':');
    const bool onlyColon = colon != std::string::npos && server.find(':') == colon;
    if (!server.empty() && server[0] == '[' && bracket != std::string::npos) {
        if (colon == bracket + 1) options.port = ReadNumber(server.substr(colon + 1), "PORT", 1, 65535);
        server = server.substr(1, bracket - 1);
    } else if (onlyColon) {
        options.port = ReadNumber(server.substr(colon + 1), "PORT", 1, 65535);
        server.erase(colon);
    }
    const bool local =
        server.empty() || server == "." || EqualNoCase(server, "localhost") || EqualNoCase(server, "(local)");
    options.host = local ? "127.0.0.1" : server;
}

void ReadAddress(const KeyValues& values, bool mySqlProv, MySqlOptions& options) {
    if (values.Has(Key::Port)) options.port = ReadNumber(values.Text(Key::Port), "PORT", 1, 65535);
    options.socket = values.Text(Key::Socket);
    options.database = values.Text(Key::Database);
    std::string server = values.Has(Key::Host) ? values.Text(Key::Host) : values.Text(Key::DataSource);
    if (mySqlProv && options.database.empty()) {
        options.database = values.Text(Key::DataSource);
        server = values.Has(Key::Host) ? values.Text(Key::Host) : values.Text(Key::Location);
    }
    ReadServer(std::move(server), options);
}

void ReadOptionFlags(const KeyValues& values, MySqlOptions& options) {
    const std::string& text = values.Text(Key::Option);
    std::uint64_t flags = 0;
    std::from_chars(text.data(), text.data() + text.size(), flags);  // what is no number asks for nothing
    options.compress = (flags & kOptionCompress) != 0 || values.Flag(Key::Compress);
    options.noBigInt = (flags & kOptionNoBigInt) != 0 || values.Flag(Key::NoBigInt);
    options.zeroDateToMinimum = (flags & kOptionZeroDateToMinimum) != 0 || values.Flag(Key::ZeroDate);
}

std::string FilePath(const std::string& stored) {
    return stored.empty() ? stored : LocalPath(stored);
}

void ReadTls(const KeyValues& values, MySqlOptions& options) {
    options.tlsCa = FilePath(values.Text(Key::TlsCa));
    options.tlsCaFolder = FilePath(values.Text(Key::TlsCaFolder));
    options.tlsCertificate = FilePath(values.Text(Key::TlsCertificate));
    options.tlsKey = FilePath(values.Text(Key::TlsKey));
    options.tlsCipher = values.Text(Key::TlsCipher);
    options.tlsVersion = values.Text(Key::TlsVersion);
    options.tlsVerify = values.Flag(Key::TlsVerify);
    options.tlsRequired = options.tlsVerify || values.Flag(Key::TlsRequired);
    if (!values.Has(Key::TlsMode)) return;
    const bool authorityGiven = values.Has(Key::TlsCa) || values.Has(Key::TlsCaFolder);
    for (const auto& mode : kTlsModes)
        if (EqualNoCase(mode.word, values.Text(Key::TlsMode))) {
            options.tlsRequired |= mode.required;
            options.tlsVerify |= mode.verifyName || (mode.verifyChain && !authorityGiven);
            return;
        }
    throw Error(
        ErrorKind::Syntax, "",
        "SSLMODE in the connection string is none of DISABLED, PREFERRED, REQUIRED, VERIFY_CA, VERIFY_IDENTITY.");
}

}  // namespace

std::string MySqlOptions::Place() const {
    const std::string server = socket.empty() ? host + ":" + std::to_string(port) : socket;
    return database.empty() ? server : database + " on " + server;
}

bool NamesMySql(const ConnectionString& text) {
    if (IsMySqlProv(text)) return true;
    if (!text.Provider().empty() && !EqualNoCase(text.Provider(), "MSDASQL")) return false;
    if (IsMySqlDriver(text.Driver())) return true;
    const auto inner = ExtendedProperties(text);
    return inner && IsMySqlDriver(inner->Driver());
}

MySqlOptions ReadMySqlOptions(const ConnectionString& text) {
    const KeyValues values(text);
    MySqlOptions options;
    ReadAddress(values, IsMySqlProv(text), options);
    options.user = values.Text(Key::User);
    options.password = values.Text(Key::Password);
    options.characterSet = values.Text(Key::CharacterSet);
    options.initStatement = values.Text(Key::InitStatement);
    if (values.Has(Key::ConnectSeconds))
        options.connectSeconds = ReadNumber(values.Text(Key::ConnectSeconds), "The time-out", 0, 86400);
    ReadOptionFlags(values, options);
    ReadTls(values, options);
    return options;
}

}  // namespace varnel::mysql
