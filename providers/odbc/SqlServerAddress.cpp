#include "providers/odbc/SqlServerAddress.h"

#include <charconv>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"

namespace varnel::odbc {
namespace {

/// Without "tcp:", "lpc:" or "np:"; of a pipe's path only the host.
std::string_view WithoutProtocol(std::string_view address) {
    for (const std::string_view protocol : {"tcp:", "lpc:", "np:", "admin:"}) {
        if (EqualNoCase(address.substr(0, protocol.size()), protocol)) address.remove_prefix(protocol.size());
    }
    if (address.substr(0, 2) != "\\\\") return address;
    address.remove_prefix(2);
    return address.substr(0, address.find('\\'));
}

std::string PortDigits(std::string_view text) {
    text = TrimBlanks(text);
    unsigned port = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (failure != std::errc() || end != text.data() + text.size() || port == 0 || port > 65535)
        throw Error(ErrorKind::Syntax, "", "The port in the connection string is not a number from 1 to 65535.");
    return std::to_string(port);
}

std::string HostName(std::string_view host) {
    host = TrimBlanks(host);
    for (const std::string_view local : {"", ".", "(local)", "(localhost)"}) {
        if (EqualNoCase(host, local)) return "localhost";
    }
    return std::string(host);
}

}  // namespace

SqlServerAddress ReadSqlServerAddress(std::string_view address, std::string_view portKeyword) {
    address = TrimBlanks(address);
    if (EqualNoCase(address.substr(0, 9), "(localdb)"))
        throw Error(ErrorKind::NotSupported, std::string(address),
                    "The server '" + std::string(address) +
                        "' is a LocalDB instance, which exists only inside a Windows account. Name a SQL Server that "
                        "can be reached over the network.");
    address = WithoutProtocol(address);
    SqlServerAddress read;
    if (const auto comma = address.find(','); comma != std::string_view::npos) {
        read.port = PortDigits(address.substr(comma + 1));
        address = address.substr(0, comma);
    } else if (!TrimBlanks(portKeyword).empty()) {
        read.port = PortDigits(portKeyword);
    }
    const auto backslash = address.find('\\');
    read.host = HostName(address.substr(0, backslash));
    if (backslash == std::string_view::npos || !read.port.empty()) return read;
    read.instance = TrimBlanks(address.substr(backslash + 1));
    if (EqualNoCase(read.instance, "MSSQLSERVER")) read.instance.clear();
    return read;
}

}  // namespace varnel::odbc
